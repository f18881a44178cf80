#include <catch2/catch.hpp>
#include <functional>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

namespace {

std::string lastLine(FakeWorld& world) {
  world.write();
  return world.heard.lines.back();
}

bool saysOfDevice(FakeWorld& world, const std::string& words) {
  return world.writer->LastDeviceErrorText().find(words) != std::string::npos;
}

bool detailSays(const FakeWorld& world, const std::string& words) {
  return world.writers.failureDetail().lastFailure().find(words) != std::string::npos;
}

std::string deviceFailure(std::int32_t number) {
  return "OnWriteError 3 " + std::to_string(number);
}

}  // namespace

TEST_CASE("Without a drive, a disc or an open one, a write ends in a device error with words") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  SECTION("no disc") {
    world.writer->EjectDisc();
    CHECK(lastLine(world) == deviceFailure(0x023A00));
    CHECK(world.writer->LastDeviceErrorText() == "no disc is in the drive (2/3A/00)");
  }
  SECTION("closed disc") {
    world.recorder->insert(FakeDisc::closed());
    CHECK(lastLine(world) == deviceFailure(0x053005));
    CHECK(saysOfDevice(world, "closed"));
  }
  SECTION("no drive") {
    world.writer->SelectDrive(-1);
    CHECK(lastLine(world) == deviceFailure(0x020400));
    CHECK(world.writer->LastDeviceErrorText() == "no drive is in use (2/04/00)");
  }
  CHECK(world.recorder->orders.empty());
}

TEST_CASE("What is known before the first block is told without a word of starting, disc untouched") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  FakeDisc disc = FakeDisc::blank();
  std::int32_t number = 0;
  SECTION("closed") {
    disc = FakeDisc::closed();
    number = 0x053005;
  }
  SECTION("too small") {
    disc = FakeDisc::blank(4);
    number = 0x056300;
  }
  SECTION("of the other kind") {
    disc.state.status = DiscOpen;
    disc.state.tracks = {{DataBlocks, 0, 300, 1}};
    number = 0x056400;
  }
  SECTION("with all its tracks") {
    disc.state.status = DiscOpen;
    disc.state.tracks = std::vector<DiscTrack>(99);
    number = 0x057205;
  }
  world.recorder->insert(disc);
  CHECK(world.linesOfWrite() == Lines{deviceFailure(number)});
  CHECK_FALSE(world.writer->LastDeviceErrorText().empty());
  CHECK(world.writers.failureDetail().lastFailure().empty());
  CHECK(world.recorder->orders.empty());
}

TEST_CASE("A track that was refused keeps the whole queue from the disc until the queue is cleared") {
  FakeWorld world;
  const HostPath good = world.track("a", 5);
  const HostPath bad = world.folder.file("b.wav", "not music");
  world.writer->AddAudioTrack(good, 1);
  CHECK_FALSE(world.writer->AddAudioTrack(bad, 2));
  CHECK_FALSE(world.writer->AddAudioTrack(world.folder.host("missing.mp3"), 3));
  for (int round = 0; round < 2; ++round) {
    CHECK(world.linesOfWrite() == Lines{"OnWriteError 2 0"});
    CHECK(world.writers.failureDetail().lastFailure() == bad.text + ": not 44.1 kHz stereo sound, MP3 or WAV");
  }
  world.writer->ClearDataQueue();
  world.writer->ImportLastSession(true);
  CHECK(world.linesOfWrite() == Lines{"OnWriteError 2 0"});
  CHECK(world.recorder->orders.empty());
  world.writer->ClearAudioQueue();
  world.writer->AddAudioTrack(good, 1);
  CHECK(lastLine(world) == "OnOperationComplete");
  CHECK(world.writers.failureDetail().lastFailure().empty());
}

TEST_CASE("A file that was refused keeps the whole data queue from the disc until the next import") {
  FakeWorld world;
  world.writer->SetDiscMode(DataBlocks);
  const HostPath good = world.track("a", 5);
  CHECK_FALSE(world.writer->AddDataFile(DiscPath("\\old"), world.folder.host("gone")));
  world.writer->ImportLastSession(true);
  world.writer->AddDataFile(DiscPath("\\a"), good);
  CHECK(lastLine(world) == "OnOperationComplete");
  world.recorder->insert(FakeDisc::blank());
  CHECK_FALSE(world.writer->AddDataFile(DiscPath("\\b"), world.folder.host("missing.mp3")));
  CHECK(world.linesOfWrite() == Lines{"OnWriteError 2 0"});
  CHECK(detailSays(world, "missing.mp3: No such file or directory"));
  CHECK(world.recorder->disc()->state.status == DiscEmpty);
  world.writer->SetDiscMode(AudioBlocks);
  world.writer->AddAudioTrack(good, 1);
  CHECK(lastLine(world) == "OnOperationComplete");
}

