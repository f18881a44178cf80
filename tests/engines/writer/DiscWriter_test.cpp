#include <catch2/catch.hpp>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

TEST_CASE("The room of a disc is told by kind, and every kind but audio is data") {
  FakeWorld world;
  FakeDisc disc = FakeDisc::blank();
  disc.state.freeAudioBlocks = 111;
  disc.state.freeDataBlocks = 222;
  world.recorder->insert(disc);
  CHECK(world.writer->FreeBlocks(AudioBlocks) == 111);
  CHECK(world.writer->FreeBlocks(DataBlocks) == 222);
  CHECK(world.writer->FreeBlocks(7) == 222);
}

TEST_CASE("Drives have letters from D on, and those behind Z a question mark") {
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  DiscWriters writers(RecorderList(25, std::make_shared<FakeRecorder>()), std::make_shared<audio::AudioFiles>(), queue,
                      patience, {});
  const auto writer = writers.create(heard);
  CHECK(writer->DriveCount() == 25);
  CHECK(writer->DriveLetter(0) == "D");
  CHECK(writer->DriveLetter(22) == "Z");
  CHECK(writer->DriveLetter(23) == "?");
  CHECK(writer->DriveVendor(1) == " Fake ");
  CHECK(writer->DriveProduct(1) == "Recorder\t");
  for (const std::int16_t none : std::initializer_list<std::int16_t>{-1, 25, 32767, -32768}) {
    CHECK(writer->DriveLetter(none).empty());
    CHECK(writer->DriveVendor(none).empty());
    CHECK(writer->DriveProduct(none).empty());
    CHECK_FALSE(writer->SelectDrive(none));
  }
}

TEST_CASE("A drive that cannot be taken leaves none in use") {
  FakeWorld world;
  CHECK(world.writer->MediaLoaded());
  CHECK(world.writer->MaxWriteSpeed() == 16);
  CHECK(world.writer->HasWriteGuard());
  world.recorder->refuseTake = true;
  CHECK_FALSE(world.writer->SelectDrive(0));
  CHECK_FALSE(world.writer->MediaLoaded());
  CHECK(world.writer->MaxWriteSpeed() == 0);
  CHECK_FALSE(world.writer->HasWriteGuard());
  CHECK_FALSE(world.writer->EjectDisc());
  CHECK(world.writer->DiscStatus() == DiscStatusUnknown);
  CHECK(world.writer->DiscType() == DiscTypeUnknown);
  CHECK(world.writer->SessionCount() == 0);
  CHECK(world.writer->FreeBlocks(DataBlocks) == 0);
}

TEST_CASE("The disc is the one that lies in the drive at the moment of the question") {
  FakeWorld world;
  CHECK(world.writer->DiscStatus() == DiscEmpty);
  CHECK(world.writer->FreeBlocks(AudioBlocks) == 359849);
  FakeDisc disc = FakeDisc::closed();
  disc.state.rewritable = true;
  disc.state.type = DiscTypeXa;
  world.recorder->insert(disc);
  CHECK(world.writer->DiscStatus() == DiscClosed);
  CHECK(world.writer->DiscRewritable());
  CHECK(world.writer->DiscType() == DiscTypeXa);
  CHECK(world.writer->SessionCount() == 1);
  CHECK(world.writer->LastSessionStatus() == SessionClosed);
  CHECK(world.writer->EjectDisc());
  CHECK_FALSE(world.writer->MediaLoaded());
}

TEST_CASE("A tray that is stuck answers False and keeps the disc") {
  FakeWorld world;
  world.recorder->refuseEject = true;
  CHECK_FALSE(world.writer->EjectDisc());
  CHECK(world.writer->MediaLoaded());
}

TEST_CASE("Listing raises one event an entry in queue order before it returns") {
  FakeWorld world;
  const HostPath a = world.track("a", 1);
  const HostPath b = world.track("b", 2);
  CHECK(world.writer->AddAudioTrack(b, 5));
  CHECK(world.writer->AddAudioTrack(a, 2));
  CHECK(world.writer->AddAudioTrack(b, 2));
  world.writer->ListAudioTracks();
  CHECK(world.heard.listed == Lines{"5 " + b.text, "2 " + a.text, "2 " + b.text});
}

TEST_CASE("A listener may change the queue while it is listed") {
  FakeWorld world;
  const HostPath a = world.track("a", 1);
  for (std::int16_t number = 1; number <= 3; ++number) CHECK(world.writer->AddAudioTrack(a, number));
  bool changed = false;
  world.heard.onLine = [&](const std::string&) {
    if (std::exchange(changed, true)) return;
    world.writer->ClearAudioQueue();
    world.writer->AddAudioTrack(a, 9);
  };
  world.writer->ListAudioTracks();
  CHECK(world.heard.listed.size() == 3);
  CHECK(world.writer->AudioQueueBlocks() == 1);
}

