#include "contract/WriterContract.h"
#include "engines/libburn/LibburnWorld.h"

namespace trackloom::engines::libburn {

TEST_CASE("The engine with a recorder of the machine keeps the contract of writer engines") {
  contract::keepsTheContract<LibburnWorld>();
}

}  // namespace trackloom::engines::libburn
