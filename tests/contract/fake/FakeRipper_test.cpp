#include "contract/RipperContract.h"
#include "contract/fake/FakeRipperWorld.h"

namespace trackloom::fakes {

TEST_CASE("The rip engine in memory keeps the contract of rip engines") {
  contract::keepsTheRipContract<FakeRipperWorld>();
}

}  // namespace trackloom::fakes
