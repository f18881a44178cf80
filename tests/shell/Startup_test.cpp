#include <array>
#include <catch2/catch.hpp>
#include <stdexcept>

#include "fakes/Machine.h"
#include "layout/frmNewOption.h"
#include "layout/frmSave.h"
#include "runtime/RuntimeError.h"
#include "shell/frmNOCD.h"
#include "shell/modXP.h"

namespace trackloom {

using fakes::EndOfProcess;
using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// The integer at an offset of `Options.dat`, as an independent reader sees it.
int fieldAt(const Machine& machine, std::size_t offset) {
  const std::string bytes = machine.folder.read("Options.dat");
  const int value = static_cast<unsigned char>(bytes.at(offset)) | static_cast<unsigned char>(bytes.at(offset + 1))
                                                                       << 8;
  return value > 32767 ? value - 65536 : value;
}

void cancelNewOption(Machine& machine) {
  machine.desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) { form.cmdCancel.click(); });
}

void expectNoDrive(Machine& machine) {
  machine.desk.expectForm<frmNOCD>("frmNOCD", [](frmNOCD& form) { form.cmdOK.click(); });
}

}  // namespace

TEST_CASE("E001: A first start makes Layouts and Options.dat, maximises, and offers a new layout") {
  Machine machine;
  machine.start();
  CHECK(std::filesystem::is_directory(machine.folder / "Layouts"));
  CHECK(machine.folder.read("Options.dat").size() == 276);
  CHECK(machine.window().placement.get().state == WindowState::Maximized);
  CHECK_FALSE(machine.folder.has("Trackloom.dsl"));

  cancelNewOption(machine);
  machine.activate();
  CHECK(machine.desk.finished());
  machine.activate();
  CHECK(machine.desk.transcript ==
        Lines{"show frmOpen", "show frmListing", "unload frmOpen", "modal frmNewOption", "unload frmNewOption"});
}

TEST_CASE("E002: A window closed while maximised forgets its size and opens maximised") {
  Machine machine;
  machine.startQuietly();
  machine.window().placement = Placement{WindowState::Normal, 150, 300, 15000, 9000};
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  CHECK(machine.window().placement.get() == Placement{WindowState::Normal, 150, 300, 15000, 9000});

  machine.window().placement = Placement{WindowState::Maximized, 150, 300, 15000, 9000};
  REQUIRE(machine.close() == 0);
  for (const std::size_t offset : {268U, 270U, 272U, 274U}) CHECK(fieldAt(machine, offset) == 0);
  machine.startQuietly();
  CHECK(machine.window().placement.get().state == WindowState::Maximized);
}

TEST_CASE("E003: A window at left 0 and top 0 is no maximised window") {
  const Placement place =
      GENERATE(Placement{WindowState::Normal, 0, 0, 15000, 0}, Placement{WindowState::Normal, 0, 0, 0, 9000});
  Machine machine;
  machine.startQuietly();
  machine.window().placement = place;
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  CHECK(machine.window().placement.get() == place);
}

TEST_CASE("A single placement value that is not 0 makes a placed window, whichever it is") {
  const Placement place =
      GENERATE(Placement{WindowState::Normal, 150, 0, 0, 0}, Placement{WindowState::Normal, 0, 150, 0, 0},
               Placement{WindowState::Normal, -150, 0, 0, 0}, Placement{WindowState::Normal, 0, -150, 0, 0});
  Machine machine;
  machine.startQuietly();
  machine.window().placement = place;
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  CHECK(machine.window().placement.get() == place);
}

TEST_CASE("A window closed while minimised stores 0 in all four placement fields") {
  Machine machine;
  machine.startQuietly();
  machine.window().placement = Placement{WindowState::Normal, 150, 300, 15000, 9000};
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  machine.window().placement = Placement{WindowState::Minimized, 150, 300, 15000, 9000};
  REQUIRE(machine.close() == 0);
  for (const std::size_t offset : {268U, 270U, 272U, 274U}) CHECK(fieldAt(machine, offset) == 0);
}

