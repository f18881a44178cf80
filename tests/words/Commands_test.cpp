#include <algorithm>
#include <catch2/catch.hpp>
#include <utility>

#include "fakes/Machine.h"
#include "model/CommandStates.h"
#include "model/MainBars.h"
#include "words/table/WordTable.h"

namespace trackloom::words {

using fakes::Machine;

namespace {

/// The columns of a layout command in the table of commands.
enum Column : std::size_t { NoLayout, EmptyList, AudioTracks, Mp3Tracks };

/// One command and when it is on.
struct Command {
  std::string tool;
  std::string group;
  std::vector<std::string> columns;

  bool on(Column column, bool disc) const {
    if (group == "layout") return columns.at(column) == "on";
    return group == "always" || disc;
  }
};

std::vector<Command> commandTable() {
  std::vector<Command> commands;
  for (const TableLine& line : readTableFile("commands.txt")) {
    const bool byLayout = line.bare(0) == "layout";
    Command command{line.bare(1), line.bare(0), {}};
    for (std::size_t column = 2; byLayout && column < line.words.size(); ++column)
      command.columns.push_back(line.bare(column));
    for (std::size_t tool = 1; tool < (byLayout ? 2 : line.words.size()); ++tool) {
      command.tool = line.bare(tool);
      commands.push_back(command);
    }
  }
  return commands;
}

void checkColumn(Machine& machine, Column column, bool disc = true) {
  for (const Command& command : commandTable()) {
    INFO(command.tool << " in column " << column << (disc ? "" : " without a disc"));
    CHECK(machine.enabled(command.tool) == command.on(column, disc));
  }
}

}  // namespace

TEST_CASE("The table of commands knows every command of the bars, once and in full") {
  const auto table = commandTable();
  for (const ToolDesign& design : mainTools()) {
    if (design.kind == ToolKind::Panel || design.kind == ToolKind::Progress) continue;
    const bool topLevel = design.kind == ToolKind::Menu && design.name != "mnuActionsFolder";
    INFO(design.name);
    CHECK(std::count_if(table.begin(), table.end(), [&](const Command& row) { return row.tool == design.name; }) ==
          (topLevel ? 0 : 1));
  }
  for (const Command& command : table) CHECK(command.columns.size() == (command.group == "layout" ? 4 : 0));
}

TEST_CASE("Every command is on and off as layout, rows, kind and disc demand") {
  const bool disc = GENERATE(true, false);
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.PromptSave = 0;
  const auto check = [&](Column column) {
    if (disc) return checkColumn(machine, column);
    const auto inserted = std::exchange(machine.engines.stage.disc, std::nullopt);
    machine.window().DockStudio1.openMenu("mnuTools");
    checkColumn(machine, column, false);
    machine.engines.stage.disc = inserted;
  };
  check(NoLayout);
  for (const std::int16_t kind : {Mp3Layout, AudioLayout}) {
    machine.newLayout(kind);
    check(EmptyList);
    machine.addTrack("a.mp3", 10);
    check(kind == AudioLayout ? AudioTracks : Mp3Tracks);
  }
  machine.click("mnuFileClose");
  check(NoLayout);
}

TEST_CASE("Any kind of layout but MP3 counts as audio") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.mod().LayoutType = 0;
  UpdateCommandStates(machine.session());
  checkColumn(machine, AudioTracks);
}

}  // namespace trackloom::words