TEST_CASE("The padding of an image gives way where the room on the disc is short, and no more than that") {
  FakeWorld world;
  world.writer->SetDiscMode(DataBlocks);
  world.writer->AddDataFile(DiscPath("\\a"), world.folder.file("a", noise(std::size_t{400} * 2048, 3)));
  REQUIRE(lastLine(world) == "OnOperationComplete");
  const std::int32_t whole = world.recorder->orders.back().trackBlocks.at(0);
  const std::string full = world.recorder->disc()->tracks.at(0);
  for (const std::int32_t missing : {1, 33, 150}) {
    world.recorder->insert(FakeDisc::blank(whole - missing));
    REQUIRE(lastLine(world) == "OnOperationComplete");
    CHECK(world.recorder->orders.back().trackBlocks.at(0) == whole - missing);
    // Behind the descriptors, which tell the size, all is as it was.
    const std::string image = world.recorder->disc()->tracks.at(0);
    CHECK((image.substr(std::size_t{200} * 2048) ==
           full.substr(std::size_t{200} * 2048, image.size() - std::size_t{200} * 2048)));
  }
  world.recorder->insert(FakeDisc::blank(whole - 151));
  CHECK(lastLine(world) == deviceFailure(0x056300));
  world.recorder->insert(FakeDisc::blank(whole));
  REQUIRE(lastLine(world) == "OnOperationComplete");
  CHECK(world.recorder->orders.back().trackBlocks.at(0) == whole);
}

TEST_CASE("A disc that is too small is refused before its first block, the pauses counted in") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  world.writer->AddAudioTrack(world.track("b", 5), 2);
  world.recorder->insert(FakeDisc::blank(159));
  CHECK(lastLine(world) == deviceFailure(0x056300));
  CHECK(world.writer->LastDeviceErrorText() == "the disc has 159 blocks left, and 160 are needed (5/63/00)");
  CHECK(world.recorder->orders.empty());
  CHECK(world.recorder->disc()->state.status == DiscEmpty);
  world.recorder->insert(FakeDisc::blank(160));
  CHECK(lastLine(world) == "OnOperationComplete");
}

TEST_CASE(
    "The room of an open disc begins where its next track would, so that track's own gap is not asked for again") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  world.writer->AddAudioTrack(world.track("b", 5), 2);
  FakeDisc disc = FakeDisc::blank(160);
  disc.state.status = DiscOpen;
  disc.state.lastSession = SessionIncomplete;
  disc.state.sessions = 1;
  world.recorder->insert(disc);
  CHECK(lastLine(world) == "OnOperationComplete");
}

TEST_CASE("More than 99 tracks are refused before the first block") {
  FakeWorld world;
  const HostPath path = world.folder.file("a.wav", wav(std::string(2352, 'x')));
  for (std::int16_t number = 1; number <= 100; ++number) world.writer->AddAudioTrack(path, number);
  CHECK(lastLine(world) == deviceFailure(0x057205));
  CHECK(world.recorder->orders.empty());
}

TEST_CASE("A data image is compared with the room as it is, directories and all, before anything is written") {
  FakeWorld world;
  world.writer->SetDiscMode(DataBlocks);
  world.writer->AddDataFile(DiscPath("\\a"), world.folder.file("a", std::string(20480, 'x')));
  CHECK(world.writer->DataQueueBlocks() == 10);
  world.recorder->insert(FakeDisc::blank(10));
  CHECK(lastLine(world) == deviceFailure(0x056300));
  CHECK(world.recorder->orders.empty());
}

TEST_CASE("A source that has vanished or changed since it was queued is a file error before the first block") {
  FakeWorld world;
  const bool cached = GENERATE(false, true);
  world.writer->SetCacheAudioTracks(cached);
  world.writer->SetCacheDataTrack(cached);
  const HostPath path = world.track("a", 5);
  world.writer->AddAudioTrack(path, 1);
  world.writer->AddDataFile(DiscPath("\\a"), path);
  world.folder.file("a.wav", "not music any more");
  CHECK(lastLine(world) == "OnWriteError 2 0");
  CHECK(detailSays(world, "a.wav: "));
  std::filesystem::remove(path.text);
  CHECK(lastLine(world) == "OnWriteError 2 0");
  world.writer->SetDiscMode(DataBlocks);
  CHECK(lastLine(world) == "OnWriteError 2 0");
  CHECK(detailSays(world, "No such file"));
  CHECK(world.recorder->orders.empty());
  CHECK(world.recorder->disc()->state.status == DiscEmpty);
}

