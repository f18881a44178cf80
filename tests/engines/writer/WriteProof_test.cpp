#include <catch2/catch.hpp>

#include "engines/virtual/VirtualRecorder.h"
#include "engines/writer/FakeWorld.h"
#include "engines/writer/VirtualWorld.h"
#include "fakes/OwnDisk.h"

namespace trackloom::engines::writer {

namespace {

/// A virtual recorder that reads one block other than it lies on the disc.
class WornRecorder final : public virtualrecorder::VirtualRecorder {
 public:
  using VirtualRecorder::VirtualRecorder;

  std::optional<std::int32_t> wornBlock;
  /// Blocks that the last track is shorter by than what was written.
  std::int32_t lost = 0;
  std::function<void(std::int32_t block)> onRead;

  std::vector<std::byte> read(std::int32_t block, std::int32_t count) override {
    if (onRead) onRead(block);
    blocksRead += count;
    auto sectors = VirtualRecorder::read(block, count);
    const bool worn = wornBlock && *wornBlock >= block && *wornBlock < block + count;
    if (worn)
      sectors[sectors.size() / static_cast<std::size_t>(count) * static_cast<std::size_t>(*wornBlock - block)] ^=
          std::byte{1};
    return sectors;
  }

  std::shared_ptr<const DriveSnapshot> look() override {
    DriveSnapshot seen = *VirtualRecorder::look();
    if (seen.disc && !seen.disc->tracks.empty()) seen.disc->tracks.back().length -= lost;
    return std::make_shared<const DriveSnapshot>(seen);
  }

  std::int32_t blocksRead = 0;
};

/// An engine that reads back what it wrote.
class ProvenWorld {
 public:
  explicit ProvenWorld(bool verified = true) : verified_(verified) {
    writer->SelectDrive(0);
    writer->SetCloseSession(true);
  }

  const Lines& write() {
    heard.lines.clear();
    writer->StartWrite();
    REQUIRE(queue.runUntil([this] { return heard.ended(); }));
    return heard.lines;
  }
  void queueTracks() {
    REQUIRE(writer->AddAudioTrack(folder.file("one.wav", wav(noise(600 * 2352, 1))), 1));
    REQUIRE(writer->AddAudioTrack(folder.file("two.wav", wav(noise(21 * 2352, 2))), 2));
  }
  void queueFile() {
    writer->SetDiscMode(DataBlocks);
    REQUIRE(writer->AddDataFile(DiscPath("\\a"), folder.file("a", noise(1000000, 3))));
  }

 private:
  bool verified_;

  std::shared_ptr<WornRecorder> newRecorder() const {
    virtualrecorder::createVirtualRecorder(folder.host("R"));
    return std::make_shared<WornRecorder>(folder.host("R"));
  }

 public:
  TempFolder folder;
  std::shared_ptr<WornRecorder> recorder = newRecorder();
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  DiscWriters writers{
      {recorder}, std::make_shared<audio::AudioFiles>(), queue, patience, {150, folder.host("scratch"), verified_}};
  std::unique_ptr<CDWriterXP> writer = writers.create(heard);
};

}  // namespace

TEST_CASE("A recorder that takes or records less than it was given, and says nothing, has not written the disc") {
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 40), 1);
  world.writer->AddAudioTrack(world.track("b", 20), 2);
  const bool test = GENERATE(false, true);
  world.writer->SetTestMode(test);
  SECTION("one that leaves the last block of each track out") {
    world.recorder->leavesOut = 1;
    CHECK(world.linesOfWrite().back() == "OnWriteError 3 " + std::to_string(0x030C00));
    CHECK(world.writer->LastDeviceErrorText().find("of 60 blocks the recorder took 58 and recorded 58") == 0);
  }
  SECTION("one that takes all and records less") {
    world.recorder->keepsBack = 1;
    CHECK(world.linesOfWrite().back() == "OnWriteError 3 " + std::to_string(0x030C00));
    CHECK(world.writer->LastDeviceErrorText().find("of 60 blocks the recorder took 60 and recorded ") == 0);
  }
  SECTION("one that takes and records all") {
    CHECK(world.linesOfWrite().back() == "OnOperationComplete");
  }
}

TEST_CASE("Every sector of a real write is read back where that is set, and of no other") {
  const bool verified = GENERATE(true, false);
  ProvenWorld world(verified);
  world.queueTracks();
  world.writer->SetTestMode(true);
  CHECK(world.write().back() == "OnOperationComplete");
  CHECK(world.recorder->blocksRead == 0);
  world.writer->SetTestMode(false);
  CHECK(world.write().back() == "OnOperationComplete");
  CHECK(world.recorder->blocksRead == (verified ? 621 : 0));
  CHECK(world.write().back() == "OnOperationComplete");
  CHECK(world.recorder->blocksRead == (verified ? 2 * 621 : 0));
}

TEST_CASE("A block of an audio disc that reads back as another is a device error that names it") {
  ProvenWorld world;
  world.queueTracks();
  const std::int32_t block = GENERATE(0, 255, 256, 599, 750, 770);
  world.recorder->wornBlock = block;
  CHECK(world.write().back() == "OnWriteError 3 " + std::to_string(0x0E1D00));
  CHECK(world.writer->LastDeviceErrorText() ==
        "block " + std::to_string(block) + " of the disc is not what was written (E/1D/00)");
  CHECK(world.writer->DiscStatus() == DiscOpen);
}

