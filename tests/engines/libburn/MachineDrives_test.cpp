#include "app/MachineDrives.h"

#include "engines/disc/DriveId.h"
#include "engines/libburn/LibburnWorld.h"
#include "engines/virtual/VirtualRecorders.h"
#include "runtime/IniFile.h"

namespace trackloom::engines::libburn {

using Catch::Matchers::Contains;
using Lines = std::vector<std::string>;

namespace {

/// A machine with emulated drives and a virtual recorder, and what each start of the program finds there.
class Machine {
 public:
  Machine() {
    ::setenv("EMULATED_DRIVES", folder.host("drives").text.c_str(), 1);
    plug("sr0", "writer", "");
    virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
  }
  ~Machine() { ::unsetenv("EMULATED_DRIVES"); }
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  void plug(const std::string& node, const std::string& product, const std::string& settings) const {
    folder.write("drives/" + node + "/drive.ini",
                 "vendor = V\nproduct = " + product + "\nserial = " + product + "\n" + settings);
  }
  void unplug(const std::string& node) const { std::filesystem::remove_all(folder / ("drives/" + node)); }

  /// "D writer" and so on: the recorders of this start with their letters.
  Lines start(std::chrono::milliseconds limit = std::chrono::hours(1)) {
    told.clear();
    const HostPath home(folder.path());
    drives = std::make_unique<MachineDrives>(
        MachineDrives::Around{home, virtualrecorder::findVirtualRecorders(home, loadKnownDrives(home)), nullptr,
                              patience, limit, [this](const Lines& why) { told = why; }});
    const PlacedRecorders found = drives->recorders();
    Lines lines;
    for (std::size_t i = 0; i < found.recorders.size(); ++i)
      lines.push_back(driveLetter(found.places[i]) + " " + found.recorders[i]->look()->identity.product);
    for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
    return lines;
  }
  /// The same of all drives that read.
  Lines readers() const {
    Lines lines;
    for (const auto& drive : drives->readers().get())
      lines.push_back(driveLetter(lines.size()) + " " + drive->names().product);
    return lines;
  }

  fakes::TempFolder folder;
  fakes::FakePatience patience;
  std::unique_ptr<MachineDrives> drives;
  Lines told;
};

}  // namespace

TEST_CASE("Recorders and drives that only read share one row of letters, which each keeps") {
  Machine machine;
  machine.plug("sr1", "reader", "writes discs = no\n");
  CHECK(machine.start() == Lines{"D writer", "F CD Recorder"});
  CHECK(machine.readers() == Lines{"D writer", "E reader", "F CD Recorder"});
  machine.unplug("sr1");
  machine.plug("sr2", "another", "");
  CHECK(machine.start() == Lines{"D writer", "F CD Recorder", "G another"});
  CHECK(machine.readers() == Lines{"D writer", "E reader (not connected)", "F CD Recorder", "G another"});
  machine.plug("sr1", "reader", "writes discs = no\n");
  machine.unplug("sr0");
  CHECK(machine.start() == Lines{"D writer (not connected)", "F CD Recorder", "G another"});
  CHECK(machine.readers() == Lines{"D writer (not connected)", "E reader", "F CD Recorder", "G another"});
  CHECK(machine.told.empty());
  const auto ini = IniFile::load(machine.folder.host("Engines.ini"));
  CHECK(ini->value("drives", "2") == "V reader reader|V|reader|reads only");
}

TEST_CASE("The letters of the writer engine are those of all drives, and its numbers those of the recorders") {
  Machine machine;
  machine.plug("sr1", "reader", "writes discs = no\n");
  machine.start();
  fakes::FakeEventQueue queue;
  fakes::WriterTranscript heard;
  writer::DiscWriters writers(Lazily<PlacedRecorders>([&] { return machine.drives->recorders(); }),
                              std::make_shared<audio::AudioFiles>(), queue, machine.patience, {});
  const auto writer = writers.create(heard);
  REQUIRE(writer->DriveCount() == 2);
  CHECK(writer->DriveLetter(0) + writer->DriveLetter(1) == "DF");
}

TEST_CASE("A drive that never answers holds the start up no longer than the limit, and has its place all the same") {
  Machine machine;
  machine.plug("sr1", "second", "");
  REQUIRE(machine.start() == Lines{"D writer", "E second", "F CD Recorder"});
  machine.plug("sr0", "writer", "hangs = yes\n");
  CHECK(machine.start(std::chrono::seconds(2)) == Lines{"D writer (not connected)", "E second", "F CD Recorder"});
  CHECK(machine.readers() == Lines{"D writer (not connected)", "E second", "F CD Recorder"});
  CHECK(machine.told == Lines{"the drive /dev/sr0 does not answer; it is looked for again at the next start"});
  CHECK(machine.drives->whyNone().empty());
  machine.plug("sr0", "writer", "");
  CHECK(machine.start() == Lines{"D writer", "E second", "F CD Recorder"});
  CHECK(machine.told.empty());
}

TEST_CASE("A drive that the user may not use is told at the start, with what he can do") {
  Machine machine;
  machine.plug("sr0", "writer", "rights = no\n");
  CHECK(machine.start() == Lines{"D CD Recorder"});
  REQUIRE(machine.told.size() == 1);
  CHECK(machine.told.front() ==
        "you may not use the drive /dev/sr0: your account must belong to the group \"cdrom\" (sudo adduser YOUR-NAME "
        "cdrom, then log in anew)");
  CHECK(machine.drives->whyNone().empty());
  std::filesystem::remove_all(machine.folder / "Virtual Recorder");
  CHECK(machine.start().empty());
  CHECK_THAT(machine.drives->whyNone(), Contains("may not use the drive /dev/sr0"));
}

TEST_CASE("A machine without drives waits for nothing") {
  Machine machine;
  machine.unplug("sr0");
  CHECK(machine.start() == Lines{"D CD Recorder"});
  CHECK(machine.told.empty());
}

TEST_CASE("What stands in the way of a drive is told once it is known, not before anybody has asked for drives") {
  Machine machine;
  machine.plug("sr0", "writer", "rights = no\n");
  const HostPath home(machine.folder.path());
  int told = 0;
  MachineDrives drives(
      MachineDrives::Around{home, {}, nullptr, machine.patience, std::chrono::hours(1), [&](const Lines&) { ++told; }});
  CHECK(told == 0);
  CHECK_FALSE(machine.folder.has("Engines.ini"));
  CHECK(drives.whyNone().empty());
  CHECK(drives.recorders().recorders.empty());
  CHECK(drives.recorders().recorders.empty());
  CHECK(told == 1);
  CHECK_THAT(drives.whyNone(), Contains("cdrom"));
}

}  // namespace trackloom::engines::libburn
