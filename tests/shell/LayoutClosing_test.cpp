#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "layout/frmNewOption.h"
#include "layout/frmOpenLayout.h"

namespace trackloom {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// A machine with an unsaved audio layout of one track.
class Unsaved : public Machine {
 public:
  Unsaved() {
    startQuietly();
    newLayout(AudioLayout);
    addTrack("a.mp3", 1000);
    engines.stage.take();
    desk.transcript.clear();
  }
  void giveFile() {
    mod().LayoutHasFile = true;
    mod().LayoutFileName = "Mix.mixl";
  }
  /// Announces the dialog that the command goes on with, which is left at once.
  void expectDialogOf(const std::string& command) {
    if (command == "New")
      desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) { form.cmdCancel.click(); });
    if (command == "Open")
      desk.expectForm<frmOpenLayout>("frmOpenLayout", [](frmOpenLayout& form) { form.cmdCancel.click(); });
  }
};

}  // namespace

TEST_CASE("Yes at the question of New, Open and Close saves a layout that has a file, without asking for a name") {
  const std::string command = GENERATE("New", "Open", "mnuFileClose");
  Unsaved machine;
  machine.giveFile();
  machine.desk.expectBox("Save Layout", BoxAnswer::Yes);
  machine.expectDialogOf(command);
  machine.click(command);
  CHECK(machine.desk.finished());
  CHECK(machine.desk.boxes.at(0).buttons == BoxButtons::YesNo);
  CHECK(machine.folder.read("Layouts/Mix.mixl") ==
        "\"Audio\"\r\n1\r\n\"00:15:25\"\r\n\"" + machine.folder.path() + "/music/a.mp3\"\r\n");
  CHECK(machine.mod().LayoutSaved);
  CHECK(machine.window().ListView1.Count() == 0);
}

TEST_CASE("Yes at the exit question saves a layout that has a file, without asking for a name") {
  Unsaved machine;
  machine.giveFile();
  machine.desk.expectBox("Save Layout", BoxAnswer::Yes);
  CHECK(machine.close() == 0);
  CHECK(machine.desk.finished());
  CHECK(machine.folder.has("Layouts/Mix.mixl"));
}

TEST_CASE("Only the value 1 of PromptSave asks before a layout is dropped") {
  const int value = GENERATE(-32768, -1, 0, 2, 257, 32767);
  const std::string command = GENERATE("New", "Open", "mnuFileClose", "mnuFileExit");
  Unsaved machine;
  machine.mod().Options.PromptSave = static_cast<std::int16_t>(value);
  machine.expectDialogOf(command);
  CHECK(machine.endOf([&] { machine.click(command); }).has_value() == (command == "mnuFileExit"));
  CHECK(machine.desk.boxes.empty());
  CHECK(std::filesystem::is_empty(machine.folder / "Layouts"));
}

TEST_CASE("An empty layout that has a name is asked about, and one without is not") {
  const bool named = GENERATE(true, false);
  const std::string command = GENERATE("New", "Open", "mnuFileClose", "mnuFileExit");
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.mod().LayoutSaved = false;
  if (named) machine.mod().LayoutFileName = "Mix.mixl";
  if (named) machine.desk.expectBox("Save Layout", BoxAnswer::No);
  if (command == "New") machine.desk.expectForm<Form>("frmNewOption", [](Form& form) { form.closeBox(); });
  if (command == "Open") machine.desk.expectForm<Form>("frmOpenLayout", [](Form& form) { form.closeBox(); });
  machine.endOf([&] { machine.click(command); });
  CHECK(machine.desk.finished());
  CHECK(machine.desk.boxes.size() == (named ? 1 : 0));
}

TEST_CASE("A closed layout empties the audio queue and then the data queue before it looks at the disc") {
  Unsaved machine;
  machine.mod().LayoutSaved = true;
  machine.click("mnuFileClose");
  CHECK(machine.engines.stage.take() == Lines{"CDR1.ClearAudioQueue", "CDR1.ClearDataQueue", "CDR1.MediaLoaded"});
}

TEST_CASE("A new layout empties the data queue and then the audio queue before it looks at the disc") {
  Machine machine;
  machine.startQuietly();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    machine.engines.stage.take();
    form.cmdOK.click();
    CHECK(machine.engines.stage.take() ==
          Lines{"CDR1.ClearDataQueue", "CDR1.ClearAudioQueue", "CDR1.MediaLoaded", "CDR1.MediaLoaded"});
  });
  machine.click("New");
  CHECK(machine.desk.finished());
}

TEST_CASE("A closed layout leaves nothing of itself in the window") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Machine machine;
  machine.startQuietly();
  machine.newLayout(kind);
  machine.addTrack("a.mp3", 1000);
  machine.mod().LayoutHasFile = true;
  machine.mod().LayoutFileName = "Mix.mixl";
  machine.mod().Options.PromptSave = 0;
  const int closedBefore = machine.session().batches.layoutsClosed;
  REQUIRE(machine.window().Progress1.Value == 1150);
  machine.click("mnuFileClose");
  ListingWindow& window = machine.window();
  CHECK(window.ListView1.Count() == 0);
  CHECK_FALSE(window.ListView1.Enabled);
  CHECK(window.ListView1.columns().size() == 3);
  CHECK(window.panel1.Text == std::string());
  CHECK(window.panel2.Text == std::string("ACME Writer (D:)"));
  CHECK(window.panel3.Text == std::string());
  CHECK(window.Progress1.Text == std::string());
  CHECK(window.Progress1.Value == 0);
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK_FALSE(machine.mod().LayoutHasFile);
  CHECK(machine.mod().LayoutFileName.empty());
  CHECK(machine.mod().LayoutSaved);
  CHECK(machine.mod().LayoutType == kind);
  CHECK_FALSE(machine.enabled("AddFiles"));
  CHECK(machine.session().batches.layoutsClosed == closedBefore + 1);
  machine.newLayout(kind);
  CHECK(window.ListView1.Enabled);
}

TEST_CASE("The exit takes the figures of the layout away, and leaves the drive its name") {
  Unsaved machine;
  machine.mod().LayoutSaved = true;
  REQUIRE(machine.close() == 0);
  CHECK(machine.window().panel1.Text == std::string());
  CHECK(machine.window().panel2.Text == std::string("ACME Writer (D:)"));
  CHECK(machine.window().panel3.Text == std::string());
  CHECK(machine.window().Progress1.Text == std::string());
  CHECK(machine.window().Progress1.Value == 0);
}

}  // namespace trackloom