TEST_CASE("A track that is shorter on the disc than it was written is a device error") {
  ProvenWorld world;
  world.queueTracks();
  world.recorder->lost = 3;
  CHECK(world.write().back() == "OnWriteError 3 " + std::to_string(0x0E1D00));
  CHECK(world.writer->LastDeviceErrorText().find("3 blocks of the write are missing on the disc") == 0);
}

TEST_CASE("Blocks that are no content of the write are not judged") {
  ProvenWorld world;
  world.queueTracks();
  const std::int32_t block = GENERATE(600, 749, 771);
  world.recorder->wornBlock = block;
  CHECK(world.write().back() == "OnOperationComplete");
}

TEST_CASE("A later session of a data disc is read back where it lies") {
  ProvenWorld world;
  world.queueFile();
  REQUIRE(world.write().back() == "OnOperationComplete");
  const std::int32_t start = world.recorder->look()->disc->nextWritable;
  world.recorder->wornBlock = start + 17;
  CHECK(world.write().back() == "OnWriteError 3 " + std::to_string(0x0E1D00));
  CHECK(world.writer->LastDeviceErrorText().find("block " + std::to_string(start + 17) + " ") == 0);
}

TEST_CASE("A disc that is gone before it was read back was not written for certain") {
  ProvenWorld world;
  world.queueTracks();
  world.recorder->onRead = [&](std::int32_t) { std::filesystem::remove_all(world.folder / "R/tray"); };
  CHECK(world.write().back() == "OnWriteError 3 " + std::to_string(0x031100));
}

TEST_CASE("An abort while the disc is read back ends at once, and the disc stays as it was written") {
  ProvenWorld world;
  world.queueTracks();
  std::atomic<bool> reading = false;
  std::atomic<bool> aborted = false;
  world.recorder->onRead = [&](std::int32_t) {
    reading = true;
    while (!aborted) std::this_thread::yield();
  };
  world.writer->StartWrite();
  while (!reading) world.queue.runPosted();
  world.patience.meanwhile = [&] { aborted = true; };
  world.writer->AbortWrite();
  world.queue.runPosted();
  CHECK_FALSE(world.heard.ended());
  CHECK(world.recorder->blocksRead <= 256);
  CHECK(world.writer->DiscStatus() == DiscOpen);
}

TEST_CASE("A cache that its disk cannot hold is refused before the first block, whichever track it is") {
  VirtualWorld world;
  std::filesystem::create_directory(world.folder.host("scratch").text);
  const fakes::OwnDisk disk(world.folder.host("scratch").text, "size=1m");
  if (disk.missing()) return;
  world.real().SetCacheAudioTracks(true);
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 40), 1));
  REQUIRE(world.real().AddAudioTrack(world.audioFile("two", 600), 2));
  REQUIRE(world.write());
  CHECK(world.heard().lines == Lines{"OnWriteError 0 0"});
  CHECK(world.writers().failureDetail().lastFailure().find("no room for 1411200 bytes") != std::string::npos);
  CHECK(world.real().DiscStatus() == DiscEmpty);
  CHECK(world.real().RemoveAudioTrack(2));
  CHECK(world.wroteWell());
}

TEST_CASE("Disc and cache on one disk of the computer have to fit together") {
  const TempFolder folder;
  const fakes::OwnDisk disk(folder.path(), "size=4m");
  if (disk.missing()) return;
  const TempFolder music;
  virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  DiscWriters writers(virtualrecorder::findVirtualRecorders(HostPath(folder.path())),
                      std::make_shared<audio::AudioFiles>(), queue, patience, {150, folder.host("scratch")});
  const auto writer = writers.create(heard);
  REQUIRE(writer->SelectDrive(0));
  REQUIRE(writer->AddAudioTrack(music.file("one.wav", wav(noise(1000 * 2352, 1))), 1));
  writer->SetCacheAudioTracks(true);
  writer->StartWrite();
  REQUIRE(queue.runUntil([&] { return heard.ended(); }));
  CHECK(heard.lines == Lines{"OnWriteError 3 " + std::to_string(0x030C00)});
  CHECK(writer->DiscStatus() == DiscEmpty);
  heard.lines.clear();
  writer->SetCacheAudioTracks(false);
  writer->StartWrite();
  REQUIRE(queue.runUntil([&] { return heard.ended(); }));
  CHECK(heard.lines.back() == "OnOperationComplete");
}

TEST_CASE("A disc too small is refused before its cache takes any room") {
  VirtualWorld world;
  world.insert(100);
  world.real().SetCacheAudioTracks(true);
  std::filesystem::create_directory(world.folder.host("scratch").text);
  const fakes::OwnDisk disk(world.folder.host("scratch").text, "size=64k");
  if (disk.missing()) return;
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 101), 1));
  REQUIRE(world.write());
  CHECK(world.heard().lines == Lines{"OnWriteError 3 " + std::to_string(0x056300)});
}

}  // namespace trackloom::engines::writer
