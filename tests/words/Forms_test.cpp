#include <algorithm>
#include <catch2/catch.hpp>
#include <filesystem>

#include "fakes/Machine.h"
#include "model/MainBars.h"
#include "tour/EveryForm.h"
#include "words/Description.h"
#include "words/FormTable.h"

namespace trackloom::words {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// The lines of one that the other has not.
Lines without(const Lines& lines, const Lines& others) {
  Lines rest;
  for (const std::string& line : lines)
    if (std::find(others.begin(), others.end(), line) == others.end()) rest.push_back(line);
  return rest;
}

/// Says line by line what is missing on either side; equal lines may still stand in another order.
void checkSame(const std::string& form, const Lines& stands, const Lines& table) {
  for (const std::string& line : without(stands, table)) FAIL_CHECK(form << " has, and its table has not: " << line);
  for (const std::string& line : without(table, stands)) FAIL_CHECK(form << " has not, and its table has: " << line);
  CHECK(stands == table);
}

/// A machine with an empty layout of the kind, and a help file if need be.
class Office : public Machine {
 public:
  explicit Office(std::int16_t kind = AudioLayout, bool helpFile = true) {
    if (helpFile) folder.write("Trackloom.chm", "help");
    startQuietly();
    newLayout(kind);
  }
};

void checkLoaded(std::int16_t kind, Lines FormTable::*part) {
  for (const FormPlace& place : everyForm()) {
    INFO(place.name << ", loaded, kind " << kind);
    Office machine(kind);
    const Lines designed = describe(*place.design(machine.program()));
    checkSame(place.name, without(describe(place.form(machine.program())), designed), formTable(place.name).*part);
    // A dialog copies its picture and lets go of the form that holds them all.
    CHECK_FALSE(machine.session().frmImages.exists());
  }
}

Button* helpButton(const Form& form) {
  for (Control* control : form.controls())
    if (control->name() == "cmdHelp") return dynamic_cast<Button*>(control);
  return nullptr;
}

/// Shows the form, modally over the main window, and presses its Help, which may bring a box.
void askForHelp(Machine& machine, const FormPlace& place, const std::string& box = "") {
  machine.desk.expectForm<Form>(place.name, [&](Form& form) {
    if (!box.empty()) machine.desk.expectBox(box, BoxAnswer::Ok);
    helpButton(form)->click();
    form.unload();
  });
  place.form(machine.program()).showModal(&machine.window());
}

}  // namespace

TEST_CASE("Every form has a table, and every table a form") {
  Lines forms;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(TRACKLOOM_SOURCE_DIR "/src")) {
    const std::string name = entry.path().stem().string();
    if (entry.path().extension() == ".h" && name.starts_with("frm")) forms.push_back(name);
  }
  std::sort(forms.begin(), forms.end());
  CHECK(forms == formsWithTable());

  Lines listed{"frmImages", "frmListing"};
  for (const FormPlace& place : everyForm()) listed.push_back(place.name);
  std::sort(listed.begin(), listed.end());
  CHECK(listed == forms);
}

TEST_CASE("Every form is designed as its table has it") {
  Machine machine;
  machine.start();
  Program& program = machine.program();
  for (const FormPlace& place : everyForm())
    checkSame(place.name, describe(*place.design(program)), formTable(place.name).designed);
  checkSame("frmImages", describe(*std::make_shared<frmImages>(program.session())), formTable("frmImages").designed);
}

TEST_CASE("The main window is designed as its table has it") {
  Machine machine;
  machine.start();
  CDWriterEvents nobody;
  const ListingWindow window(machine.desk, machine.session().ports, nobody);
  checkSame("frmListing", describe(window), formTable("frmListing").designed);
  const auto tools = mainTools();
  CHECK(std::count_if(tools.begin(), tools.end(), [&](const ToolDesign& design) {
          const Lines lines = describe(window);
          return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.find(" " + design.name + " \"") != std::string::npos;
          });
        }) == static_cast<long>(tools.size()));
}

TEST_CASE("A form that is loaded while an audio layout is open differs from its design as its table has it") {
  checkLoaded(AudioLayout, &FormTable::loadedAudio);
}

TEST_CASE("A form that is loaded while an MP3 layout is open differs from its design as its table has it") {
  checkLoaded(Mp3Layout, &FormTable::loadedMp3);
}

TEST_CASE(
    "Help of each dialog opens the help file at the topic of its table, and no dialog's table has one for nothing") {
  for (const FormPlace& place : everyForm()) {
    INFO(place.name);
    Office machine;
    const long topic = formTable(place.name).topic;
    const bool hasHelp = helpButton(place.form(machine.program())) != nullptr;
    REQUIRE(hasHelp == (topic != 0));
    if (!hasHelp) continue;
    askForHelp(machine, place);
    REQUIRE(machine.help.calls.size() == 1);
    CHECK(machine.help.calls[0].target == machine.folder / "Trackloom.chm>main");
    CHECK(machine.help.calls[0].command == 15);
    CHECK(machine.help.calls[0].data == topic);
    CHECK(machine.help.calls[0].owner == 0);
  }
}

TEST_CASE("Help of the main window opens the help file at its contents, in a window that nobody owns") {
  Office machine;
  for (const char* tool : {"mainHelp", "mnuHelpContents"}) {
    machine.help.calls.clear();
    machine.click(tool);
    REQUIRE(machine.help.calls.size() == 1);
    CHECK(machine.help.calls[0].target == machine.folder / "Trackloom.chm>main");
    CHECK(machine.help.calls[0].command == 1);
    CHECK(machine.help.calls[0].data == 0);
    CHECK(machine.help.calls[0].owner == 0);
  }
}

TEST_CASE("Without the help file each Help says so, and opens nothing") {
  for (const FormPlace& place : everyForm()) {
    if (formTable(place.name).topic == 0) continue;
    INFO(place.name);
    Office machine(AudioLayout, false);
    askForHelp(machine, place, "Trackloom Help");
    CHECK(machine.help.calls.empty());
  }
  Office machine(AudioLayout, false);
  for (const char* tool : {"mainHelp", "mnuHelpContents"}) {
    machine.desk.expectBox("Trackloom Help", BoxAnswer::Ok);
    machine.click(tool);
  }
  CHECK(machine.help.calls.empty());
}

}  // namespace trackloom::words
