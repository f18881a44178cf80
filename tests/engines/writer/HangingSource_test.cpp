#include <atomic>
#include <catch2/catch.hpp>
#include <cstring>
#include <thread>

#include "engines/writer/DiscWriter.h"
#include "engines/writer/FakeWorld.h"
#include "engines/writer/ReadAhead.h"
#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

namespace {

/// A source of sound that answers until a block, and then not before it is let go.
struct Network {
  std::atomic<bool> hangsAtOpening = false;
  std::atomic<std::int32_t> hangsAt = 1 << 30;
  std::atomic<bool> answers = false;
  std::atomic<bool> hanging = false;
  std::atomic<int> readers = 0;

  void hang() {
    hanging = true;
    while (!answers) std::this_thread::yield();
    hanging = false;
  }
};

constexpr std::int32_t lengthOfTrack = 3000;

/// Sound from there, read by whoever decodes it.
class NetworkStream final : public audio::AudioStream {
 public:
  explicit NetworkStream(std::shared_ptr<Network> network) : network_(std::move(network)) { ++network_->readers; }
  ~NetworkStream() override { --network_->readers; }

  std::int32_t blocks() const override { return lengthOfTrack; }
  std::size_t read(std::span<std::byte> sectors) override {
    block_ += static_cast<std::int32_t>(sectors.size() / audioSectorBytes);
    if (block_ > network_->hangsAt) network_->hang();
    std::memset(sectors.data(), 'x', sectors.size());
    return sectors.size();
  }

 private:
  std::shared_ptr<Network> network_;
  std::int32_t block_ = 0;
};

/// The same without a decoder between.
class NetworkSource final : public PieceSource {
 public:
  NetworkSource(const std::shared_ptr<Network>& network, std::shared_ptr<SourcesInUse> inUse, const HostPath& file)
      : use_(std::move(inUse), file), stream_(network) {}

  void read(std::span<std::byte> sectors) override { stream_.read(sectors); }
  std::int16_t bufferPercent() override { return 100; }

 private:
  SourcesInUse::Use use_;
  NetworkStream stream_;
};

/// The engine over a virtual recorder with one track from that network; other files lie nearer.
class HangingWorld {
 public:
  HangingWorld() {
    virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
    const auto open = [this](const std::vector<std::shared_ptr<Source>>& tracks) {
      const HostPath path = tracks.at(0)->path();
      return openerOf(path, path == file ? network : std::make_shared<Network>());
    };
    const auto parts = std::make_shared<const WriterParts>(
        WriterParts{PlacedRecorders(virtualrecorder::findVirtualRecorders(HostPath(folder.path()))),
                    std::make_shared<audio::AudioFiles>(), open, queue, 150, folder.host("scratch"), false, patience,
                    std::make_shared<Aside>([this](const Aside::Wait& wait) { patience.until(wait); }), detail});
    writer = std::make_unique<DiscWriter>(parts, heard);
    REQUIRE(writer->SelectDrive(0));
    REQUIRE(writer->AddAudioTrack(file, 1));
  }
  ~HangingWorld() {
    network->answers = true;
    while (network->readers != 0 || network->hanging) std::this_thread::yield();
  }

  void startAndHang() {
    writer->StartWrite();
    while (!network->hanging) std::this_thread::yield();
  }
  bool runToEnd() {
    return queue.runUntil([&] { return heard.ended(); });
  }
  std::string discIni() const { return contentOf(folder.path() + "/Virtual Recorder/shelf/Disc 0001/disc.ini"); }

  TempFolder folder;
  HostPath file = folder.file("a.wav", wav(std::string(2352, 'x')));
  /// Whether the sound is decoded ahead, or read as it is wanted.
  bool decodes = false;
  std::shared_ptr<Network> network = std::make_shared<Network>();
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  std::shared_ptr<LastFailure> detail = std::make_shared<LastFailure>();
  std::unique_ptr<DiscWriter> writer;

 private:
  SourceOpener openerOf(const HostPath& path, const std::shared_ptr<Network>& from) const {
    return [=, decodes = decodes](const std::shared_ptr<SourcesInUse>& inUse, const std::stop_token& stop) {
      const SourcesInUse::Use use(inUse, path);
      if (from->hangsAtOpening) from->hang();
      OpenedSource opened{nullptr, {{lengthOfTrack}, {}}};
      if (decodes)
        opened.sectors = std::make_unique<ReadAhead>(
            std::vector<ReadAhead::Track>{{path, lengthOfTrack}},
            [from](std::size_t) { return std::make_unique<NetworkStream>(from); }, inUse, stop);
      else
        opened.sectors = std::make_unique<NetworkSource>(from, inUse, path);
      return opened;
    };
  }
};

/// The reader or a decoder hangs in a file whose recording was cancelled.
void cancelAHangingWrite(HangingWorld& world) {
  world.decodes = GENERATE(false, true);
  world.network->hangsAt = 1000;
  world.startAndHang();
  world.writer->AbortWrite();
  REQUIRE(world.writer->EjectDisc());
  world.heard.lines.clear();
}

}  // namespace

