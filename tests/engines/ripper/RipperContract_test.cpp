#include "contract/RipperContract.h"

#include "engines/ripper/RipWorld.h"

namespace trackloom::engines::ripper {

TEST_CASE("The rip engine keeps the contract over the virtual recorder") {
  contract::keepsTheRipContract<RipWorld>();
}

}  // namespace trackloom::engines::ripper
