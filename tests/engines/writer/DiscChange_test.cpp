#include <catch2/catch.hpp>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

namespace {

FakeDisc rewritableDisc() {
  FakeDisc disc = FakeDisc::closed();
  disc.state.rewritable = true;
  return disc;
}

FakeDisc openDisc() {
  FakeDisc disc = FakeDisc::blank();
  disc.state.status = DiscOpen;
  disc.state.sessions = 1;
  disc.state.lastSession = SessionIncomplete;
  return disc;
}

bool runToEnd(FakeWorld& world, const std::string& last) {
  return world.queue.runUntil([&] { return world.heard.has(last); });
}

}  // namespace

TEST_CASE("An erase is told as begun and as complete, both after the call, and always real") {
  FakeWorld world;
  world.recorder->insert(rewritableDisc());
  world.writer->SetTestMode(true);
  const bool quick = GENERATE(true, false);
  REQUIRE(world.writer->EraseDisc(quick));
  CHECK(world.heard.lines.empty());
  REQUIRE(runToEnd(world, "OnEraseComplete"));
  CHECK(world.heard.lines == Lines{"OnEraseStarted", "OnEraseComplete"});
  CHECK(world.recorder->erases == std::vector<bool>{quick});
  CHECK(world.writer->DiscStatus() == DiscEmpty);
  CHECK(world.writer->EjectDisc());
}

TEST_CASE("What cannot be erased is refused in words, and nothing is told") {
  FakeWorld world;
  std::string words = "the disc cannot be erased: it can be written once only (5/30/05)";
  SECTION("a disc for one write") {}
  SECTION("no disc") {
    world.writer->EjectDisc();
    words = "no disc is in the drive (2/3A/00)";
  }
  SECTION("no drive") {
    world.writer->SelectDrive(-1);
    words = "no drive is in use (2/04/00)";
  }
  CHECK_FALSE(world.writer->EraseDisc(true));
  CHECK(world.writers.failureDetail().lastFailure() == words);
  CHECK(world.writer->LastDeviceErrorText() == words);
  CHECK(world.queue.size() == 0);
  CHECK(world.recorder->erases.empty());
}

TEST_CASE("A closing is told with its phases and completes, always real") {
  FakeWorld world;
  world.recorder->insert(openDisc());
  world.writer->SetTestMode(true);
  const bool alsoDisc = GENERATE(true, false);
  REQUIRE(world.writer->CloseLastSession(alsoDisc));
  CHECK(world.heard.lines.empty());
  REQUIRE(runToEnd(world, "OnOperationComplete"));
  CHECK(world.heard.lines == Lines{"OnSessionClosing", "OnOperationComplete"});
  CHECK(world.writer->DiscStatus() == (alsoDisc ? DiscClosed : DiscOpen));
  CHECK(world.writer->LastSessionStatus() == SessionClosed);
  CHECK_FALSE(world.writer->CloseLastSession(alsoDisc));
  CHECK(world.writers.failureDetail().lastFailure() ==
        "the disc has no incomplete session that could be closed (5/2C/00)");
}

TEST_CASE("An erase or a closing that fails ends in an error whose words stand beside it") {
  FakeWorld world;
  FakeDisc disc = openDisc();
  disc.state.rewritable = true;
  world.recorder->insert(disc);
  world.recorder->failChange = true;
  SECTION("erase") {
    REQUIRE(world.writer->EraseDisc(true));
  }
  SECTION("closing") {
    REQUIRE(world.writer->CloseLastSession(false));
  }
  REQUIRE(runToEnd(world, "OnWriteError 3 199680"));
  CHECK(world.writers.failureDetail().lastFailure() == "the drive smokes (3/0C/00)");
  CHECK(world.writer->LastDeviceErrorText() == "the drive smokes (3/0C/00)");
  CHECK_FALSE(world.heard.has("OnOperationComplete"));
  CHECK_FALSE(world.heard.has("OnEraseComplete"));
}

TEST_CASE("While an operation runs no other begins and the disc stays in") {
  FakeWorld world;
  world.recorder->everyWrite = std::chrono::milliseconds(20);
  world.writer->AddAudioTrack(world.track("a", 4000), 1);
  world.writer->StartWrite();
  REQUIRE(world.runUntilLine("OnTrackWriteStart 1 4000"));
  CHECK_FALSE(world.writer->EraseDisc(true));
  CHECK_FALSE(world.writer->CloseLastSession(true));
  CHECK_FALSE(world.writer->EjectDisc());
  CHECK(world.writers.failureDetail().lastFailure() == "the drive is at work (2/04/08)");
  world.writer->AbortWrite();
  CHECK(world.writer->EjectDisc());
}

TEST_CASE("A stuck tray says why") {
  FakeWorld world;
  world.recorder->refuseEject = true;
  CHECK_FALSE(world.writer->EjectDisc());
  CHECK(world.writers.failureDetail().lastFailure() == "the tray is stuck (4/53/00)");
}

}  // namespace trackloom::engines::writer
