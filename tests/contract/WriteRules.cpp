#include "contract/WriterContract.h"

namespace trackloom::contract {

using Lines = std::vector<std::string>;

namespace {

const Lines TwoTracks{"OnWriteStarting",        "OnTrackWriteStart 1 40", "OnTrackClosing 1",
                      "OnTrackWriteStart 2 20", "OnTrackClosing 2",       "OnOperationComplete"};

/// A write that cannot begin: it ends in an error of the code, leaves the disc as it was, and touches no track.
void checkRefused(WriterWorld& world, const std::string& code) {
  const std::int32_t status = world.real().DiscStatus();
  const std::int32_t room = world.real().FreeBlocks(AudioBlocks);
  const Lines lines = linesOfWrite(world);
  REQUIRE(lines.size() == 1);
  CHECK(lines[0].starts_with("OnWriteError " + code + " "));
  CHECK(world.heard().progress.empty());
  CHECK(world.real().DiscStatus() == status);
  CHECK(world.real().FreeBlocks(AudioBlocks) == room);
}

void queueOneFile(WriterWorld& world, std::int64_t bytes = 10 * 2048) {
  world.real().SetDiscMode(DataBlocks);
  world.real().ClearDataQueue();
  REQUIRE(world.real().AddDataFile(DiscPath("\\Rock\\a.mp3"), world.plainFile("a", bytes)));
}

void testWriteLeavesTheDisc(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetTestMode(true);
  world.real().SetCloseDisc(true);
  Lines closing = TwoTracks;
  closing.insert(closing.end() - 1, "OnDiscClosing");
  CHECK(linesOfWrite(world) == closing);
  CHECK(world.real().DiscStatus() == DiscEmpty);
  CHECK(world.real().FreeBlocks(AudioBlocks) == 359849);
  CHECK(world.tracksOnDisc() == 0);
  CHECK(world.real().TestMode());
}

void openSessionIsIncomplete(WriterWorld& world) {
  queueTwoTracks(world);
  CHECK(linesOfWrite(world) == TwoTracks);
  CHECK(world.real().DiscStatus() == DiscOpen);
  CHECK(world.real().LastSessionStatus() == SessionIncomplete);
  CHECK(world.real().SessionCount() == 1);
  CHECK(world.real().FreeBlocks(AudioBlocks) < 359849 - 60);
}

void closedSessionLeavesTheDiscOpen(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetCloseSession(true);
  Lines closing = TwoTracks;
  closing.insert(closing.end() - 1, "OnSessionClosing");
  CHECK(linesOfWrite(world) == closing);
  CHECK(world.real().DiscStatus() == DiscOpen);
  CHECK(world.real().LastSessionStatus() == SessionClosed);
  CHECK(world.real().SessionCount() == 1);
}

void tracksGoByNumber(WriterWorld& world) {
  world.real().SetDiscMode(AudioBlocks);
  CHECK(world.real().AddAudioTrack(world.audioFile("one", 40), 9));
  CHECK(world.real().AddAudioTrack(world.audioFile("two", 20), 3));
  const Lines lines = linesOfWrite(world);
  CHECK(lines.at(1) == "OnTrackWriteStart 1 20");
  CHECK(lines.at(3) == "OnTrackWriteStart 2 40");
}

void eventsOfACachedWrite(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetCacheAudioTracks(true);
  world.real().SetCacheDataTrack(false);
  world.real().SetCloseSession(true);
  world.real().SetCloseDisc(true);
  Lines expected{"OnWriteStarting",        "OnTrackCacheStart 1 40", "OnTrackWriteStart 1 40", "OnTrackClosing 1",
                 "OnTrackCacheStart 2 20", "OnTrackWriteStart 2 20", "OnTrackClosing 2",       "OnSessionClosing",
                 "OnDiscClosing",          "OnOperationComplete"};
  if (world.cachesAllFirst()) std::rotate(expected.begin() + 2, expected.begin() + 4, expected.begin() + 5);
  CHECK(linesOfWrite(world) == expected);
  REQUIRE_FALSE(world.heard().cachePositions.empty());
  CHECK(world.heard().cachePositions.back() == 20);
}

void onlyTheCacheOfTheModeCounts(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetCacheDataTrack(true);
  CHECK(linesOfWrite(world) == TwoTracks);
  CHECK(world.heard().cachePositions.empty());
}

void dataIsOneTrack(WriterWorld& world) {
  queueOneFile(world);
  CHECK(world.real().AddDataFile(DiscPath("\\b.mp3"), world.plainFile("b", 2048)));
  world.real().SetVolumeLabel("Mix");
  world.real().SetCloseSession(true);
  const Lines lines = linesOfWrite(world);
  REQUIRE(lines.size() == 5);
  CHECK(lines[0] == "OnWriteStarting");
  CHECK(lines[1].starts_with("OnTrackWriteStart 1 "));
  CHECK(lines[2] == "OnTrackClosing 1");
  CHECK(lines[3] == "OnSessionClosing");
  CHECK(lines[4] == "OnOperationComplete");
  CHECK(world.tracksOnDisc() == 1);
  CHECK(world.real().DataQueueBlocks() == 11);
}

void progressReachesTheLastBlock(WriterWorld& world) {
  queueTwoTracks(world);
  linesOfWrite(world);
  std::int32_t before = 0;
  std::size_t ofFirst = 0;
  for (const auto& progress : world.heard().progress) {
    if (progress.track == 1) ++ofFirst;
    if (progress.track == 2 && before == 40) before = 0;
    CHECK(progress.position > before);
    before = progress.position;
    CHECK((progress.bufferPercent >= 0 && progress.bufferPercent <= 100));
  }
  CHECK(ofFirst >= 3);
  CHECK(before == 20);
  CHECK_FALSE(world.heard().bufferLevels.empty());
}

void emptyQueueIsAFileError(WriterWorld& world) {
  for (const BlockKind kind : {AudioBlocks, DataBlocks}) {
    world.real().SetDiscMode(kind);
    CHECK(linesOfWrite(world).back() == "OnWriteError 2 0");
  }
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

void missingAndClosedDiscsAreRefused(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetCloseDisc(true);
  linesOfWrite(world);
  REQUIRE(world.real().DiscStatus() == DiscClosed);
  world.heard().progress.clear();
  checkRefused(world, "3");
  CHECK_FALSE(world.real().LastDeviceErrorText().empty());
  world.takeDiscOut();
  checkRefused(world, "3");
}

void tooLittleRoomIsRefused(WriterWorld& world) {
  queueTwoTracks(world);
  world.insert(59);
  checkRefused(world, "3");
  CHECK(world.tracksOnDisc() == 0);
  queueOneFile(world, 60 * 2048);
  checkRefused(world, "3");
}

void otherKindIsRefused(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetCloseSession(true);
  linesOfWrite(world);
  queueOneFile(world);
  world.heard().progress.clear();
  checkRefused(world, "3");
  CHECK(world.tracksOnDisc() == 2);
}

void ninetyNineTracksAreTheMost(WriterWorld& world) {
  world.real().SetDiscMode(AudioBlocks);
  world.real().SetTestMode(true);
  const HostPath track = world.audioFile("one", 5);
  for (std::int16_t number = 1; number <= 99; ++number) REQUIRE(world.real().AddAudioTrack(track, number));
  CHECK(linesOfWrite(world).back() == "OnOperationComplete");
  REQUIRE(world.real().AddAudioTrack(track, 100));
  world.heard().progress.clear();
  checkRefused(world, "3");
}

void vanishedSourceCostsNoDisc(WriterWorld& world) {
  queueTwoTracks(world);
  const HostPath file = world.audioFile("three", 30);
  REQUIRE(world.real().AddAudioTrack(file, 3));
  world.vanish(file);
  checkRefused(world, "2");
}

void refusedSourceStopsTheWrite(WriterWorld& world) {
  queueTwoTracks(world);
  CHECK_FALSE(world.real().AddAudioTrack(world.plainFile("no music", 5000), 3));
  checkRefused(world, "2");
  queueTwoTracks(world);
  CHECK(linesOfWrite(world) == TwoTracks);
}

void refusedFileStopsTheWrite(WriterWorld& world) {
  queueOneFile(world);
  CHECK_FALSE(world.real().AddDataFile(DiscPath("\\b.mp3"), world.place("missing")));
  checkRefused(world, "2");
  world.real().ImportLastSession(true);
  CHECK(linesOfWrite(world).back() == "OnOperationComplete");
}

void faultEndsTheWrite(WriterWorld& world) {
  queueTwoTracks(world);
  world.fail({.block = 30});
  const Lines lines = linesOfWrite(world);
  CHECK(lines.at(1) == "OnTrackWriteStart 1 40");
  CHECK(lines.back().starts_with("OnWriteError 3 "));
  CHECK(lines.size() == 3);
  CHECK_FALSE(world.real().LastDeviceErrorText().empty());
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().FreeBlocks(AudioBlocks) <= 0);
  world.runPosted();
  CHECK(world.heard().lines == lines);
}

void nothingComesAfterAnAbort(WriterWorld& world) {
  queueTwoTracks(world);
  world.slowDown();
  world.real().StartWrite();
  REQUIRE(world.runUntil([&] { return world.heard().has("OnTrackWriteStart 1 40"); }));
  world.real().AbortWrite();
  const Lines lines = world.heard().lines;
  const auto reports = world.heard().progress.size();
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().FreeBlocks(AudioBlocks) <= 0);
  world.runPosted();
  CHECK(world.heard().lines == lines);
  CHECK(world.heard().progress.size() == reports);
}

void abortedTestLeavesTheDisc(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetTestMode(true);
  world.slowDown();
  world.real().StartWrite();
  REQUIRE(world.runUntil([&] { return world.heard().has("OnTrackWriteStart 1 40"); }));
  world.real().AbortWrite();
  CHECK(world.real().DiscStatus() == DiscEmpty);
  CHECK(world.real().FreeBlocks(AudioBlocks) == 359849);
  CHECK(world.real().AudioQueueBlocks() == 60);
}

void abortOfNothingDoesNothing(WriterWorld& world) {
  world.real().AbortWrite();
  queueTwoTracks(world);
  CHECK(linesOfWrite(world) == TwoTracks);
  world.real().AbortWrite();
  CHECK(world.real().DiscStatus() == DiscOpen);
}

void otherKindsRoomIsTold(WriterWorld& world) {
  queueTwoTracks(world);
  linesOfWrite(world);
  CHECK(world.real().FreeBlocks(DataBlocks) > 0);
}

}  // namespace

