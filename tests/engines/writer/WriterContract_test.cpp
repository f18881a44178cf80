#include "contract/WriterContract.h"

#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

namespace {

void holds(void (*rule)(contract::WriterWorld&)) {
  VirtualWorld world;
  rule(world);
}

}  // namespace

TEST_CASE("E086: Two StartWrite calls in a row without touching the queue write the same tracks twice") {
  holds(contract::secondWriteRepeatsTheFirst);
}

TEST_CASE("E087: FreeBlocks on a closed disc gives 0 or less in both kinds") {
  holds(contract::closedDiscHasNoRoom);
}

TEST_CASE("E088: the scratch instance measures without any drive being selected") {
  holds(contract::scratchInstanceMeasures);
}

TEST_CASE("E089: BlocksToTime of a total under ten minutes begins with 0") {
  holds(contract::shortTimesBeginWithNought);
}

TEST_CASE("The engine with a virtual recorder keeps the contract of writer engines") {
  contract::keepsTheContract<VirtualWorld>();
}

}  // namespace trackloom::engines::writer