TEST_CASE("E004: A placement value beyond 32767 twips keeps the field's earlier value") {
  struct Case {
    Placement place;
    /// Width, height, left and top as the file has them afterwards; before, they were 12000, 9000, 10 and 20.
    std::array<int, 4> stored;
  };
  const Case c = GENERATE(Case{{WindowState::Normal, 30, 40, 32768, 8000}, {12000, 8000, 30, 40}},
                          Case{{WindowState::Normal, 30, 40, 8000, 32768}, {8000, 9000, 30, 40}},
                          Case{{WindowState::Normal, 32768, 40, 8000, 7000}, {8000, 7000, 10, 40}},
                          Case{{WindowState::Normal, 30, 32768, 8000, 7000}, {8000, 7000, 30, 20}},
                          Case{{WindowState::Normal, -32769, -32769, 8000, 7000}, {8000, 7000, 10, 20}},
                          Case{{WindowState::Normal, -32768, 32767, 32767, 32767}, {32767, 32767, -32768, 32767}});
  Machine machine;
  machine.startQuietly();
  machine.window().placement = Placement{WindowState::Normal, 10, 20, 12000, 9000};
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  machine.window().placement = c.place;
  REQUIRE(machine.close() == 0);
  for (std::size_t field = 0; field < 4; ++field) CHECK(fieldAt(machine, 268 + 2 * field) == c.stored.at(field));
}

TEST_CASE("E005: Closing an empty unnamed layout never asks") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.mod().LayoutSaved = false;
  CHECK(machine.close() == 0);
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("E006: With PromptSave 0 a changed layout is dropped at exit without a question") {
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.PromptSave = 0;
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  REQUIRE_FALSE(machine.mod().LayoutSaved);
  CHECK(machine.close() == 0);
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("E007: Cancel at the exit question leaves window, layout and files as they were") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  const std::string before = machine.folder.read("Options.dat");
  const std::string meter = machine.window().Progress1.Text;

  machine.desk.expectBox("Save Layout", BoxAnswer::Cancel);
  CHECK_FALSE(machine.close().has_value());
  CHECK(machine.desk.lastBox().text == "Save the currently open layout?");
  CHECK(machine.desk.lastBox().buttons == BoxButtons::YesNoCancel);
  CHECK(machine.desk.lastBox().icon == BoxIcon::Question);
  CHECK(machine.window().visible());
  CHECK(machine.window().ListView1.Count() == 1);
  CHECK(machine.mod().LayoutOpen);
  CHECK(machine.window().Progress1.Text == meter);
  CHECK(machine.folder.read("Options.dat") == before);
  CHECK_FALSE(machine.folder.has("Trackloom.dsl"));
}

TEST_CASE("A close request leaves the splash, which only its timer ends") {
  Machine machine;
  machine.start();
  REQUIRE(machine.desk.transcript == Lines{"show frmOpen", "show frmListing", "unload frmOpen"});

  frmOpen& splash = machine.program().forms().shell.frmOpen.get();
  const auto alive = splash.keepAlive();
  splash.show();
  splash.closeBox();
  CHECK_FALSE(splash.closed());
  CHECK(splash.Timer1.Enabled);
  splash.Timer1.tick();
  CHECK(splash.closed());
}

