#include "engines/disc/KnownDrives.h"

#include <catch2/catch.hpp>

#include "engines/virtual/Sandbox.h"
#include "engines/virtual/VirtualRecorders.h"
#include "runtime/IniFile.h"

namespace trackloom::engines::virtualrecorder {

using Catch::Matchers::Contains;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

/// The program's folder with some recorders, and what each start of the program sees of them.
class Machine {
 public:
  void add(const std::string& name, const std::string& product) const {
    createVirtualRecorder(HostPath((box.root() / name).string()));
    writeFile(box.root() / name / "recorder.ini", "[recorder]\nvendor = V\nproduct = " + product + "\n");
  }
  void remove(const std::string& name) const { fs::remove_all(box.root() / name); }
  fs::path settings() const { return box.root() / "Engines.ini"; }

  RecorderList start() const {
    const HostPath folder(box.root().string());
    const std::vector<KnownDrive> known = loadKnownDrives(folder);
    const RecorderList present = findVirtualRecorders(folder, known);
    const std::vector<KnownDrive> drives = withPresent(known, asKnown(present));
    saveKnownDrives(folder, drives);
    return inKnownOrder(drives, present).recorders;
  }
  Names products() const {
    Names all;
    for (const auto& recorder : start()) all.push_back(recorder->look()->identity.product);
    return all;
  }

  Sandbox box;
};

class NoSource final : public SectorSource {
 public:
  void read(std::span<std::byte>) override {}
  std::int16_t bufferPercent() override { return 100; }
};

}  // namespace

TEST_CASE("A drive once seen keeps its place, absent or back again, and new ones stand behind") {
  const Machine machine;
  machine.add("Virtual Recorder 2", "two");
  machine.add("Virtual Recorder 3", "three");
  CHECK(machine.products() == Names{"CD Recorder", "two", "three"});
  machine.remove("Virtual Recorder 2");
  CHECK(machine.products() == Names{"CD Recorder", "two (not connected)", "three"});
  CHECK(machine.products() == Names{"CD Recorder", "two (not connected)", "three"});
  machine.add("Virtual Recorder 2", "two");
  machine.add("Virtual Recorder 4", "four");
  CHECK(machine.products() == Names{"CD Recorder", "two", "three", "four"});
}

TEST_CASE("A drive that is found later stands behind the known ones, whatever its name") {
  const Machine machine;
  writeFile(machine.settings(), "[drives]\n1 = Virtual Recorder 2|V|two\n");
  machine.add("Virtual Recorder 2", "two");
  CHECK(machine.products() == Names{"two", "CD Recorder"});
}

TEST_CASE("An absent drive can be selected, has no disc, and refuses all work in words") {
  const Machine machine;
  machine.add("Virtual Recorder 2", "two");
  machine.start();
  machine.remove("Virtual Recorder 2");
  const RecorderList drives = machine.start();
  REQUIRE(drives.size() == 2);
  Recorder& absent = *drives[1];
  CHECK(absent.take());
  CHECK_FALSE(absent.look()->disc);
  CHECK(absent.look()->identity.vendor == "V");
  CHECK(ejectFailure(absent) == "020400 Virtual Recorder 2 is not connected (2/04/00)");
  NoSource source;
  OperationObserver nobody;
  const auto order = audioOrder({1}, true, true);
  CHECK(failureOf([&] { absent.check(order); }) == ejectFailure(absent));
  CHECK(failureOf([&] { absent.write(order, source, nobody, {}); }) == ejectFailure(absent));
  CHECK(failureOf([&] { absent.erase(true, nobody, {}); }) == ejectFailure(absent));
  CHECK(failureOf([&] { absent.close(true, nobody, {}); }) == ejectFailure(absent));
  CHECK(failureOf([&] { absent.read(0, 1); }) == ejectFailure(absent));
}

TEST_CASE("Where no known drive is present there is no drive at all") {
  const Machine machine;
  machine.start();
  machine.remove("Virtual Recorder");
  CHECK(machine.start().empty());
  CHECK(loadKnownDrives(HostPath(machine.box.root().string())).size() == 1);
}

TEST_CASE("The list of drives leaves the user's settings and words as they are, and may be cut") {
  const Machine machine;
  const std::string mine = "; mine\n[Writing]\npause = 7\n";
  writeFile(machine.settings(), mine);
  machine.start();
  const std::string text = readFile(machine.settings());
  CHECK(text.starts_with(mine));
  CHECK_THAT(text, Contains("\n; The drives in the order of their letters, as they were first seen. May be cut.\n"
                            "1 = Virtual Recorder|Virtual|CD Recorder"));
  machine.start();
  CHECK(readFile(machine.settings()) == text);
  writeFile(machine.settings(), "[DRIVES]\n1 = Virtual Recorder|a|b\n[Writing]\npause = 9\n");
  machine.start();
  const auto ini = IniFile::load(HostPath(machine.settings().string()));
  CHECK(ini->number("Writing", "pause", 0, 100) == 9);
  CHECK(ini->value("drives", "1") == "Virtual Recorder|Virtual|CD Recorder");
  writeFile(machine.settings(), mine);
  CHECK(machine.products() == Names{"CD Recorder"});
}

TEST_CASE("The section of drives is found under its whole name alone, at the start, in the middle and at the end") {
  const Machine machine;
  const std::string drives = "[DriveS]\n1 = Virtual Recorder|old|old\n2 = gone|a|b\n";
  const std::string head = "; mine\n[drives of mine]\nx = 1\n";
  const std::string tail = "[Writing]\npause = 7\n";
  const auto kept =
      GENERATE_COPY(std::pair(std::string(), tail), std::pair(head, tail), std::pair(head, std::string()));
  writeFile(machine.settings(), kept.first + drives + kept.second);
  machine.start();
  const std::string text = readFile(machine.settings());
  const std::size_t section = text.find("[drives]\n");
  REQUIRE(section != std::string::npos);
  std::string before = text.substr(0, section);
  std::erase(before, '\n');
  std::string expected = kept.first + kept.second;
  std::erase(expected, '\n');
  CHECK(before == expected);
  CHECK_THAT(text.substr(section), Contains("1 = Virtual Recorder|Virtual|CD Recorder\n2 = gone|a|b"));
  CHECK(text.find("old") == std::string::npos);
}

}  // namespace trackloom::engines::virtualrecorder
