#include "model/CommonDialog.h"

#include <catch2/catch.hpp>

#include "fakes/Machine.h"

namespace trackloom {

using fakes::Machine;

TEST_CASE("The main window has a dialog for files and the images of its list") {
  Machine machine;
  machine.startQuietly();
  CHECK(machine.window().CD1.name() == "CD1");
  CHECK(machine.window().CD1.FileName.empty());
  CHECK(machine.window().ImageList1.name() == "ImageList1");
  CHECK(machine.window().ListView1.SmallIcons == &machine.window().ImageList1);
}

TEST_CASE("A common dialog asks with what it was given, and keeps the name that was chosen") {
  Machine machine;
  machine.startQuietly();
  CommonDialog& dialog = machine.window().CD1;
  dialog.Filter = "ISO Images (*.iso)|*.iso";
  dialog.Flags = {.pathMustExist = true, .fileMustExist = true};
  machine.desk.expectFile(HostPath("/music/mix.iso"));
  dialog.ShowOpen();
  CHECK(dialog.FileName == "/music/mix.iso");
  REQUIRE(machine.desk.fileDialogs.size() == 1);
  CHECK(machine.desk.fileDialogs[0].mode == FileDialog::Mode::Open);
  CHECK(machine.desk.fileDialogs[0].fileName.empty());
  CHECK(machine.desk.fileDialogs[0].filter == "ISO Images (*.iso)|*.iso");
  CHECK(machine.desk.fileDialogs[0].flags == FileDialogFlags{.pathMustExist = true, .fileMustExist = true});
}

TEST_CASE("A common dialog that is cancelled leaves the name as it was set") {
  Machine machine;
  machine.startQuietly();
  CommonDialog& dialog = machine.window().CD1;
  for (const char* name : {"", "old.iso"}) {
    dialog.FileName = name;
    machine.desk.expectFile(std::nullopt);
    dialog.ShowSave();
    CHECK(dialog.FileName == name);
    CHECK(machine.desk.fileDialogs.back().mode == FileDialog::Mode::Save);
    CHECK(machine.desk.fileDialogs.back().fileName == name);
  }
}

}  // namespace trackloom
