#include "model/CommandStates.h"

#include <catch2/catch.hpp>

#include "fakes/Machine.h"

namespace trackloom {

using fakes::Machine;

TEST_CASE("Write ISO Image can be out of date in its own menu until the Tools menu opens") {
  Machine machine;
  machine.engines.stage.disc.reset();
  machine.startQuietly();
  CHECK_FALSE(machine.enabled("mnuFileWrite"));
  machine.engines.stage.disc = fakes::FakeDisc{};
  for (const char* menu : {"mnuFile", "mnuActions", "mnuHelp"}) machine.window().DockStudio1.openMenu(menu);
  CHECK_FALSE(machine.enabled("mnuFileWrite"));
  machine.window().DockStudio1.openMenu("mnuTools");
  CHECK(machine.enabled("mnuFileWrite"));
}

}  // namespace trackloom