TEST_CASE("E008: A second instance ends with nothing written") {
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.SavedDrive = 3;
  REQUIRE(machine.close() == 0);
  const std::string options = machine.folder.read("Options.dat");
  const std::string bars = machine.folder.read("Trackloom.dsl");

  machine.process.second = true;
  machine.engines.stage.take();
  int status = -1;
  try {
    machine.start();
  } catch (const EndOfProcess& end) {
    status = end.status;
  }
  CHECK(status == 0);
  CHECK(machine.folder.read("Options.dat") == options);
  CHECK(machine.folder.read("Trackloom.dsl") == bars);
  CHECK(machine.engines.stage.take().empty());
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("A second instance leaves nothing in the folder from which it was started either") {
  Machine machine;
  machine.process.second = true;
  const fakes::TempFolder here;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(here.path());
  CHECK_THROWS_AS(machine.start(), EndOfProcess);
  std::filesystem::current_path(before);
  CHECK(std::filesystem::is_empty(here.path()));
  CHECK(machine.window().ClosingDuplicate);
}

TEST_CASE("The load asks the engine exactly what it needs, in order") {
  Machine machine;
  machine.startQuietly();
  CHECK(machine.engines.stage.transcript == Lines{"CDR1.DriveCount", "CDR1.SelectDrive(0)", "CDR1.HasWriteGuard",
                                                  "CDR1.EnableWriteGuard(True)", "CDR1.MediaLoaded"});
  CHECK(machine.commonControls.calls == std::vector<std::pair<std::int32_t, std::int32_t>>{{8, 0x200}});
}

TEST_CASE("The splash stands while the main window loads, and its size is that of its picture") {
  Machine machine;
  machine.start();
  CHECK(machine.desk.transcript == Lines{"show frmOpen", "show frmListing", "unload frmOpen"});
  const Placement splash = machine.program().forms().shell.frmOpen->placement;
  CHECK(splash.width == 404 * 15);
  CHECK(splash.height == 331 * 15);
}

TEST_CASE("A layout begun at the first activation has its columns and its meter at once") {
  Machine machine;
  machine.start();
  machine.window().DockStudio1.reportArea({0, 900, 15400, 6000}, 15400);
  machine.desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) {
    form.optMP3.click();
    form.cmdOK.click();
  });
  machine.activate();
  const auto& columns = machine.window().ListView1.columns();
  REQUIRE(columns.size() == 4);
  CHECK(columns[0].width == Approx(15400 / 2.7));
  CHECK(columns[3].width == Approx(15400 / 7.0));
  CHECK(machine.window().Progress1.Text == std::string("0 Blocks of 359,849 Blocks  (0% of CD Used)"));
  CHECK(machine.window().panel3.Text == std::string("Layout Size:  0 Bytes - Disc Size:  702.83 MB "));
}

TEST_CASE("Loading is over before the new-layout dialog shows, so a drive can be chosen behind it") {
  Machine machine;
  machine.start();
  CHECK(machine.window().Loading);
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    CHECK_FALSE(machine.window().Loading);
    form.cmdCancel.click();
  });
  machine.activate();
}

TEST_CASE("Without any drive the program says so and ends, saving nothing") {
  Machine machine;
  machine.engines.stage.drives.clear();
  expectNoDrive(machine);
  CHECK_THROWS_AS(machine.start(), EndOfProcess);
  CHECK(machine.window().panel2.Text == std::string("No Recording Drive Found"));
  CHECK(machine.window().cboMainDrive.entries().empty());
  CHECK_FALSE(machine.folder.has("Trackloom.dsl"));
}

TEST_CASE("A folder called NoShow.dat does not keep the new-layout dialog away") {
  Machine machine;
  std::filesystem::create_directory(machine.folder / "NoShow.dat");
  machine.start();
  cancelNewOption(machine);
  machine.activate();
  CHECK(machine.desk.finished());
}

TEST_CASE("Yes at the exit question without a file shows frmSave, whose Cancel does not stop the exit") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.desk.expectBox("Save Layout", BoxAnswer::Yes);
  machine.desk.expectForm<frmSave>("frmSave", [](frmSave& form) { form.cmdCancel.click(); });
  CHECK(machine.close() == 0);
  CHECK(std::filesystem::is_empty(machine.folder / "Layouts"));
}

TEST_CASE("The exit blanks the status texts before it remembers the bars") {
  Machine machine;
  machine.startQuietly();
  CHECK(machine.window().panel1.Text == std::string("For Help, Press F1"));
  machine.newLayout(AudioLayout);
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  CHECK(machine.window().panel1.Text == std::string());
  CHECK(machine.window().Progress1.Text == std::string());
}

TEST_CASE("A damaged Trackloom.dsl leaves the designed bars") {
  Machine machine;
  machine.folder.write("Trackloom.dsl", "TLDS0001 and then nonsense");
  machine.startQuietly();
  CHECK(machine.window().panel1.Text == std::string("For Help, Press F1"));
}

TEST_CASE("An error that nobody handles saves the layout aside, tells the number, and ends with status 1") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.endOf([] { throw RuntimeError(RuntimeError::DiskFull); }) == 1);
  CHECK(machine.desk.lastBox().text ==
        "Run-time error '61':\r\n\r\nDisk full\r\n\r\nThe open layout was saved as 'Rescued layout 1'.");
  CHECK(machine.desk.lastBox().icon == BoxIcon::Critical);
  CHECK(machine.folder.read("Layouts/Rescued layout 1.mixl") ==
        "\"Audio\"\r\n1\r\n\"00:15:25\"\r\n\"" + machine.folder.path() + "/music/a.mp3\"\r\n");
}

