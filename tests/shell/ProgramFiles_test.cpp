#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "fakes/OwnDisk.h"
#include "layout/frmNewOption.h"
#include "layout/frmSave.h"

namespace trackloom {

using fakes::Machine;
using fakes::OwnDisk;
using fakes::TempFolder;

namespace {

/// A regular file whose every reading and writing is an input/output error.
constexpr const char* DamagedFile = "/proc/self/mem";

/// A machine whose program is used to the full by a user who watches for words.
class Tried : public Machine {
 public:
  TempFolder home;

  Tried() { process.refugeFolders = {home.path()}; }
  void addLayout() {
    newLayout(AudioLayout);
    addTrack("a.mp3", 100);
  }
  void confirmOptions() {
    desk.expectForm<frmDefaultOptions>("frmDefaultOptions", [](frmDefaultOptions& form) {
      form.cboSort.choose(1);
      form.chkPrompt.click();
      form.cmdOK.click();
    });
    click("mnuToolsOptions");
  }
  /// Saves the open layout as "x", which must end the program; the words of its last box.
  std::string lastWordsOfSave() {
    desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
      form.txtName.type("x");
      desk.expectBox("Trackloom", BoxAnswer::Ok);
      form.cmdOK.click();
    });
    CHECK(endOf([&] { click("mnuFileSave"); }) == 1);
    CHECK(desk.lastBox().icon == BoxIcon::Critical);
    return desk.lastBox().text;
  }
  /// Ticks "Do not show again" at the start; the status with which the process ended.
  std::optional<int> refuseFurtherOffers() {
    desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
      form.chkNoShow.click();
      desk.expectBox("Trackloom", BoxAnswer::Ok);
      form.cmdOK.click();
    });
    return endOf([&] { activate(); });
  }
  std::string layoutOfOneTrack() const { return "\"Audio\"\r\n1\r\n\"00:03:25\"\r\n\"" + folder.path() + track; }
  bool silent() const { return desk.boxes.empty(); }

  static constexpr const char* track = "/music/a.mp3\"\r\n";
};

std::string optionsOf(std::int16_t sortMode) {
  OptionsRecord record = OptionsRecord::defaults();
  record.SortMode = sortMode;
  return record.encode();
}

std::string movedAway(const std::string& copy) {
  return "\r\n\r\nThe open layout was saved as '" + copy + "'.";
}

}  // namespace

TEST_CASE("An empty Options.dat reads as zeros, and the exit makes it whole") {
  Tried machine;
  machine.folder.write("Options.dat", "");
  machine.startQuietly();
  CHECK(machine.mod().Options == OptionsRecord{});
  CHECK(machine.window().placement.get().state == WindowState::Maximized);
  machine.addLayout();
  CHECK(machine.close() == 0);
  CHECK(machine.silent());
  CHECK(machine.folder.read("Options.dat") == std::string(276, '\0'));
}

TEST_CASE("A short Options.dat keeps what it holds, and a long one its tail") {
  Tried machine;
  machine.folder.write("Options.dat", optionsOf(2).substr(0, 263));
  machine.startQuietly();
  CHECK(machine.mod().Options.SortMode == 2);
  CHECK(machine.mod().Options.PromptSave == 1);
  CHECK(machine.mod().Options.ThemeColours == 0);
  CHECK(machine.close() == 0);
  CHECK(machine.folder.read("Options.dat").size() == 276);

  machine.folder.write("Options.dat", optionsOf(1) + "kept by another program");
  machine.startQuietly();
  CHECK(machine.mod().Options.SortMode == 1);
  CHECK(machine.close() == 0);
  CHECK(machine.folder.read("Options.dat") == optionsOf(1) + "kept by another program");
}

TEST_CASE("A folder in the place of Options.dat means the defaults in each start") {
  Tried machine;
  std::filesystem::create_directory(machine.folder / "Options.dat");
  machine.startQuietly();
  CHECK(machine.mod().Options == OptionsRecord::defaults());
  machine.confirmOptions();
  CHECK(machine.close() == 0);
  CHECK(machine.silent());
}

