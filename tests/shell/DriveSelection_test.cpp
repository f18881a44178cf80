#include <catch2/catch.hpp>

#include "fakes/Machine.h"

namespace trackloom {

using fakes::EndOfProcess;
using fakes::FakeDrive;
using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// Starts and ends the program once, so that its options lie in the folder with this drive.
void saveDrive(Machine& machine, std::int16_t drive) {
  machine.startQuietly();
  machine.mod().CurrentDrive = drive;
  REQUIRE(machine.close() == 0);
  machine.engines.stage.take();
}

void expectNoDrive(Machine& machine, const std::string& panel) {
  machine.desk.expectForm<frmNOCD>("frmNOCD", [&machine, panel](frmNOCD& form) {
    CHECK(machine.window().panel2.Text == panel);
    CHECK(form.Label1.Caption == std::string("No CD Recording Drives Found"));
    form.cmdOK.click();
  });
}

FakeDrive driveCalled(const std::string& product, const std::string& letter) {
  FakeDrive drive;
  drive.product = product;
  drive.letter = letter;
  return drive;
}

bool called(const Lines& transcript, const std::string& call) {
  return std::find(transcript.begin(), transcript.end(), call) != transcript.end();
}

}  // namespace

TEST_CASE("E018: Without a drive panel2 says so behind frmNOCD, whose OK ends the process") {
  Machine machine;
  machine.engines.stage.drives.clear();
  bool pressed = false;
  machine.desk.expectForm<frmNOCD>("frmNOCD", [&](frmNOCD& form) {
    CHECK(machine.window().panel2.Text == std::string("No Recording Drive Found"));
    CHECK(machine.window().cboMainDrive.entries().empty());
    pressed = true;
    form.cmdOK.click();
    FAIL("the process goes on behind OK");
  });
  std::optional<int> status;
  try {
    machine.start();
  } catch (const EndOfProcess& end) {
    status = end.status;
  }
  CHECK(pressed);
  CHECK(status == 0);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.DriveCount"});
}

TEST_CASE("E019: A drive refused at start-up ends in frmNOCD each time, and the options stay as they are") {
  Machine machine;
  machine.engines.stage.drives = {driveCalled("Good", "D"), driveCalled("Bad", "E")};
  saveDrive(machine, 1);
  const std::string options = machine.folder.read("Options.dat");
  machine.engines.stage.drives[1].refuses = true;
  for (int start = 1; start <= 2; ++start) {
    expectNoDrive(machine, "Unable to Open Drive");
    CHECK_THROWS_AS(machine.start(), EndOfProcess);
    CHECK(machine.folder.read("Options.dat") == options);
    CHECK(machine.mod().CurrentDrive == 0);
    CHECK_FALSE(called(machine.engines.stage.take(), "CDR1.SelectDrive(0)"));
  }
}

TEST_CASE("E020: A negative SavedDrive selects drive 0") {
  Machine machine;
  saveDrive(machine, -5);
  machine.startQuietly();
  CHECK(called(machine.engines.stage.take(), "CDR1.SelectDrive(0)"));
  CHECK(machine.mod().CurrentDrive == 0);
  CHECK(machine.mod().DriveOpen);
  CHECK(machine.window().panel2.Text == std::string("ACME Writer (D:)"));
}

TEST_CASE("E021: A SavedDrive beyond the last drive goes to the engine, whose answer decides") {
  Machine machine;
  saveDrive(machine, 7);
  const std::string options = machine.folder.read("Options.dat");
  expectNoDrive(machine, "Unable to Open Drive");
  CHECK_THROWS_AS(machine.start(), EndOfProcess);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.DriveCount", "CDR1.SelectDrive(7)", "CDR1.HasWriteGuard",
                                              "CDR1.EnableWriteGuard(False)", "CDR1.MediaLoaded"});
  CHECK_FALSE(machine.mod().DriveOpen);
  CHECK(machine.mod().CurrentDrive == 0);
  CHECK(machine.window().cboMainDrive.SelectedEntry() == 1);
  CHECK(machine.folder.read("Options.dat") == options);

  while (machine.engines.stage.drives.size() < 8) machine.engines.stage.drives.push_back(driveCalled("Late", "K"));
  machine.startQuietly();
  CHECK(machine.mod().DriveOpen);
  CHECK(machine.mod().CurrentDrive == 7);
  CHECK(machine.window().cboMainDrive.SelectedEntry() == 8);
  CHECK(machine.window().panel2.Text == std::string("ACME Late (K:)"));
}

TEST_CASE("The blanks around a drive's vendor and product are cut off, and nothing else is") {
  Machine machine;
  machine.engines.stage.drives[0].vendor = "  AC ME ";
  machine.engines.stage.drives[0].product = " Fast\t  Writer  ";
  machine.startQuietly();
  CHECK(machine.window().panel2.Text == std::string("AC ME Fast\t  Writer (D:)"));
  REQUIRE(machine.window().cboMainDrive.entries().size() == 1);
  CHECK(machine.window().cboMainDrive.entries()[0].Tag == "0");
}