TEST_CASE("Each instance has its own queues and settings") {
  FakeWorld world;
  fakes::WriterTranscript other;
  const auto scratch = world.writers.create(other);
  CHECK(world.writer->AddAudioTrack(world.track("a", 4), 1));
  CHECK(world.writer->AddDataFile(DiscPath("\\a"), world.track("a", 4)));
  world.writer->SetTestMode(true);
  world.writer->SetCloseDisc(true);
  world.writer->SetCacheAudioTracks(true);
  world.writer->SetCacheDataTrack(true);
  CHECK(scratch->AudioQueueBlocks() == 0);
  CHECK(scratch->DataQueueBlocks() == 0);
  CHECK_FALSE(scratch->TestMode());
  CHECK_FALSE(scratch->CloseDisc());
  CHECK_FALSE(scratch->CacheAudioTracks());
  CHECK_FALSE(scratch->CacheDataTrack());
  CHECK(world.writer->TestMode());
  CHECK(world.writer->CacheAudioTracks());
  CHECK(world.writer->CacheDataTrack());
}

TEST_CASE("The order to the recorder bears the settings, and tracks go by number") {
  FakeWorld world;
  world.writer->SetWriteSpeed(8);
  world.writer->SetCloseSession(true);
  world.writer->SetTestMode(true);
  world.writer->EnableWriteGuard(true);
  world.writer->AddAudioTrack(world.track("b", 30), 7);
  world.writer->AddAudioTrack(world.track("a", 10), 3);
  CHECK(world.linesOfWrite() == Lines{"OnWriteStarting", "OnTrackWriteStart 1 10", "OnTrackClosing 1",
                                      "OnTrackWriteStart 2 30", "OnTrackClosing 2", "OnSessionClosing",
                                      "OnOperationComplete"});
  REQUIRE(world.recorder->orders.size() == 1);
  const WriteOrder& order = world.recorder->orders[0];
  CHECK(order.kind == AudioBlocks);
  CHECK(order.trackBlocks == std::vector<std::int32_t>{10, 30});
  CHECK(order.pause == 150);
  CHECK(order.test);
  CHECK(order.closeSession);
  CHECK_FALSE(order.closeDisc);
  CHECK(order.speed == 8);
  CHECK(world.recorder->guardOn);
  CHECK(world.recorder->disc()->state.status == DiscEmpty);
}

TEST_CASE("What reaches the recorder are the samples of the files, with the last sector filled up with silence") {
  FakeWorld world;
  const std::string samples = FakeWorld::samples("a", 100).substr(0, 99 * 2352 + 4);
  const bool cached = GENERATE(false, true);
  world.writer->SetCacheAudioTracks(cached);
  world.writer->AddAudioTrack(world.folder.file("a.wav", wav(samples)), 1);
  world.writer->AddAudioTrack(world.track("b", 700), 2);
  REQUIRE(world.write());
  const auto tracks = world.recorder->disc()->tracks;
  REQUIRE(tracks.size() == 2);
  CHECK((tracks[0] == samples + std::string(2348, '\0')));
  CHECK((tracks[1] == FakeWorld::samples("b", 700)));
  CHECK(world.heard.cachePositions.empty() != cached);
}

TEST_CASE("Many tracks of all lengths arrive in their order and whole") {
  FakeWorld world;
  std::vector<std::string> expected;
  for (std::int16_t number = 1; number <= 99; ++number) {
    const std::string name(1, static_cast<char>(number));
    const std::int32_t blocks = 1 + number * 37 % 300;
    expected.push_back(FakeWorld::samples(name, blocks));
    world.folder.file(std::to_string(number) + ".wav", wav(expected.back()));
    REQUIRE(world.writer->AddAudioTrack(world.folder.host(std::to_string(number) + ".wav"), number));
  }
  REQUIRE(world.write());
  CHECK(world.heard.lines.back() == "OnOperationComplete");
  CHECK((world.recorder->disc()->tracks == expected));
}

TEST_CASE("A second write while one runs is not begun") {
  FakeWorld world;
  world.recorder->everyWrite = std::chrono::milliseconds(1);
  world.writer->AddAudioTrack(world.track("a", 50), 1);
  world.writer->StartWrite();
  world.writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return world.heard.ended(); }));
  CHECK(world.recorder->orders.size() == 1);
  CHECK(std::ranges::count(world.heard.lines, "OnWriteStarting") == 1);
}

TEST_CASE("A listener may start the next write from the completion of the last") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  int completions = 0;
  world.heard.onLine = [&](const std::string& line) {
    if (line == "OnOperationComplete" && ++completions == 1) world.writer->StartWrite();
  };
  world.writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return completions == 2; }));
  CHECK(world.recorder->disc()->tracks.size() == 2);
}

}  // namespace trackloom::engines::writer
