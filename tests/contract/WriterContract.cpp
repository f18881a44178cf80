#include "contract/WriterContract.h"

namespace trackloom::contract {

std::vector<Rule> writerRules() {
  std::vector<Rule> all;
  for (const std::vector<Rule>& part :
       {driveRules(), queueRules(), writeRules(), operationRules(), stateRules(), faultRules()})
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

std::vector<std::string> linesOf(WriterWorld& world, const std::function<void()>& begin) {
  world.heard().lines.clear();
  begin();
  CHECK(world.heard().lines.empty());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  return world.heard().lines;
}

std::vector<std::string> linesOfWrite(WriterWorld& world) {
  return linesOf(world, [&] { world.real().StartWrite(); });
}

void queueTwoTracks(WriterWorld& world) {
  world.real().SetDiscMode(AudioBlocks);
  world.real().ClearAudioQueue();
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 40), 1));
  REQUIRE(world.real().AddAudioTrack(world.audioFile("two", 20), 2));
}

}  // namespace trackloom::contract
