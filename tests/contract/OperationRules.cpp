#include <filesystem>

#include "contract/WriterContract.h"

namespace trackloom::contract {

using Lines = std::vector<std::string>;

namespace {

/// Leaves an incomplete session of two audio tracks on the disc.
void leaveSessionOpen(WriterWorld& world) {
  queueTwoTracks(world);
  REQUIRE(linesOfWrite(world).back() == "OnOperationComplete");
  REQUIRE(world.real().LastSessionStatus() == SessionIncomplete);
}

void imageIsMadeInsideTheCall(WriterWorld& world) {
  CDWriterXP& writer = world.scratch();
  writer.SetDiscMode(DataBlocks);
  REQUIRE(writer.AddDataFile(DiscPath("\\b.mp3"), world.plainFile("b", 2048)));
  REQUIRE(writer.AddDataFile(DiscPath("\\a.mp3"), world.plainFile("a", 5 * 2048)));
  const HostPath image = world.place("made.iso");
  CHECK(writer.CreateIsoImage(image));
  CHECK(world.heardScratch().lines ==
        Lines{"OnImageTrackStart 1", "OnTrackCacheStart 1 5", "OnImageTrackStart 2", "OnTrackCacheStart 2 1"});
  REQUIRE_FALSE(world.heardScratch().cachePositions.empty());
  CHECK(world.heardScratch().cachePositions.back() == 1);
  CHECK(std::filesystem::is_regular_file(image.text));
}

void unwritableImageIsAFileError(WriterWorld& world) {
  CDWriterXP& writer = world.scratch();
  REQUIRE(writer.AddDataFile(DiscPath("\\a.mp3"), world.plainFile("a", 2048)));
  const HostPath image = world.place("no folder/made.iso");
  CHECK_FALSE(writer.CreateIsoImage(image));
  CHECK(world.heardScratch().lines.back() == "OnWriteError 2 0");
  CHECK_FALSE(std::filesystem::exists(image.text));
}

void onlyOpenDataIsImported(WriterWorld& world) {
  CHECK_FALSE(world.real().ImportLastSession(true));
  leaveSessionOpen(world);
  CHECK_FALSE(world.real().ImportLastSession(true));
  world.insert(359849);
  world.real().SetDiscMode(DataBlocks);
  REQUIRE(world.real().AddDataFile(DiscPath("\\a.mp3"), world.plainFile("a", 2048)));
  world.real().SetCloseSession(true);
  REQUIRE(linesOfWrite(world).back() == "OnOperationComplete");
  CHECK(world.real().ImportLastSession(true));
  CHECK(world.real().DataQueueBlocks() == 1);
  REQUIRE(linesOfWrite(world).back() == "OnOperationComplete");
  CHECK(world.real().SessionCount() == 2);
  world.real().SetCloseDisc(true);
  REQUIRE(linesOfWrite(world).back() == "OnOperationComplete");
  CHECK_FALSE(world.real().ImportLastSession(true));
}

void imageClosesTheDisc(WriterWorld& world) {
  const HostPath image = world.plainFile("finished.iso", 300 * 2048);
  CHECK(linesOf(world, [&] { world.real().WriteIsoImage(image); }) ==
        Lines{"OnWriteStarting", "OnTrackWriteStart 1 300", "OnTrackClosing 1", "OnOperationComplete"});
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.tracksOnDisc() == 1);
}

void testedImageLeavesTheDisc(WriterWorld& world) {
  world.real().SetTestMode(true);
  const HostPath image = world.plainFile("finished.iso", 300 * 2048);
  CHECK(linesOf(world, [&] { world.real().WriteIsoImage(image); }).back() == "OnOperationComplete");
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

void unreadableImageIsAFileError(WriterWorld& world) {
  const HostPath image = world.place("missing.iso");
  CHECK(linesOf(world, [&] { world.real().WriteIsoImage(image); }).back() == "OnWriteError 2 0");
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

void eraseMakesBlank(WriterWorld& world, bool quick) {
  world.insert(2000, true);
  leaveSessionOpen(world);
  world.real().SetTestMode(true);
  CHECK(linesOf(world, [&] { CHECK(world.real().EraseDisc(quick)); }) == Lines{"OnEraseStarted", "OnEraseComplete"});
  CHECK(world.real().DiscStatus() == DiscEmpty);
  CHECK(world.real().SessionCount() == 0);
  CHECK(world.real().DiscRewritable());
  CHECK(world.real().FreeBlocks(AudioBlocks) == 2000);
}

void quickEraseMakesBlank(WriterWorld& world) {
  eraseMakesBlank(world, true);
}

void fullEraseMakesBlank(WriterWorld& world) {
  eraseMakesBlank(world, false);
}

void onlyRewritableDiscsAreErased(WriterWorld& world) {
  leaveSessionOpen(world);
  CHECK_FALSE(world.real().EraseDisc(true));
  world.takeDiscOut();
  CHECK_FALSE(world.real().EraseDisc(true));
  world.heard().lines.clear();
  world.runPosted();
  CHECK(world.heard().lines.empty());
}

void incompleteSessionIsClosed(WriterWorld& world) {
  leaveSessionOpen(world);
  world.real().SetTestMode(true);
  CHECK(linesOf(world, [&] { CHECK(world.real().CloseLastSession(false)); }).back() == "OnOperationComplete");
  CHECK(world.real().LastSessionStatus() == SessionClosed);
  CHECK(world.real().DiscStatus() == DiscOpen);
  CHECK_FALSE(world.real().CloseLastSession(false));
}

void discIsClosedWithItsSession(WriterWorld& world) {
  CHECK_FALSE(world.real().CloseLastSession(true));
  leaveSessionOpen(world);
  CHECK(linesOf(world, [&] { CHECK(world.real().CloseLastSession(true)); }).back() == "OnOperationComplete");
  CHECK(world.real().LastSessionStatus() == SessionClosed);
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK_FALSE(world.real().CloseLastSession(true));
}

}  // namespace

std::vector<Rule> operationRules() {
  return {
      {"An image file is made inside the call, file by file", imageIsMadeInsideTheCall, {}},
      {"An image file that cannot be made is a file error, and nothing is left of it", unwritableImageIsAFileError, {}},
      {"Only an open disc that holds data has a session to import", onlyOpenDataIsImported, {}},
      {"A written image is one data track, and closes the disc whatever is set", imageClosesTheDisc, {}},
      {"A tested image leaves the disc as it was", testedImageLeavesTheDisc, {}},
      {"An image that cannot be read is a file error", unreadableImageIsAFileError, {}},
      {"A quick erase makes the disc blank, whatever the test mode", quickEraseMakesBlank, {}},
      {"A full erase makes the disc blank, whatever the test mode", fullEraseMakesBlank, {}},
      {"Only a rewritable disc is erased", onlyRewritableDiscsAreErased, {}},
      {"An incomplete session is closed, whatever the test mode", incompleteSessionIsClosed, {}},
      {"A disc is closed with its incomplete session", discIsClosedWithItsSession, {}},
  };
}

}  // namespace trackloom::contract
