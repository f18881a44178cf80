#include <catch2/catch.hpp>
#include <filesystem>

#include "fakes/LayoutMachine.h"
#include "layout/frmSave.h"

namespace trackloom {

using fakes::LayoutMachine;

namespace {

/// Opens the dialog by the command, and leaves it by Cancel unless the script has left it.
void inDialog(LayoutMachine& machine, const std::function<void(frmSave&)>& script,
              const char* command = "mnuFileSave") {
  machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
    script(form);
    if (!form.closed()) form.cmdCancel.click();
  });
  machine.click(command);
  REQUIRE(machine.desk.finished());
}

}  // namespace

TEST_CASE("Each of nine characters is refused anywhere in a name, the focus goes back to it, and nothing is written") {
  LayoutMachine machine(AudioLayout);
  for (const char forbidden : std::string("\"?*/\\><:|")) {
    for (const std::string& name : {std::string(1, forbidden), std::string("mix") + forbidden,
                                    forbidden + std::string("x"), std::string(" ") + forbidden + ' '}) {
      inDialog(machine, [&](frmSave& form) {
        int focused = 0;
        const Connection watch = form.txtName.focusRequested.connect([&] { ++focused; });
        form.txtName.type(name);
        machine.desk.expectBox("Layout Name", BoxAnswer::Ok);
        form.cmdOK.click();
        CHECK_FALSE(form.closed());
        CHECK(focused == 1);
      });
    }
  }
  CHECK_FALSE(machine.mod().LayoutHasFile);
  CHECK(std::filesystem::is_empty(machine.folder / "Layouts"));
}

TEST_CASE("Any other character makes a name") {
  for (const char* name : {"~", "a.b", "'", "100 % [live] {x} (1) & $HOME;#!", "ä", "-rf", "tab\there"}) {
    LayoutMachine machine(AudioLayout);
    inDialog(machine, [&](frmSave& form) {
      form.txtName.type(name);
      form.cmdOK.click();
      CHECK(form.closed());
    });
    CHECK(machine.folder.has("Layouts/" + std::string(name) + ".mixl"));
    CHECK(machine.mod().LayoutFileName == std::string(name) + ".mixl");
    CHECK(machine.mod().LayoutHasFile);
    CHECK(machine.mod().LayoutSaved);
  }
}

TEST_CASE("Cancel at the question of overwriting goes back to the name, and OK writes over the file that was there") {
  LayoutMachine machine(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.folder.write("Layouts/mix.mixl", "old");
  inDialog(machine, [&](frmSave& form) {
    int focused = 0;
    const Connection watch = form.txtName.focusRequested.connect([&] { ++focused; });
    form.txtName.type("mix");
    machine.desk.expectBox("Overwrite Layout", BoxAnswer::Cancel);
    form.cmdOK.click();
    CHECK(focused == 1);
    CHECK_FALSE(form.closed());
    CHECK(machine.folder.read("Layouts/mix.mixl") == "old");
    CHECK_FALSE(machine.mod().LayoutSaved);
    machine.desk.expectBox("Overwrite Layout", BoxAnswer::Ok);
    form.cmdOK.click();
    CHECK(focused == 1);
    CHECK(form.closed());
  });
  CHECK(machine.folder.read("Layouts/mix.mixl").starts_with("\"Audio\"\r\n1\r\n"));
  CHECK(machine.mod().LayoutSaved);
}

TEST_CASE("A folder of the layout's name is no layout to overwrite") {
  LayoutMachine machine(AudioLayout);
  std::filesystem::create_directory(machine.folder / "Layouts/mix.mixl");
  inDialog(machine, [&](frmSave& form) {
    form.txtName.type("mix");
    machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
    CHECK(machine.endOf([&] { form.cmdOK.click(); }) == 1);
    CHECK(machine.desk.lastBox().text.starts_with("Run-time error '75'"));
  });
}

TEST_CASE("A name that gets the focus is selected whole, and OK follows each change of it") {
  LayoutMachine machine(AudioLayout);
  inDialog(machine, [](frmSave& form) {
    int selected = 0;
    const Connection watch = form.txtName.selectAllRequested.connect([&] { ++selected; });
    form.txtName.focus();
    form.txtName.focus();
    CHECK(selected == 2);
    form.txtName.type("x");
    CHECK(form.cmdOK.Enabled);
    form.txtName.type("");
    CHECK_FALSE(form.cmdOK.Enabled);
  });
}

TEST_CASE("Save writes over the layout's own file without a word, and Save As keeps the old file beside the new one") {
  LayoutMachine machine(Mp3Layout);
  machine.addTrack("a.mp3", 10);
  inDialog(machine, [](frmSave& form) {
    form.txtName.type("one");
    form.cmdOK.click();
  });
  const std::string one = machine.folder.read("Layouts/one.mixl");
  machine.addTrack("b.mp3", 10);
  inDialog(
      machine,
      [](frmSave& form) {
        CHECK(form.txtName.Text == std::string("one"));
        CHECK(form.cmdOK.Enabled);
        form.txtName.type("two");
        form.cmdOK.click();
      },
      "mnuFileSaveAs");
  CHECK(machine.folder.read("Layouts/one.mixl") == one);
  machine.addTrack("c.mp3", 10);
  CHECK_FALSE(machine.mod().LayoutSaved);
  machine.click("mnuFileSave");
  CHECK(machine.mod().LayoutSaved);
  const std::string music = machine.folder / "music/";
  CHECK(machine.folder.read("Layouts/two.mixl") ==
        "\"MP3\"\r\n3\r\n\"60.00 KB\"\r\n\"" + music + "a.mp3\"\r\n\"No Folder\"\r\n\"" + music +
            "b.mp3\"\r\n\"No Folder\"\r\n\"" + music + "c.mp3\"\r\n\"No Folder\"\r\n");
}

}  // namespace trackloom
