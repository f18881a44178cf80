#pragma once

#include <catch2/catch.hpp>
#include <functional>
#include <string>
#include <vector>

#include "contract/WriterWorld.h"

namespace trackloom::contract {

/// A rule that every writer engine keeps, real or fake. It is shown on a fresh world, which has the abilities that the
/// rule needs.
struct Rule {
  const char* sentence;
  void (*holds)(WriterWorld& world);
  std::vector<Ability> needs;
};

/// The rules of drives, discs and conversions, of the queues, of writes, of the other operations, of what they make of
/// a disc, and of what fails on request.
std::vector<Rule> driveRules();
std::vector<Rule> queueRules();
std::vector<Rule> writeRules();
std::vector<Rule> operationRules();
std::vector<Rule> stateRules();
std::vector<Rule> faultRules();

/// All of them.
std::vector<Rule> writerRules();

/// Shows every rule on a world of its own, each in a section; a rule whose abilities the world lacks is passed over.
template <class World>
void keepsTheContract() {
  for (const Rule& rule : writerRules()) {
    DYNAMIC_SECTION(rule.sentence) {
      World world;
      bool able = true;
      for (const Ability need : rule.needs) able = able && world.can(need);
      if (able) rule.holds(world);
    }
  }
}

/// Begins the operation, which tells nothing before the call returns, and lets it run to its end; what it told.
std::vector<std::string> linesOf(WriterWorld& world, const std::function<void()>& begin);
/// The same for StartWrite.
std::vector<std::string> linesOfWrite(WriterWorld& world);

/// Makes an audio queue of tracks of 40 and 20 blocks.
void queueTwoTracks(WriterWorld& world);

// The rules that the book of odd cases names.
void secondWriteRepeatsTheFirst(WriterWorld& world);
void closedDiscHasNoRoom(WriterWorld& world);
void scratchInstanceMeasures(WriterWorld& world);
void shortTimesBeginWithNought(WriterWorld& world);

}  // namespace trackloom::contract
