#pragma once

#include <catch2/catch.hpp>
#include <functional>
#include <string>
#include <vector>

#include "contract/RipperWorld.h"

namespace trackloom::contract {

/// A rule that every rip engine keeps, real or fake, over whatever drive. It is shown on a fresh world, which has the
/// abilities that the rule needs.
struct RipRule {
  const char* sentence;
  void (*holds)(RipperWorld& world);
  std::vector<RipAbility> needs;
};

/// The rules of drives and contents, of events, and of what fails.
std::vector<RipRule> ripDriveRules();
std::vector<RipRule> ripEventRules();
std::vector<RipRule> ripFailureRules();

/// All of them.
std::vector<RipRule> ripperRules();

/// Shows every rule on a world of its own, each in a section; a rule whose abilities the world lacks is passed over.
template <class World>
void keepsTheRipContract() {
  for (const RipRule& rule : ripperRules()) {
    DYNAMIC_SECTION(rule.sentence) {
      World world;
      bool able = true;
      for (const RipAbility need : rule.needs) able = able && world.can(need);
      if (able) rule.holds(world);
    }
  }
}

/// A disc of two audio tracks, sectors 0 to 39 and 40 to 59, in the drive, and its contents read.
void insertTwoTracks(RipperWorld& world);
/// Starts the rip, which tells nothing before the call returns, and lets it run to its end; what it told.
std::vector<std::string> linesOfRip(RipperWorld& world);

}  // namespace trackloom::contract