TEST_CASE("A data file that goes or changes before its turn comes is a file error that names it, not zeros") {
  FakeWorld world;
  world.writer->SetDiscMode(DataBlocks);
  const std::size_t megabytes = 24;
  world.writer->AddDataFile(DiscPath("\\1"), world.folder.file("1", noise(megabytes << 20, 1)));
  const HostPath second = world.folder.file("2", noise(megabytes << 20, 2));
  world.writer->AddDataFile(DiscPath("\\2"), second);
  world.recorder->everyWrite = std::chrono::milliseconds(1);
  std::function<void()> change;
  std::string why;
  SECTION("shortened") {
    change = [&] { std::filesystem::resize_file(second.text, 5000); };
    why = "changed since it was added";
  }
  SECTION("overwritten") {
    change = [&] { world.folder.file("2", "other"); };
    why = "changed since it was added";
  }
  SECTION("removed") {
    change = [&] { std::filesystem::remove(second.text); };
    why = "No such file or directory";
  }
  SECTION("not to be read any more") {
    change = [&] {
      std::filesystem::remove(second.text);
      std::filesystem::create_directory(second.text);
    };
    why = "not a regular file";
  }
  world.heard.onLine = [&](const std::string& line) {
    if (line.starts_with("OnTrackWriteStart")) change();
  };
  CHECK(lastLine(world) == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure() == second.text + ": " + why);
  CHECK(world.recorder->disc()->state.status == DiscClosed);
}

TEST_CASE("A failure of the recorder comes with its number and words, ends the write and spoils the disc") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 60), 1);
  world.writer->AddAudioTrack(world.track("b", 60), 2);
  world.recorder->failAtBlock = 100;
  CHECK(world.linesOfWrite() == Lines{"OnWriteStarting", "OnTrackWriteStart 1 60", "OnTrackClosing 1",
                                      "OnTrackWriteStart 2 60", deviceFailure(0x030C00)});
  CHECK(world.writer->LastDeviceErrorText() == "write error at block 100 (3/0C/00)");
  CHECK(world.recorder->disc()->state.status == DiscClosed);
}

TEST_CASE("A recorder that fails in the middle lets go of the sources, and the next write reads them again") {
  FakeWorld world;
  const bool data = GENERATE(false, true);
  world.writer->SetDiscMode(data ? DataBlocks : AudioBlocks);
  // More than is read ahead, so that the reader is still at it.
  const HostPath path = world.track("a", 20'000);
  world.writer->AddAudioTrack(path, 1);
  world.writer->AddDataFile(DiscPath("\\a"), path);
  world.recorder->failAtBlock = 100;
  CHECK(lastLine(world) == deviceFailure(0x030C00));
  world.recorder->failAtBlock.reset();
  world.recorder->insert(FakeDisc::blank());
  CHECK(lastLine(world) == "OnOperationComplete");
}

TEST_CASE("A failure in a test write leaves the disc as it was") {
  FakeWorld world;
  world.writer->SetTestMode(true);
  world.writer->SetCloseSession(true);
  world.writer->AddAudioTrack(world.track("a", 60), 1);
  world.recorder->failClosing = "session";
  CHECK(world.linesOfWrite() == Lines{"OnWriteStarting", "OnTrackWriteStart 1 60", "OnTrackClosing 1",
                                      "OnSessionClosing", deviceFailure(0x057200)});
  CHECK(world.recorder->disc()->state.status == DiscEmpty);
}

TEST_CASE("A cache that cannot be made is an error of the read buffer with nothing written") {
  FakeWorld world;
  fakes::WriterTranscript heard;
  DiscWriters writers({world.recorder}, std::make_shared<audio::AudioFiles>(), world.queue, world.patience,
                      {150, HostPath("/dev/null/no")});
  const auto writer = writers.create(heard);
  REQUIRE(writer->SelectDrive(0));
  writer->SetCacheAudioTracks(true);
  writer->AddAudioTrack(world.track("a", 5), 1);
  writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return heard.ended(); }));
  CHECK(heard.lines.back() == "OnWriteError 0 0");
  CHECK(writers.failureDetail().lastFailure().find("/dev/null/no") != std::string::npos);
  CHECK(world.recorder->disc()->state.status == DiscEmpty);
}