TEST_CASE("Files that can be neither read nor written are passed over without a word") {
  Tried machine;
  for (const char* name : {"Options.dat", "Trackloom.dsl"})
    std::filesystem::create_symlink(DamagedFile, machine.folder / name);
  machine.startQuietly();
  CHECK(machine.mod().Options == OptionsRecord{});
  CHECK(machine.window().panel1.Text == std::string("For Help, Press F1"));
  machine.confirmOptions();
  CHECK(machine.mod().Options.SortMode == 1);
  CHECK(machine.close() == 0);
  CHECK(machine.silent());
}

TEST_CASE("Trackloom.dsl as a folder, or longer than any, leaves the designed bars") {
  Tried machine;
  std::filesystem::create_directory(machine.folder / "Trackloom.dsl");
  machine.startQuietly();
  CHECK(machine.window().panel1.Text == std::string("For Help, Press F1"));
  CHECK(machine.close() == 0);
  CHECK(std::filesystem::is_directory(machine.folder / "Trackloom.dsl"));
  std::filesystem::remove(machine.folder / "Trackloom.dsl");

  machine.folder.write("Trackloom.dsl", "TLDS0001" + std::string(5 << 20, '\0'));
  machine.startQuietly();
  CHECK(machine.window().panel1.Text == std::string("For Help, Press F1"));
  CHECK(machine.silent());
}

TEST_CASE("A file in the place of Layouts shows when a layout is saved, whose copy goes home") {
  Tried machine;
  machine.folder.write("Layouts", "in the way");
  machine.startQuietly();
  machine.addLayout();
  CHECK(machine.silent());
  CHECK(machine.lastWordsOfSave() ==
        "Run-time error '76':\r\n\r\nPath not found" + movedAway(machine.home / "Rescued layout 1.mixl"));
  CHECK(machine.home.read("Rescued layout 1.mixl") == machine.layoutOfOneTrack());
  CHECK(machine.folder.read("Layouts") == "in the way");
}

TEST_CASE("On a read-only disk the program starts, takes options and ends, and changes nothing") {
  Tried machine;
  const OwnDisk disk(machine.folder.path(), "size=1m");
  if (disk.missing()) return;
  REQUIRE(disk.makeReadOnly());
  machine.start();
  CHECK(machine.mod().Options == OptionsRecord::defaults());
  CHECK(machine.window().placement.get().state == WindowState::Maximized);
  CHECK(machine.refuseFurtherOffers() == 1);
  CHECK(machine.desk.lastBox().text == "Run-time error '70':\r\n\r\nPermission denied");

  machine.start();
  machine.confirmOptions();
  CHECK(machine.mod().Options.SortMode == 1);
  CHECK(machine.close() == 0);
  CHECK(machine.desk.boxes.size() == 1);
  CHECK(std::filesystem::is_empty(machine.folder.path()));
}

TEST_CASE("A layout that cannot be saved on a read-only disk is saved at home") {
  Tried machine;
  const OwnDisk disk(machine.folder.path(), "size=1m");
  if (disk.missing()) return;
  machine.startQuietly();
  machine.addLayout();
  REQUIRE(disk.makeReadOnly());
  CHECK(machine.lastWordsOfSave() ==
        "Run-time error '70':\r\n\r\nPermission denied" + movedAway(machine.home / "Rescued layout 1.mixl"));
  CHECK(machine.home.read("Rescued layout 1.mixl") == machine.layoutOfOneTrack());
}

TEST_CASE("A full disk loses nothing that was whole") {
  Tried machine;
  const OwnDisk disk(machine.folder.path(), "size=256k");
  if (disk.missing()) return;
  machine.startQuietly();
  machine.addLayout();
  machine.desk.expectForm<frmSave>("frmSave", [](frmSave& form) {
    form.txtName.type("Mix");
    form.cmdOK.click();
  });
  machine.click("mnuFileSave");
  CHECK(machine.close() == 0);
  const std::string bars = machine.folder.read("Trackloom.dsl");

  machine.startQuietly();
  machine.makeTrack("b.mp3", 50);
  disk.fillUp();
  machine.confirmOptions();
  CHECK(machine.folder.read("Options.dat").size() == 276);
  CHECK(machine.folder.read("Options.dat").at(262) == 1);
  machine.newLayout(AudioLayout);
  machine.window().ListView1.dropFiles({machine.folder / "music/a.mp3"});
  CHECK(machine.lastWordsOfSave() ==
        "Run-time error '61':\r\n\r\nDisk full" + movedAway(machine.home / "Rescued layout 1.mixl"));
  CHECK(machine.folder.read("Layouts/Mix.mixl") == machine.layoutOfOneTrack());
  CHECK(machine.folder.read("Trackloom.dsl") == bars);
  CHECK(std::distance(std::filesystem::directory_iterator(machine.folder / "Layouts"), {}) == 1);
}