void secondWriteRepeatsTheFirst(WriterWorld& world) {
  queueTwoTracks(world);
  CHECK(linesOfWrite(world) == TwoTracks);
  CHECK(world.tracksOnDisc() == 2);
  const std::int32_t room = world.real().FreeBlocks(AudioBlocks);
  CHECK(linesOfWrite(world) == TwoTracks);
  CHECK(world.tracksOnDisc() == 4);
  CHECK(world.real().FreeBlocks(AudioBlocks) <= room - 60);
  CHECK(world.real().AudioQueueBlocks() == 60);
}

void closedDiscHasNoRoom(WriterWorld& world) {
  queueTwoTracks(world);
  world.real().SetCloseDisc(true);
  CHECK(world.real().FreeBlocks(AudioBlocks) > 0);
  CHECK(world.real().FreeBlocks(DataBlocks) > 0);
  CHECK(linesOfWrite(world).back() == "OnOperationComplete");
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().LastSessionStatus() == SessionClosed);
  CHECK(world.real().FreeBlocks(AudioBlocks) <= 0);
  CHECK(world.real().FreeBlocks(DataBlocks) <= 0);
}

std::vector<Rule> writeRules() {
  return {
      {"A second write repeats the first", secondWriteRepeatsTheFirst, {}},
      {"A closed disc has no room", closedDiscHasNoRoom, {}},
      {"A test write tells the same and leaves the disc as it was", testWriteLeavesTheDisc, {}},
      {"A write that closes nothing leaves an incomplete session", openSessionIsIncomplete, {}},
      {"A write that closes its session leaves the disc open", closedSessionLeavesTheDiscOpen, {}},
      {"Tracks lie on the disc in the order of their numbers", tracksGoByNumber, {}},
      {"Caching is told before each track, and closing as it was set", eventsOfACachedWrite, {}},
      {"Only the cache of the disc's kind counts", onlyTheCacheOfTheModeCounts, {}},
      {"A data disc has one track, number 1", dataIsOneTrack, {}},
      {"Progress rises to the last block of each track", progressReachesTheLastBlock, {}},
      {"A write of nothing is a file error", emptyQueueIsAFileError, {}},
      {"A write onto no disc or a closed one is a device error", missingAndClosedDiscsAreRefused, {}},
      {"A write that does not fit is a device error, and the disc stays as it was", tooLittleRoomIsRefused, {}},
      {"A disc that holds one kind takes no other", otherKindIsRefused, {}},
      {"A write of more than 99 tracks is a device error", ninetyNineTracksAreTheMost, {}},
      {"A source that has vanished is a file error before the first block", vanishedSourceCostsNoDisc, {}},
      {"A refused audio file stops the write until the queue is cleared", refusedSourceStopsTheWrite, {}},
      {"A refused data file stops the write until the next import", refusedFileStopsTheWrite, {}},
      {"A fault ends the write, and the disc is spoilt", faultEndsTheWrite, {}},
      {"Nothing comes after an abort, and the disc is spoilt", nothingComesAfterAnAbort, {}},
      {"An aborted test leaves the disc as it was", abortedTestLeavesTheDisc, {}},
      {"An abort of nothing does nothing", abortOfNothingDoesNothing, {}},
      {"A disc that holds one kind still tells the room of the other", otherKindsRoomIsTold, {}},
  };
}

}  // namespace trackloom::contract
