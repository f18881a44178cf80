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

TEST_CASE("The disc database's server stands in the explanation, and nobody's address") {
  TempFolder folder;
  explainEngineSettings(HostPath(folder.path()));
  const std::string text = folder.read("Engines.ini");
  CHECK(text.find("[Disc Names]\n") < text.find("\nserver = gnudb.gnudb.org\n"));
  CHECK(text.find("[Disc Names]\n") < text.find("\nport = 80\n"));
  CHECK(text.find("[Disc Names]\n") < text.find("\nemail = \n"));
  CHECK(text.find("\nserver = ") != std::string::npos);
  CHECK(text.find("\nport = ") != std::string::npos);
  CHECK(text.find("\nemail = ") != std::string::npos);
  for (int look = 0; look < 2; ++look) {
    const DiscServerSettings server = loadEngineSettings(HostPath(folder.path())).discServer;
    CHECK(server.host == "gnudb.gnudb.org");
    CHECK(server.port == 80);
    CHECK(server.email.empty());
    folder.write("Engines.ini", "");
  }
}

TEST_CASE("The user's disc database is taken, its port where there can be such a one") {
  TempFolder folder;
  const auto loaded = [&](const std::string& lines) {
    folder.write("Engines.ini", "[disc names]\n" + lines);
    const DiscServerSettings server = loadEngineSettings(HostPath(folder.path())).discServer;
    return server.host + ":" + std::to_string(server.port) + " " + server.email;
  };
  CHECK(loaded("Server=names.example.org\nport = 8080\nemail = joe@example.org\n") ==
        "names.example.org:8080 joe@example.org");
  CHECK(loaded("port = 1\n") == "gnudb.gnudb.org:1 ");
  CHECK(loaded("port = 65535\n") == "gnudb.gnudb.org:65535 ");
  CHECK(loaded("port = 0\n") == "gnudb.gnudb.org:80 ");
  CHECK(loaded("port = 65536\n") == "gnudb.gnudb.org:80 ");
  // No other server takes the place of one that was taken away.
  CHECK(loaded("server =\n") == ":80 ");
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

TEST_CASE("A report of rips is left only where that is switched on") {
  TempFolder folder;
  explainEngineSettings(HostPath(folder.path()));
  CHECK_FALSE(loadEngineSettings(HostPath(folder.path())).ripLog);
  folder.write("Engines.ini", "[Ripping]\nripLog = on\n");
  CHECK(loadEngineSettings(HostPath(folder.path())).ripLog);
}

TEST_CASE("A drive's read offset goes by its name, and is 0 where it makes no sense") {
  TempFolder folder;
  const HostPath program(folder.path());
  CHECK(readOffsetOf(program, "PLEXTOR PX-1") == 0);
  explainEngineSettings(program);
  CHECK(readOffsetOf(program, "PLEXTOR PX-1") == 0);
  folder.write("Engines.ini",
               "[readOffset]\nPlextor PX-1 = +30\nB = -11760\nC = 11761\nD = 6 samples\nE = +-6\nF = 12\nG =\n");
  CHECK(readOffsetOf(program, "PLEXTOR PX-1") == 30);
  CHECK(readOffsetOf(program, "B") == -11760);
  CHECK(readOffsetOf(program, "F") == 12);
  for (const char* drive : {"C", "D", "E", "G", "H", ""}) CHECK(readOffsetOf(program, drive) == 0);
}

TEST_CASE("A program folder that cannot be written gives the defaults in silence") {
  explainEngineSettings(HostPath("/no/such/folder"));
  CHECK(loadEngineSettings(HostPath("/no/such/folder")).pause == 150);
}

}  // namespace trackloom::engines
