#include "contract/RipperContract.h"

namespace trackloom::contract {

std::vector<RipRule> ripperRules() {
  std::vector<RipRule> all;
  for (const std::vector<RipRule>& part : {ripDriveRules(), ripEventRules(), ripFailureRules()})
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

void insertTwoTracks(RipperWorld& world) {
  world.insert({{true, 0, 40}, {true, 40, 20}});
  REQUIRE(world.ripper().SelectRipDrive(0));
  REQUIRE(world.ripper().ReadTOC());
}

std::vector<std::string> linesOfRip(RipperWorld& world) {
  world.heard().lines.clear();
  REQUIRE(world.ripper().StartRip());
  CHECK(world.heard().lines.empty());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  return world.heard().lines;
}

}  // namespace trackloom::contract