TEST_CASE("Timer1 begins the real pass after a test, once") {
  Machine machine;
  machine.startQuietly();
  machine.window().CDR1->SetTestMode(true);
  machine.mod().WritePhase = TestBeforeWrite;
  machine.window().Timer1.tick();
  CHECK(machine.mod().WritePhase == TestBeforeWrite);

  machine.window().Timer1.Enabled = true;
  machine.window().Timer1.tick();
  CHECK(machine.mod().WritePhase == RealWrite);
  CHECK_FALSE(machine.window().CDR1->TestMode());
  CHECK_FALSE(machine.window().Timer1.Enabled);
  CHECK(machine.engines.stage.transcript.back() == "CDR1.StartWrite");
}

TEST_CASE("The columns share the width of the list by the kind of layout") {
  Machine machine;
  machine.startQuietly();
  machine.window().DockStudio1.reportArea({0, 900, 15400, 6000}, 15400);
  const auto widthOf = [&](std::size_t column) { return machine.window().ListView1.columns().at(column).width; };
  CHECK(widthOf(0) == Approx(7000));
  CHECK(widthOf(1) == Approx(4400));
  CHECK(widthOf(2) == Approx(15400 / 6.5));
  CHECK(machine.window().Progress1.Width.get() == Approx(15400));

  machine.newLayout(Mp3Layout);
  CHECK(widthOf(0) == Approx(15400 / 2.7));
  CHECK(widthOf(3) == Approx(2200));
  machine.click("mnuFileClose");
  machine.window().DockStudio1.reportArea({0, 900, 7700, 6000}, 7700);
  CHECK(machine.window().ListView1.columns().size() == 3);
  CHECK(widthOf(0) == Approx(7700 / 2.7));
}

TEST_CASE("The folder of the program loses the blanks around it and ends in one separator") {
  Machine machine;
  machine.process.folder = "  " + machine.folder.path() + "/ ";
  machine.startQuietly();
  CHECK(machine.mod().AppFolder == machine.folder.path() + "/");
  CHECK(machine.folder.has("Options.dat"));
}

TEST_CASE("A drive that fails when it is asked for its disc does not stop the start") {
  Machine machine;
  machine.engines.stage.broken = {"CDR1.MediaLoaded"};
  machine.startQuietly();
  CHECK(machine.window().visible());
  CHECK(machine.desk.transcript == Lines{"show frmOpen", "show frmListing", "unload frmOpen"});
}

TEST_CASE("Rescued layouts come home also when the folder of the layouts is not there yet") {
  Machine machine;
  const fakes::TempFolder home;
  machine.process.refugeFolders = {home.path()};
  home.write("Rescued Mix 1.mixl", "kept");
  machine.startQuietly();
  CHECK(machine.folder.read("Layouts/Rescued Mix 1.mixl") == "kept");
  CHECK_FALSE(home.has("Rescued Mix 1.mixl"));
}

TEST_CASE("Cancel at the first activation leaves no layout, and no later activation offers one") {
  Machine machine;
  machine.start();
  cancelNewOption(machine);
  machine.activate();
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.window().Progress1.Text == std::string());
  CHECK_FALSE(machine.window().Loading);
  machine.activate();
  CHECK(machine.desk.finished());
}

TEST_CASE("The common controls tell whether they could be initialised, and no failure of theirs stops the start") {
  struct Broken final : CommonControls {
    bool initialise(std::int32_t, std::int32_t) override { throw RuntimeError(RuntimeError::DeviceIoError); }
  } broken;
  fakes::FakeCommonControls working;
  CHECK(InitXPControls(working));
  CHECK_FALSE(InitXPControls(broken));
}

TEST_CASE("A fault of the program itself is told as such, and ends it like any other") {
  Machine machine;
  machine.startQuietly();
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.endOf([] { throw std::logic_error("no such thing"); }) == 1);
  CHECK(machine.desk.lastBox().text == "Run-time error '51':\r\n\r\nInternal error: no such thing");
}

}  // namespace trackloom
