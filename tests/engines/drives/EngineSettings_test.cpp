#include "engines/drives/EngineSettings.h"

#include <catch2/catch.hpp>

#include "fakes/TempFolder.h"

namespace trackloom {

using fakes::TempFolder;

TEST_CASE("The first start of the engines leaves a settings file that gives the defaults again") {
  TempFolder folder;
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 150);
  CHECK(folder.read("Engines.ini").find("pause = 150") != std::string::npos);
  const std::string written = folder.read("Engines.ini");
  CHECK(loadEngineSettings(HostPath(folder.path())).virtualRecorders);
  CHECK(folder.read("Engines.ini") == written);
}

TEST_CASE("What the user set is taken, and what makes no sense is not") {
  TempFolder folder;
  folder.write("Engines.ini", "[writing]\nPause=0\n[recorders]\nvirtual = no\n");
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 0);
  CHECK_FALSE(loadEngineSettings(HostPath(folder.path())).virtualRecorders);
  folder.write("Engines.ini", "[Writing]\npause = -3\n[Recorders]\nvirtual = perhaps\n\xFF\xFE");
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 150);
  CHECK(loadEngineSettings(HostPath(folder.path())).virtualRecorders);
}

TEST_CASE("A program folder that cannot be written gives the defaults in silence") {
  CHECK(loadEngineSettings(HostPath("/no/such/folder")).pause == 150);
}

}  // namespace trackloom
