#include "model/CommandStates.h"

#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "model/MainBars.h"

namespace trackloom {

using fakes::Machine;

namespace {

struct Row {
  const char* tool;
  /// '+' on, '-' off: no layout, an empty layout, audio tracks, MP3 tracks, MP3 tracks with the disc gone.
  std::string columns;
};

const std::vector<Row> table{
    {"AddFiles", "-++++"},
    {"mnuActionsAdd", "-++++"},
    {"Search", "-++++"},
    {"mnuActionsSearch", "-++++"},
    {"mnuFileClose", "-++++"},
    {"mnuFileSave", "-++++"},
    {"mnuFileSaveAs", "-++++"},
    {"Record", "--+++"},
    {"mnuActionsRecord", "--+++"},
    {"Delete", "--+++"},
    {"mnuActionsDelete", "--+++"},
    {"Print", "--+++"},
    {"mnuFilePrint", "--+++"},
    {"mnuActionsPlay", "--+++"},
    {"CDFolder", "---++"},
    {"mnuActionsFolder", "---++"},
    {"mnuActionsCreate", "---++"},
    {"mnuToolsInformation", "++++-"},
    {"mnuToolsErase", "++++-"},
    {"mnuFileWrite", "++++-"},
    {"New", "+++++"},
    {"Open", "+++++"},
    {"mnuFileNew", "+++++"},
    {"mnuFileOpen", "+++++"},
    {"mnuFileExit", "+++++"},
    {"Ripper", "+++++"},
    {"mnuToolsRipper", "+++++"},
    {"mnuToolsEject", "+++++"},
    {"mnuToolsOptions", "+++++"},
    {"mainHelp", "+++++"},
    {"mnuHelpContents", "+++++"},
    {"mnuHelpWeb", "+++++"},
    {"mnuHelpAbout", "+++++"},
    {"ShowAll", "+++++"},
    {"ShowNoFolder", "+++++"},
    {"cboMainDrive", "+++++"},
};

void checkColumn(Machine& machine, std::size_t column) {
  for (const Row& row : table) {
    INFO(row.tool << " in column " << column + 1);
    CHECK(machine.enabled(row.tool) == (row.columns[column] == '+'));
  }
}

}  // namespace

TEST_CASE("Every tool is on and off as layout, rows, kind and disc demand") {
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.PromptSave = 0;
  checkColumn(machine, 0);
  for (const std::int16_t kind : {Mp3Layout, AudioLayout}) {
    machine.newLayout(kind);
    checkColumn(machine, 1);
  }
  machine.addTrack("a.mp3", 10);
  checkColumn(machine, 2);
  machine.newLayout(Mp3Layout);
  machine.addTrack("a.mp3", 10);
  checkColumn(machine, 3);
  machine.engines.stage.disc.reset();
  machine.window().DockStudio1.openMenu("mnuTools");
  checkColumn(machine, 4);
}

TEST_CASE("The table of states knows every command of the bars") {
  for (const ToolDesign& design : mainTools()) {
    if (design.kind == ToolKind::Panel || design.kind == ToolKind::Progress) continue;
    const bool topLevel = design.kind == ToolKind::Menu && design.name != "mnuActionsFolder";
    const auto bears = [&](const Row& row) { return row.tool == design.name; };
    INFO(design.name);
    CHECK(std::count_if(table.begin(), table.end(), bears) == (topLevel ? 0 : 1));
  }
}

TEST_CASE("Any kind of layout but MP3 counts as audio") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.mod().LayoutType = 0;
  UpdateCommandStates(machine.session());
  checkColumn(machine, 2);
}

TEST_CASE("Write ISO Image can be out of date in its own menu until the Tools menu opens") {
  Machine machine;
  machine.engines.stage.disc.reset();
  machine.startQuietly();
  CHECK_FALSE(machine.enabled("mnuFileWrite"));
  machine.engines.stage.disc = fakes::FakeDisc{};
  for (const char* menu : {"mnuFile", "mnuActions", "mnuHelp"}) machine.window().DockStudio1.openMenu(menu);
  CHECK_FALSE(machine.enabled("mnuFileWrite"));
  machine.window().DockStudio1.openMenu("mnuTools");
  CHECK(machine.enabled("mnuFileWrite"));
}

}  // namespace trackloom
