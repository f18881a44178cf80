#include <catch2/catch.hpp>

#include "program/RealMachine.h"

namespace trackloom {

using fakes::EndOfProcess;
using test::RealMachine;

namespace {

void expectNoDrive(RealMachine& machine) {
  machine.desk.expectForm<frmNOCD>("frmNOCD", [](frmNOCD& form) { form.cmdOK.click(); });
}

/// The status with which the start ends.
int endOfStart(RealMachine& machine) {
  try {
    machine.start();
  } catch (const EndOfProcess& end) {
    return end.status;
  }
  return -1;
}

void saveDrive(RealMachine& machine, std::int16_t drive) {
  machine.startQuietly();
  machine.mod().CurrentDrive = drive;
  REQUIRE(machine.close() == 0);
}

}  // namespace

TEST_CASE("Two recorders are two entries that only their letters tell apart, and each writes its own disc") {
  RealMachine machine(2);
  machine.startQuietly();
  const auto& entries = machine.window().cboMainDrive.entries();
  REQUIRE(entries.size() == 2);
  CHECK(entries[0].Text == "Virtual CD Recorder (D:)");
  CHECK(entries[1].Text == "Virtual CD Recorder (E:)");
  CHECK(machine.window().panel2.Text == entries[0].Text);

  machine.window().DockStudio1.chooseEntry("cboMainDrive", 2);
  CHECK(machine.window().panel2.Text == entries[1].Text);
  machine.newLayout(AudioLayout);
  machine.drop({machine.wavFile("a.wav", 20)});
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(std::filesystem::exists(machine.recorder(2) / "shelf/Disc 0001/disc.bin"));
  CHECK(std::filesystem::is_empty(machine.recorder(1) / "shelf"));

  machine.mod().LayoutSaved = true;
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  CHECK(machine.mod().CurrentDrive == 1);
  CHECK(machine.window().panel2.Text == std::string("Virtual CD Recorder (E:)"));
}

TEST_CASE("A recorder that refuses at the start ends the program, and the options stay as they are") {
  RealMachine machine(2);
  saveDrive(machine, 0);
  const std::string options = machine.folder.read("Options.dat");
  machine.configure("refuseSelect = yes\n", 1);
  expectNoDrive(machine);
  CHECK(endOfStart(machine) == 0);
  CHECK(machine.window().panel2.Text == std::string("Unable to Open Drive"));
  CHECK(machine.folder.read("Options.dat") == options);
}

TEST_CASE("A recorder that refuses at a choice says so, and the program goes on") {
  RealMachine machine(2);
  machine.configure("refuseSelect = yes\n", 2);
  machine.startQuietly();
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 2);
  CHECK(machine.window().panel2.Text == std::string("Unable to Open Drive"));
  CHECK_FALSE(machine.mod().DriveOpen);
  machine.desk.expectBox("Eject", BoxAnswer::Ok);
  machine.click("mnuToolsEject");
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    machine.desk.expectBox("No Media", BoxAnswer::Cancel);
    form.cmdOK.click();
  });
  machine.click("New");
  CHECK_FALSE(machine.mod().LayoutOpen);

  machine.configure("", 2);
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 1);
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 2);
  CHECK(machine.window().panel2.Text == std::string("Virtual CD Recorder (E:)"));
  machine.newLayout(AudioLayout);
  CHECK(machine.mod().LayoutOpen);
}

TEST_CASE("A remembered recorder that is no longer there ends the program") {
  RealMachine machine(2);
  saveDrive(machine, 1);
  const std::string options = machine.folder.read("Options.dat");
  std::filesystem::remove_all(machine.recorder(2));
  expectNoDrive(machine);
  CHECK(endOfStart(machine) == 0);
  CHECK(machine.folder.read("Options.dat") == options);
}

TEST_CASE("Without any recorder the program ends, and the options stay as they are") {
  RealMachine machine;
  saveDrive(machine, 0);
  const std::string options = machine.folder.read("Options.dat");
  std::filesystem::remove_all(machine.recorder());
  expectNoDrive(machine);
  CHECK(endOfStart(machine) == 0);
  CHECK(machine.window().panel2.Text == std::string("No Recording Drive Found"));
  CHECK(machine.folder.read("Options.dat") == options);
}

TEST_CASE("A recorder that vanishes while a layout is open leaves the program without media, and comes back") {
  RealMachine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.drop({machine.wavFile("a.wav", 20)});
  std::filesystem::rename(machine.recorder(), machine.folder / "gone");
  machine.desk.expectBox("Media Not Loaded", BoxAnswer::Ok);
  machine.click("Record");
  machine.desk.expectBox("Eject", BoxAnswer::Ok);
  machine.click("mnuToolsEject");
  std::filesystem::rename(machine.folder / "gone", machine.recorder());
  machine.record();
  machine.expectDone();
  CHECK(machine.finishes());
}

}  // namespace trackloom
