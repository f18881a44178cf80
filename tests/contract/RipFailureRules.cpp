#include <chrono>
#include <filesystem>

#include "contract/RipperContract.h"

namespace trackloom::contract {

namespace {

using Lines = std::vector<std::string>;

bool isThere(const HostPath& path) {
  return std::filesystem::exists(path.text);
}

void unreadableSectorCostsItsTrackAlone(RipperWorld& world) {
  insertTwoTracks(world);
  world.spoil(17);
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 1));
  REQUIRE(world.ripper().QueueTrack(2, world.out("two.wav"), 2));
  const Lines lines = linesOfRip(world);
  CHECK(world.heard().has("RipStatus 5 17"));
  CHECK(world.heard().has("RipStatus 8 0"));
  CHECK(Lines(lines.end() - 5, lines.end()) ==
        Lines{"TrackFinished", "TrackStarted 40-60 2", "RipStatus 7 60", "TrackFinished", "RipFinished"});
  CHECK_FALSE(isThere(world.out("one.wav")));
  CHECK(isThere(world.out("two.wav")));
}

void pathThatCannotBeMade(RipperWorld& world) {
  insertTwoTracks(world);
  const HostPath lost = world.out("AC/DC.wav");
  REQUIRE(world.ripper().QueueTrack(1, lost, 1));
  CHECK(linesOfRip(world) ==
        Lines{"RipStarted", "TrackStarted 0-40 1", "RipStatus 10 0", "TrackFinished", "RipFinished"});
  CHECK(world.heard().paths.back().text.empty());
  CHECK_FALSE(isThere(lost));
}

void hangingDriveIsCancelled(RipperWorld& world) {
  insertTwoTracks(world);
  world.makeHang(17);
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 1));
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().positions.size() >= 3; }));
  world.ripper().CancelRip();
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  const Lines& lines = world.heard().lines;
  CHECK(Lines(lines.end() - 2, lines.end()) == Lines{"RipStatus 14 0", "RipFinished"});
  CHECK_FALSE(isThere(world.out("one.wav")));
}

}  // namespace

std::vector<RipRule> ripFailureRules() {
  return {
      {"A sector that cannot be read costs its track alone",
       unreadableSectorCostsItsTrackAlone,
       {RipAbility::BadSectors}},
      {"A path into a folder that is not there is told, and no file is made", pathThatCannotBeMade, {}},
      {"A drive that hangs can be cancelled", hangingDriveIsCancelled, {RipAbility::Hanging}},
  };
}

}  // namespace trackloom::contract