TEST_CASE("Each progress of a write comes with how full both buffers are") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 300), 1);
  REQUIRE(world.write());
  REQUIRE(world.heard.progress.size() >= 5);
  CHECK(world.heard.bufferLevels.size() == world.heard.progress.size());
  for (const auto& progress : world.heard.progress) CHECK(progress.bufferPercent == 97);
  for (const std::int16_t level : world.heard.bufferLevels) CHECK((level >= 0 && level <= 100));
}

TEST_CASE("The words of a failure are there when its event comes") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  std::string told;
  world.heard.onLine = [&](const std::string& line) {
    if (line.starts_with("OnWriteError"))
      told = world.writer->LastDeviceErrorText() + world.writers.failureDetail().lastFailure();
  };
  world.recorder->failAtBlock = 2;
  world.write();
  CHECK(told == "write error at block 2 (3/0C/00)");
  std::filesystem::remove(world.folder / "a.wav");
  world.write();
  CHECK(told.ends_with("a.wav: No such file or directory"));
  CHECK_FALSE(world.writer->CreateIsoImage(world.folder.host("none/x.iso")));
  CHECK(told.find("none/x.iso") != std::string::npos);
}

TEST_CASE("A recorder that wants its cache whole gets all tracks cached before the first is written") {
  FakeWorld world;
  world.recorder->cachesAll = true;
  world.writer->SetCacheAudioTracks(true);
  world.writer->AddAudioTrack(world.track("a", 300), 1);
  world.writer->AddAudioTrack(world.track("b", 200), 2);
  CHECK(world.linesOfWrite() == Lines{"OnWriteStarting", "OnTrackCacheStart 1 300", "OnTrackCacheStart 2 200",
                                      "OnTrackWriteStart 1 300", "OnTrackClosing 1", "OnTrackWriteStart 2 200",
                                      "OnTrackClosing 2", "OnOperationComplete"});
  const auto tracks = world.recorder->disc()->tracks;
  REQUIRE(tracks.size() == 2);
  CHECK((tracks[0] == FakeWorld::samples("a", 300)));
  CHECK((tracks[1] == FakeWorld::samples("b", 200)));
  CHECK(world.recorder->cached == std::vector<std::int64_t>{128, 256, 300, 428, 500});
}

TEST_CASE(
    "Any other gets each track cached before it is written, and hears of all blocks that went through the cache") {
  FakeWorld world;
  world.writer->SetCacheAudioTracks(true);
  world.writer->AddAudioTrack(world.track("a", 300), 1);
  world.writer->AddAudioTrack(world.track("b", 200), 2);
  CHECK(world.linesOfWrite() == Lines{"OnWriteStarting", "OnTrackCacheStart 1 300", "OnTrackWriteStart 1 300",
                                      "OnTrackClosing 1", "OnTrackCacheStart 2 200", "OnTrackWriteStart 2 200",
                                      "OnTrackClosing 2", "OnOperationComplete"});
  CHECK(world.recorder->cached == std::vector<std::int64_t>{128, 256, 300, 428, 500});
}

TEST_CASE("An empty queue is an error of a file, and says that there is nothing to write") {
  FakeWorld world;
  for (const std::int32_t kind : {AudioBlocks, DataBlocks}) {
    world.writer->SetDiscMode(kind);
    CHECK(world.linesOfWrite() == Lines{"OnWriteError 2 0"});
    CHECK(world.writers.failureDetail().lastFailure() == "there is nothing to write");
  }
  CHECK(world.recorder->orders.empty());
}

TEST_CASE("Caching is told at its first blocks, at each quarter and at its end") {
  FakeWorld world;
  world.writer->SetCacheAudioTracks(true);
  world.writer->AddAudioTrack(world.track("a", 1000), 1);
  REQUIRE(world.write());
  const auto& told = world.heard.cachePositions;
  CHECK(std::ranges::is_sorted(told));
  // A slow machine tells of more, every 50 milliseconds.
  for (const std::int32_t due : {128, 256, 512, 768, 1000}) CHECK(std::ranges::count(told, due) == 1);
}

}  // namespace trackloom::engines::writer
