#include "contract/WriterContract.h"

namespace trackloom::contract {

using Lines = std::vector<std::string>;

namespace {

/// What a disc is after each operation.
struct State {
  std::int32_t status = DiscEmpty;
  std::int32_t lastSession = SessionEmpty;
  std::int16_t sessions = 0;
  std::size_t tracks = 0;
};

void checkState(WriterWorld& world, const State& state) {
  CHECK(world.real().MediaLoaded());
  CHECK(world.real().DiscStatus() == state.status);
  CHECK(world.real().LastSessionStatus() == state.lastSession);
  CHECK(world.real().SessionCount() == state.sessions);
  CHECK(world.tracksOnDisc() == state.tracks);
  const bool closed = state.status == DiscClosed;
  CHECK((world.real().FreeBlocks(AudioBlocks) <= 0) == closed);
  CHECK((world.real().FreeBlocks(DataBlocks) <= 0) == closed);
}

void write(WriterWorld& world, bool closeSession, bool closeDisc) {
  world.real().SetCloseSession(closeSession);
  world.real().SetCloseDisc(closeDisc);
  REQUIRE(linesOfWrite(world).back() == "OnOperationComplete");
}

void audioSessionsGoOnUntilTheyAreClosed(WriterWorld& world) {
  queueTwoTracks(world);
  write(world, false, false);
  checkState(world, {DiscOpen, SessionIncomplete, 1, 2});
  write(world, false, false);
  checkState(world, {DiscOpen, SessionIncomplete, 1, 4});
  write(world, true, false);
  checkState(world, {DiscOpen, SessionClosed, 1, 6});
  write(world, false, false);
  checkState(world, {DiscOpen, SessionIncomplete, 2, 8});
  CHECK(linesOf(world, [&] { CHECK(world.real().CloseLastSession(false)); }).back() == "OnOperationComplete");
  checkState(world, {DiscOpen, SessionClosed, 2, 8});
  write(world, false, true);
  checkState(world, {DiscClosed, SessionClosed, 3, 10});
}

void dataSessionsFollowOneAnother(WriterWorld& world) {
  world.real().SetDiscMode(DataBlocks);
  REQUIRE(world.real().AddDataFile(DiscPath("\\a.mp3"), world.plainFile("a", 2048)));
  for (const std::int16_t session : std::initializer_list<std::int16_t>{1, 2, 3}) {
    const std::int32_t room = world.real().FreeBlocks(DataBlocks);
    CHECK(world.real().ImportLastSession(true) == (session != 1));
    CHECK(world.real().DataQueueBlocks() == 1);
    write(world, true, session == 3);
    checkState(world,
               {session == 3 ? DiscClosed : DiscOpen, SessionClosed, session, static_cast<std::size_t>(session)});
    CHECK(world.real().FreeBlocks(DataBlocks) < room);
  }
  CHECK_FALSE(world.real().ImportLastSession(true));
}

void nothingIsImportedWithoutADisc(WriterWorld& world) {
  CHECK_FALSE(world.scratch().ImportLastSession(true));
  world.takeDiscOut();
  CHECK_FALSE(world.real().ImportLastSession(true));
}

void erasedDiscsAreWrittenAgain(WriterWorld& world) {
  world.insert(20000, true);
  for (const bool quick : {true, false}) {
    queueTwoTracks(world);
    write(world, true, true);
    checkState(world, {DiscClosed, SessionClosed, 1, 2});
    CHECK(linesOf(world, [&] { CHECK(world.real().EraseDisc(quick)); }).back() == "OnEraseComplete");
    checkState(world, {DiscEmpty, SessionEmpty, 0, 0});
    CHECK(world.real().FreeBlocks(AudioBlocks) == 20000);
  }
  world.real().SetDiscMode(DataBlocks);
  REQUIRE(world.real().AddDataFile(DiscPath("\\a.mp3"), world.plainFile("a", 2048)));
  write(world, true, false);
  checkState(world, {DiscOpen, SessionClosed, 1, 1});
}

void aFullDiscTakesNoMore(WriterWorld& world) {
  world.insert(190);
  world.real().SetDiscMode(AudioBlocks);
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 40), 1));
  CHECK(linesOfWrite(world).back() == "OnOperationComplete");
  CHECK(world.tracksOnDisc() == 1);
  CHECK(linesOfWrite(world).back().starts_with("OnWriteError 3 "));
  CHECK(world.tracksOnDisc() == 1);
}

void oneOperationAtATime(WriterWorld& world) {
  world.insert(5000, true);
  queueTwoTracks(world);
  world.slowDown();
  world.real().StartWrite();
  REQUIRE(world.runUntil([&] { return world.heard().has("OnTrackWriteStart 1 40"); }));
  world.real().StartWrite();
  CHECK_FALSE(world.real().WriteIsoImage(world.plainFile("finished.iso", 2048)));
  CHECK_FALSE(world.real().EraseDisc(true));
  CHECK_FALSE(world.real().CloseLastSession(true));
  CHECK_FALSE(world.real().EjectDisc());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.heard().lines.back() == "OnOperationComplete");
  CHECK(world.heard().lines.size() == 6);
  CHECK(world.tracksOnDisc() == 2);
}

}  // namespace

std::vector<Rule> stateRules() {
  return {
      {"Audio tracks go into one session until it is closed", audioSessionsGoOnUntilTheyAreClosed, {}},
      {"Each closed write of data is a session more, until the disc is closed", dataSessionsFollowOneAnother, {}},
      {"Without a drive or a disc there is no session to import", nothingIsImportedWithoutADisc, {}},
      {"An erased disc takes either kind again", erasedDiscsAreWrittenAgain, {}},
      {"A full disc takes no more, and keeps what it has", aFullDiscTakesNoMore, {}},
      {"While a write runs no other operation begins", oneOperationAtATime, {Ability::Busyness}},
  };
}

}  // namespace trackloom::contract