TEST_CASE("The write guard is switched as the drive has it, also after a drive that was refused") {
  const bool refused = GENERATE(true, false);
  Machine machine;
  machine.engines.stage.drives[0].refuses = refused;
  machine.engines.stage.drives[0].writeGuard = refused;
  if (refused) {
    expectNoDrive(machine, "Unable to Open Drive");
    CHECK_THROWS_AS(machine.start(), EndOfProcess);
  } else {
    machine.startQuietly();
  }
  CHECK(machine.engines.stage.take() == Lines{"CDR1.DriveCount", "CDR1.SelectDrive(0)", "CDR1.HasWriteGuard",
                                              "CDR1.EnableWriteGuard(False)", "CDR1.MediaLoaded"});
}

TEST_CASE("E022: Of two entries of the same text the first one's drive is taken") {
  Machine machine;
  machine.engines.stage.drives = {driveCalled("Other", "D"), driveCalled("Twin", "E"), driveCalled("Twin", "E")};
  machine.startQuietly();
  machine.engines.stage.take();
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 3);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.SelectDrive(1)"});
  CHECK(machine.mod().CurrentDrive == 1);
  CHECK(machine.window().panel2.Text == std::string("ACME Twin (E:)"));

  machine.window().DockStudio1.chooseEntry("cboMainDrive", 2);
  CHECK(machine.engines.stage.take().empty());
}

TEST_CASE("E023: Cancel in No Media leaves no layout, and OK on an empty drive asks again at once") {
  Machine machine;
  machine.startQuietly();
  machine.engines.stage.disc.reset();
  machine.engines.stage.take();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    for (const BoxAnswer answer : {BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Cancel})
      machine.desk.expectBox("No Media", answer);
    form.cmdOK.click();
  });
  machine.click("New");
  CHECK(machine.desk.finished());
  CHECK(machine.desk.boxes.size() == 3);
  CHECK(machine.pump.pumped == 0);
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.window().panel1.Text == std::string());
}

TEST_CASE("E024: A disc without free blocks makes no layout, and a negative answer passes the test") {
  Machine machine;
  machine.startQuietly();
  machine.engines.stage.disc->freeAudio = 0;
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    machine.desk.expectBox("No Available Space", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  machine.click("New");
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.window().panel1.Text == std::string());
  CHECK(machine.desk.lastBox().text ==
        "The current disc in your CD writer does not have any free space on it.  The disc is either closed for further "
        "writing or is not a writable disc.\r\n\r\nPlease insert a new CDR disc before creating or opening a CD "
        "layout.");
  CHECK(machine.desk.lastBox().icon == BoxIcon::Exclamation);

  machine.engines.stage.disc->freeAudio = -5;
  machine.newLayout(AudioLayout);
  CHECK(machine.mod().LayoutOpen);
  CHECK(machine.desk.boxes.size() == 1);
  CHECK(machine.window().Progress1.Text == std::string());
}

TEST_CASE("A drive that fails at a change is named in panel2 only, and no command is blocked") {
  Machine machine;
  machine.engines.stage.drives = {driveCalled("Good", "D"), driveCalled("Bad", "E")};
  machine.engines.stage.drives[1].refuses = true;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.engines.stage.take();
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 2);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.SelectDrive(1)"});
  CHECK_FALSE(machine.mod().DriveOpen);
  CHECK(machine.window().panel2.Text == std::string("Unable to Open Drive"));
  CHECK(machine.enabled("mnuToolsErase"));
  CHECK(machine.mod().LayoutOpen);

  machine.window().DockStudio1.chooseEntry("cboMainDrive", 1);
  CHECK(machine.mod().DriveOpen);
  CHECK(machine.window().panel2.Text == std::string("ACME Good (D:)"));
}

TEST_CASE("An engine that cannot count its drives has none") {
  Machine machine;
  machine.engines.stage.broken = {"CDR1.DriveCount"};
  expectNoDrive(machine, "No Recording Drive Found");
  CHECK_THROWS_AS(machine.start(), EndOfProcess);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.DriveCount"});
}

TEST_CASE("A drive that fails while it is selected is told as one that cannot be opened, and the guard is set") {
  Machine machine;
  machine.engines.stage.drives = {driveCalled("First", "D"), driveCalled("Second", "E")};
  saveDrive(machine, 1);
  machine.engines.stage.broken = {"CDR1.SelectDrive(1)"};
  expectNoDrive(machine, "Unable to Open Drive");
  CHECK_THROWS_AS(machine.start(), EndOfProcess);
  CHECK(machine.mod().CurrentDrive == 0);
  CHECK(machine.window().cboMainDrive.SelectedEntry() == 1);
  const Lines calls = machine.engines.stage.take();
  CHECK(Lines(calls.begin(), calls.begin() + 4) ==
        Lines{"CDR1.DriveCount", "CDR1.SelectDrive(1)", "CDR1.HasWriteGuard", "CDR1.EnableWriteGuard(False)"});
}