TEST_CASE("An abort frees the drive of a source that hangs, and the disc changes no more when it answers") {
  HangingWorld world;
  world.network->hangsAt = 1000;
  world.startAndHang();
  REQUIRE(world.queue.runUntil([&] { return world.heard.has("OnTrackWriteStart 1 3000"); }));
  world.writer->AbortWrite();
  CHECK(world.network->hanging);
  CHECK(world.writer->DiscStatus() == DiscClosed);
  CHECK(world.writer->FreeBlocks(AudioBlocks) == 0);
  CHECK(world.writer->EjectDisc());
  CHECK(world.writer->DiscStatus() == DiscEmpty);
  const std::string ini = world.discIni();
  CHECK(ini.find("status = writing") != std::string::npos);
  const auto lines = world.heard.lines;
  world.network->answers = true;
  while (world.network->readers != 0) std::this_thread::yield();
  world.queue.runPosted();
  CHECK(world.heard.lines == lines);
  CHECK(world.discIni() == ini);
}

TEST_CASE("An abort while the sources are looked at leaves the disc as it was") {
  HangingWorld world;
  world.network->hangsAtOpening = true;
  world.startAndHang();
  world.writer->AbortWrite();
  CHECK(world.network->hanging);
  CHECK(world.writer->DiscStatus() == DiscEmpty);
  CHECK(world.writer->EjectDisc());
}

TEST_CASE("An abort while a hanging source is cached leaves the disc as it was") {
  HangingWorld world;
  world.network->hangsAt = 1000;
  world.writer->SetCacheAudioTracks(true);
  world.startAndHang();
  world.writer->AbortWrite();
  CHECK(world.writer->DiscStatus() == DiscEmpty);
}

TEST_CASE(
    "The next write says what it waits for while the source of a cancelled one still hangs, and goes on after it") {
  HangingWorld world;
  cancelAHangingWrite(world);
  for (int round = 0; round < 2; ++round) {
    world.writer->StartWrite();
    REQUIRE(world.runToEnd());
    CHECK(world.heard.lines == Lines{"OnWriteError 2 0"});
    CHECK(world.detail->lastFailure() ==
          world.file.text + ": the recording that was cancelled still waits for an answer");
    CHECK(world.writer->DiscStatus() == DiscEmpty);
    world.heard.lines.clear();
  }
  world.network->answers = true;
  world.writer->StartWrite();
  REQUIRE(world.runToEnd());
  CHECK(world.heard.lines.back() == "OnOperationComplete");
}

TEST_CASE("An image that is the hanging source of a cancelled write waits for it as well") {
  HangingWorld world;
  cancelAHangingWrite(world);
  REQUIRE(world.writer->WriteIsoImage(world.file));
  REQUIRE(world.runToEnd());
  CHECK(world.heard.lines == Lines{"OnWriteError 2 0"});
  CHECK(world.detail->lastFailure() ==
        world.file.text + ": the recording that was cancelled still waits for an answer");
}

TEST_CASE("A write of other files goes on beside a source that hangs") {
  HangingWorld world;
  cancelAHangingWrite(world);
  world.writer->ClearAudioQueue();
  REQUIRE(world.writer->AddAudioTrack(world.folder.file("b.wav", wav(std::string(2352, 'x'))), 1));
  world.writer->StartWrite();
  REQUIRE(world.runToEnd());
  CHECK(world.heard.lines.back() == "OnOperationComplete");
  CHECK(world.network->hanging);
}

TEST_CASE("A cancelled write that still waits for an earlier one ends at once, and nothing is told") {
  HangingWorld world;
  cancelAHangingWrite(world);
  world.writer->StartWrite();
  world.writer->AbortWrite();
  world.queue.runPosted();
  CHECK(world.heard.lines.empty());
  CHECK(world.writer->DiscStatus() == DiscEmpty);
}

TEST_CASE("An engine that is destroyed leaves a hanging source alone") {
  HangingWorld world;
  world.network->hangsAt = 1000;
  world.startAndHang();
  world.writer.reset();
  CHECK(world.network->hanging);
}

}  // namespace trackloom::engines::writer
