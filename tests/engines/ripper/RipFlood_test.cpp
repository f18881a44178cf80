#include "engines/ripper/OneTrackDrive.h"
#include "engines/ripper/RipWorld.h"

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
  const fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::RipperTranscript heard;
  DiscRippers rippers(ReadingDrives{std::make_shared<TiringDrive>()}, queue, patience, {HostPath(folder.path())});
  const auto ripper = rippers.create();
  ripper->listen(&heard);
  REQUIRE(ripper->SelectRipDrive(0));
  REQUIRE(ripper->ReadTOC());
  REQUIRE(ripper->QueueTrack(1, folder.host("a.wav"), 1));
  REQUIRE(ripper->StartRip());
  int told = 0;
  heard.onLine = [&](const std::string& line) {
    if (line == "RipStatus 5 0") ++told;
    queue.runPosted();
  };
  REQUIRE(queue.runUntil([&] { return heard.ended(); }));
  CHECK(told == retries);
  CHECK(heard.deepest == 1);
}

}  // namespace trackloom::engines::ripper
