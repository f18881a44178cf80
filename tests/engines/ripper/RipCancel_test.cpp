#include <atomic>
#include <thread>

#include "engines/ripper/OneTrackDrive.h"
#include "engines/ripper/RipWorld.h"

namespace trackloom::engines::ripper {

namespace {

/// Reads nothing until it is stopped, and keeps whoever stops it for so long that the rip's other threads come to
/// their end meanwhile.
class SluggishReading final : public DiscReading {
 public:
  explicit SluggishReading(std::atomic<bool>& underWay) : underWay_(underWay) {}

  std::vector<std::byte> read(std::int32_t, std::int32_t, const TroubleWatch&, const std::stop_token& stop) override {
    const std::stop_callback sluggish(stop, [] { std::this_thread::sleep_for(std::chrono::milliseconds(600)); });
    underWay_ = true;
    while (!stop.stop_requested()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    throw Stopped();
  }

 private:
  std::atomic<bool>& underWay_;
};

class SluggishDrive final : public OneTrackDrive {
 public:
  std::unique_ptr<DiscReading> begin(std::int16_t) override { return std::make_unique<SluggishReading>(underWay); }

  std::atomic<bool> underWay = false;
};

}  // namespace

TEST_CASE("A cancel is told before the end, though the rip's threads end while it is still on its way to the drive") {
  const fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::RipperTranscript heard;
  const auto drive = std::make_shared<SluggishDrive>();
  DiscRippers rippers(ReadingDrives{drive}, queue, patience, {HostPath(folder.path())});
  const auto ripper = rippers.create();
  ripper->listen(&heard);
  REQUIRE(ripper->SelectRipDrive(0));
  REQUIRE(ripper->ReadTOC());
  REQUIRE(ripper->QueueTrack(1, folder.host("a.wav"), 1));
  REQUIRE(ripper->StartRip());
  heard.onLine = [&](const std::string& line) {
    if (line == "RipStatus 7 0" && drive->underWay) ripper->CancelRip();
  };
  REQUIRE(queue.runUntil([&] { return heard.ended(); }));
  CHECK(heard.lines == std::vector<std::string>{"RipStarted", "TrackStarted 0-40 1", "RipStatus 14 0", "RipFinished"});
}

}  // namespace trackloom::engines::ripper
