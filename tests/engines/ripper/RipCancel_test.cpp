#include <atomic>
#include <thread>

#include "engines/ripper/OneTrackDrive.h"

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
  const auto drive = std::make_shared<SluggishDrive>();
  OneTrackRip rip(drive);
  rip.heard.onLine = [&](const std::string& line) {
    if (line == "RipStatus 7 0" && drive->underWay) rip.ripper->CancelRip();
  };
  REQUIRE(rip.runToEnd());
  CHECK(rip.heard.lines ==
        std::vector<std::string>{"RipStarted", "TrackStarted 0-40 1", "RipStatus 14 0", "RipFinished"});
}

}  // namespace trackloom::engines::ripper