TEST_CASE("A first start on a full disk leaves no Options.dat behind, and a later one has the defaults") {
  Tried machine;
  const OwnDisk disk(machine.folder.path(), "size=256k");
  if (disk.missing()) return;
  machine.folder.write("NoShow.dat", "");
  disk.fillUp();
  machine.start();
  machine.activate();
  CHECK(machine.close() == 0);
  CHECK_FALSE(machine.folder.has("Options.dat"));
  CHECK_FALSE(machine.folder.has("Trackloom.dsl"));
  disk.makeRoom();
  machine.start();
  CHECK(machine.mod().Options == OptionsRecord::defaults());
  CHECK(machine.silent());
}

TEST_CASE("A program folder that vanishes while the program runs leaves it usable, and its exit quiet") {
  Tried machine;
  machine.startQuietly();
  std::filesystem::remove_all(machine.folder.path());
  machine.confirmOptions();
  CHECK(machine.close() == 0);
  CHECK(machine.silent());
  CHECK_FALSE(std::filesystem::exists(machine.folder.path()));
}

TEST_CASE("A layout whose program folder has vanished is saved at home") {
  Tried machine;
  machine.startQuietly();
  machine.addLayout();
  std::filesystem::remove_all(machine.folder.path());
  CHECK(machine.lastWordsOfSave() ==
        "Run-time error '76':\r\n\r\nPath not found" + movedAway(machine.home / "Rescued layout 1.mixl"));
  CHECK(machine.home.read("Rescued layout 1.mixl") == machine.layoutOfOneTrack());
}

TEST_CASE("Do not show again in a program folder that has vanished ends the program") {
  Tried machine;
  machine.start();
  std::filesystem::remove_all(machine.folder.path());
  CHECK(machine.refuseFurtherOffers() == 1);
  CHECK(machine.desk.lastBox().text == "Run-time error '76':\r\n\r\nPath not found");
}

TEST_CASE("A Layouts folder that has vanished is made again for the rescue") {
  Tried machine;
  machine.startQuietly();
  machine.addLayout();
  std::filesystem::remove_all(machine.folder / "Layouts");
  CHECK(machine.lastWordsOfSave() == "Run-time error '76':\r\n\r\nPath not found" + movedAway("Rescued layout 1"));
  CHECK(machine.folder.read("Layouts/Rescued layout 1.mixl") == machine.layoutOfOneTrack());
}

TEST_CASE("The longest name that a folder takes can be saved, and one more character is rescued under a shorter one") {
  const std::string longest(250, 'x');
  Tried machine;
  machine.startQuietly();
  machine.addLayout();
  machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
    form.txtName.type(longest);
    form.cmdOK.click();
  });
  machine.click("mnuFileSave");
  CHECK(machine.folder.read("Layouts/" + longest + ".mixl") == machine.layoutOfOneTrack());

  machine.mod().LayoutSaved = false;
  machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
    form.txtName.type(longest + "y");
    machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  CHECK(machine.endOf([&] { machine.click("mnuFileSaveAs"); }) == 1);
  CHECK(machine.desk.lastBox().text ==
        "Run-time error '52':\r\n\r\nBad file name or number" + movedAway("Rescued " + std::string(50, 'x') + " 1"));
}

TEST_CASE("A save asked for at the exit that fails is told and rescued, and the program ends all the same") {
  Tried machine;
  machine.startQuietly();
  machine.addLayout();
  machine.mod().LayoutHasFile = true;
  machine.mod().LayoutFileName = "Mix.mixl";
  std::filesystem::remove_all(machine.folder / "Layouts");
  machine.desk.expectBox("Save Layout", BoxAnswer::Yes);
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.close() == 0);
  CHECK(machine.desk.lastBox().text == "Run-time error '76':\r\n\r\nPath not found" + movedAway("Rescued Mix 1"));
  CHECK(machine.folder.read("Layouts/Rescued Mix 1.mixl") == machine.layoutOfOneTrack());
}

}  // namespace trackloom