TEST_CASE("A drive whose guard cannot be asked or set is in use all the same") {
  const std::string broken = GENERATE("CDR1.HasWriteGuard", "CDR1.EnableWriteGuard(True)");
  Machine machine;
  machine.engines.stage.broken = {broken};
  machine.startQuietly();
  CHECK(machine.mod().DriveOpen);
  CHECK(machine.window().panel2.Text == std::string("ACME Writer (D:)"));
  const std::string set = broken == "CDR1.HasWriteGuard" ? "CDR1.EnableWriteGuard(False)" : broken;
  CHECK(called(machine.engines.stage.take(), set));
}

TEST_CASE("A drive that is chosen while the program starts is no choice, and is one behind the first activation") {
  Machine machine;
  machine.engines.stage.drives = {driveCalled("First", "D"), driveCalled("Second", "E")};
  machine.folder.write("NoShow.dat", "");
  machine.start();
  machine.engines.stage.take();
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 2);
  CHECK(machine.engines.stage.take().empty());
  CHECK(machine.mod().CurrentDrive == 0);
  machine.activate();
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 1);
  machine.window().DockStudio1.chooseEntry("cboMainDrive", 2);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.SelectDrive(1)"});
  CHECK(machine.mod().CurrentDrive == 1);
}

TEST_CASE("A choice on another tool, or of no entry at all, is no change of the drive") {
  Machine machine;
  machine.startQuietly();
  machine.engines.stage.take();
  machine.window().DockStudio1.ComboChanged(machine.window().panel1, {"ACME Other (E:)", "1"});
  CHECK(machine.window().panel2.Text == std::string("ACME Writer (D:)"));

  machine.engines.stage.drives.clear();
  expectNoDrive(machine, "No Recording Drive Found");
  CHECK_THROWS_AS(machine.start(), EndOfProcess);
  machine.engines.stage.take();
  machine.window().Loading = false;
  machine.window().DockStudio1.ComboChanged(machine.window().cboMainDrive, {"ACME Writer (D:)", "0"});
  CHECK(machine.window().panel2.Text == std::string("No Recording Drive Found"));
  CHECK(machine.engines.stage.take().empty());
}

TEST_CASE("An entry that the list does not have keeps the drive, which is taken into use again") {
  Machine machine;
  machine.engines.stage.drives = {driveCalled("First", "D"), driveCalled("Second", "E")};
  saveDrive(machine, 1);
  machine.startQuietly();
  machine.engines.stage.take();
  for (const char* text : {"acme first (d:)", "ACME First"}) {
    machine.window().DockStudio1.ComboChanged(machine.window().cboMainDrive, {text, "0"});
    CHECK(machine.engines.stage.take() == Lines{"CDR1.SelectDrive(1)"});
    CHECK(machine.mod().CurrentDrive == 1);
    CHECK(machine.window().panel2.Text == std::string(text));
  }
}

TEST_CASE("A drive that is taken into use but not in the list leaves list and name as they were designed") {
  Machine machine;
  machine.engines.stage.drives = {driveCalled("First", "D"), driveCalled("Second", "E")};
  saveDrive(machine, 1);
  std::filesystem::remove(machine.folder / "Trackloom.dsl");
  machine.engines.stage.onLine = [&](const std::string& call) {
    if (call == "CDR1.DriveCount") machine.engines.stage.drives.pop_back();
    if (call == "CDR1.SelectDrive(1)") machine.engines.stage.drives.push_back(driveCalled("Second", "E"));
  };
  machine.startQuietly();
  CHECK(machine.mod().DriveOpen);
  CHECK(machine.mod().CurrentDrive == 1);
  REQUIRE(machine.window().cboMainDrive.entries().size() == 1);
  CHECK(machine.window().panel2.Text == std::string());
}

TEST_CASE("However the dialog about missing drives goes, the process ends well and saves nothing") {
  const bool refused = GENERATE(true, false);
  const std::string way = GENERATE("button", "close box", "program");
  Machine machine;
  if (refused)
    machine.engines.stage.drives[0].refuses = true;
  else
    machine.engines.stage.drives.clear();
  machine.desk.expectForm<frmNOCD>("frmNOCD", [&](frmNOCD& form) {
    if (way == "button") form.cmdOK.click();
    if (way == "close box") form.closeBox();
    if (way == "program") form.unload();
  });
  machine.showSplash();
  CHECK(machine.endOf([&] { machine.program().forms().shell.frmOpen->Timer1.tick(); }) == 0);
  CHECK_FALSE(machine.folder.has("Trackloom.dsl"));
}

}  // namespace trackloom
