#include "engines/ripper/OneTrackDrive.h"

namespace trackloom::engines::ripper {

namespace {

constexpr int retries = 100000;

/// Silence, for whose first sector the drive needs a hundred thousand tries.
class TiringReading final : public DiscReading {
 public:
  std::vector<std::byte> read(std::int32_t sector, std::int32_t count, const TroubleWatch& watch,
                              const std::stop_token&) override {
    for (int turn = 0; sector == 0 && turn < retries; ++turn) watch(ReadTrouble::Retrying, sector);
    return std::vector<std::byte>(static_cast<std::size_t>(count) * audioSectorBytes);
  }
};

class TiringDrive final : public OneTrackDrive {
 public:
  std::unique_ptr<DiscReading> begin(std::int16_t) override { return std::make_unique<TiringReading>(); }
};

}  // namespace

TEST_CASE("A hundred thousand retries are all told, and leave the stack flat though each handler lets events in") {
  OneTrackRip rip(std::make_shared<TiringDrive>());
  int told = 0;
  rip.heard.onLine = [&](const std::string& line) {
    if (line == "RipStatus 5 0") ++told;
    rip.queue.runPosted();
  };
  REQUIRE(rip.runToEnd());
  CHECK(told == retries);
  CHECK(rip.heard.deepest == 1);
}

}  // namespace trackloom::engines::ripper
