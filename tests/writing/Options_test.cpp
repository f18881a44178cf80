#include "writing/frmOptions.h"

#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

using Lines = std::vector<std::string>;

TEST_CASE("Choosing the speed that is chosen already gives it to the engine again") {
  fakes::LayoutMachine machine(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.desk.expectForm<frmOptions>("frmOptions", [&](frmOptions& form) {
    machine.engines.stage.take();
    form.cboWriteSpeed.choose(0);
    CHECK(machine.engines.stage.take() == Lines{"CDR1.SetWriteSpeed(10)"});
    form.cmdCancel.click();
  });
  machine.click("Record");
}

}  // namespace trackloom
