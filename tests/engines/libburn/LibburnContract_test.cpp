#include "contract/WriterContract.h"
#include "engines/libburn/EmulatedDrive.h"
#include "engines/writer/EngineWorld.h"

namespace trackloom::engines::libburn {

namespace {

/// The real engine with a recorder of this machine. Drives fail as they like, and not in the phases of the contract.
class LibburnWorld : public writer::EngineWorld<EmulatedDrive> {
 public:
  bool can(contract::Ability ability) const override { return ability != contract::Ability::Faults; }
};

}  // namespace

TEST_CASE("The engine with a recorder of the machine keeps the contract of writer engines") {
  contract::keepsTheContract<LibburnWorld>();
}

}  // namespace trackloom::engines::libburn
