#include "engines/ground/EngineSettings.h"

#include <catch2/catch.hpp>

#include "fakes/TempFolder.h"

namespace trackloom::engines {

using fakes::TempFolder;

TEST_CASE("Settings are only read, and their explanation gives the defaults again") {
  TempFolder folder;
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 150);
  CHECK_FALSE(folder.has("Engines.ini"));
  explainEngineSettings(HostPath(folder.path()));
  const std::string text = folder.read("Engines.ini");
  CHECK(text.find("[Writing]\n") < text.find("\npause = 150\n"));
  CHECK(text.find("[Writing]\n") < text.find("\nverify = no\n"));
  CHECK(text.find("\nverify = no\n") < text.find("[Recorders]\n"));
  CHECK_FALSE(loadEngineSettings(HostPath(folder.path())).verify);
  CHECK(text.find("[Recorders]\n") < text.find("\nvirtual = yes\n"));
  CHECK(text.find("\nvirtual = yes\n") != std::string::npos);
  CHECK(loadEngineSettings(HostPath(folder.path())).virtualRecorders);
}

TEST_CASE("The explanation leaves a file that is there already as it is") {
  TempFolder folder;
  folder.write("Engines.ini", "; mine");
  explainEngineSettings(HostPath(folder.path()));
  CHECK(folder.read("Engines.ini") == "; mine");
}

TEST_CASE("What the user set is taken, and what makes no sense is not") {
  TempFolder folder;
  folder.write("Engines.ini", "[writing]\nPause=0\nverify = on\n[recorders]\nvirtual = no\n");
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 0);
  CHECK(loadEngineSettings(HostPath(folder.path())).verify);
  CHECK_FALSE(loadEngineSettings(HostPath(folder.path())).virtualRecorders);
  folder.write("Engines.ini", "[Writing]\npause = -3\nverify = often\n[Recorders]\nvirtual = perhaps\n\xFF\xFE");
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 150);
  CHECK_FALSE(loadEngineSettings(HostPath(folder.path())).verify);
  CHECK(loadEngineSettings(HostPath(folder.path())).virtualRecorders);
}

TEST_CASE("A pause may last for a minute and not for a block longer") {
  TempFolder folder;
  folder.write("Engines.ini", "[Writing]\npause = 4500\n");
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 4500);
  folder.write("Engines.ini", "[Writing]\npause = 4501\n");
  CHECK(loadEngineSettings(HostPath(folder.path())).pause == 150);
}

TEST_CASE("A program folder that cannot be written gives the defaults in silence") {
  explainEngineSettings(HostPath("/no/such/folder"));
  CHECK(loadEngineSettings(HostPath("/no/such/folder")).pause == 150);
}

}  // namespace trackloom::engines
