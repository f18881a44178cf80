#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "layout/frmNewOption.h"
#include "layout/frmSave.h"

namespace trackloom {

using fakes::Machine;

namespace {

constexpr const char* NoMediaText =
    "No media is currently loaded in the selected CD Recording Drive.  In order for Trackloom to track total time and "
    "available space a CD needs to be inserted.\r\n\r\nPlease insert a new CDR disc into the selected CD Recording "
    "Drive "
    "and click OK when the disc is ready, otherwise click Cancel to cancel the current operation.";

}  // namespace

TEST_CASE("A new layout of each kind opens with its texts, its columns and an empty enabled list") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  CHECK(machine.mod().LayoutOpen);
  CHECK(machine.mod().LayoutType == AudioLayout);
  CHECK(machine.window().panel1.Text == std::string("Standard Audio CD (JOLIET)"));
  CHECK(machine.window().ListView1.Enabled);
  CHECK(machine.window().ListView1.columns().size() == 3);
  CHECK(machine.window().Progress1.Text == std::string("0 Blocks of 359,849 Blocks  (0% of CD Used)"));
  CHECK(machine.window().panel3.Text == std::string("Layout Time:  00:00:00 - Disc Time:  79:57:74 "));

  machine.newLayout(Mp3Layout);
  CHECK(machine.mod().LayoutType == Mp3Layout);
  CHECK(machine.window().panel1.Text == std::string("MP3 Data CD (JOLIET)"));
  REQUIRE(machine.window().ListView1.columns().size() == 4);
  CHECK(machine.window().ListView1.columns()[3].text == "CD Folder");
  CHECK(machine.window().ListView1.columns()[3].rightAligned);
  CHECK(machine.window().panel3.Text == std::string("Layout Size:  0 Bytes - Disc Size:  702.83 MB "));
}

TEST_CASE("The dialog has its texts, the audio style chosen, and the start-up box only at start-up") {
  Machine machine;
  machine.start();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) {
    CHECK(form.caption == std::string("Select Option"));
    CHECK(form.optStandard.selected());
    CHECK(form.chkNoShow.Visible);
    CHECK_FALSE(form.chkNoShow.Value);
    form.cmdCancel.click();
  });
  machine.activate();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) {
    CHECK_FALSE(form.chkNoShow.Visible);
    form.chkNoShow.click();
    CHECK_FALSE(form.chkNoShow.Value);
    form.cmdCancel.click();
  });
  machine.click("New");
}

TEST_CASE("E059: Choosing MP3 twice in a row has the folder column once") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  machine.newLayout(Mp3Layout);
  REQUIRE(machine.window().ListView1.columns().size() == 4);
  CHECK(machine.window().ListView1.columns()[3].text == "CD Folder");
  machine.newLayout(AudioLayout);
  CHECK(machine.window().ListView1.columns().size() == 3);
}

TEST_CASE("E056: The marker stands even when the user then refuses the disc, and the next start shows no dialog") {
  Machine machine;
  machine.engines.stage.disc.reset();
  machine.start();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    form.chkNoShow.click();
    machine.desk.expectBox("No Media", BoxAnswer::Cancel);
    form.cmdOK.click();
  });
  machine.activate();
  CHECK(machine.desk.lastBox().text == NoMediaText);
  CHECK(machine.desk.lastBox().buttons == BoxButtons::OkCancel);
  CHECK(machine.desk.lastBox().icon == BoxIcon::Exclamation);
  CHECK(machine.folder.has("NoShow.dat"));
  CHECK(std::filesystem::file_size(machine.folder / "NoShow.dat") == 0);
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK_FALSE(machine.window().ListView1.Enabled);
  CHECK(machine.window().panel1.Text == std::string());
  machine.start();
  machine.activate();
  CHECK(machine.desk.finished());
}

TEST_CASE("E057: A start with the marker has no layout open and a disabled list") {
  Machine machine;
  machine.folder.write("NoShow.dat", "");
  machine.start();
  machine.activate();
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK_FALSE(machine.window().ListView1.Enabled);
  CHECK(machine.window().ListView1.columns().size() == 3);
  CHECK_FALSE(machine.enabled("AddFiles"));
}

TEST_CASE("E058: Without the option of asking, New gives a changed layout up without a question") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 100);
  REQUIRE_FALSE(machine.mod().LayoutSaved);
  machine.mod().Options.PromptSave = 0;
  machine.newLayout(AudioLayout);
  CHECK(machine.desk.boxes.empty());
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.cdr1().audioQueue.empty());
  CHECK(machine.mod().LayoutOpen);
  CHECK_FALSE(machine.mod().LayoutHasFile);
  CHECK(machine.mod().LayoutFileName.empty());
}

TEST_CASE("OK on an empty drive asks again at once, until a disc is there") {
  Machine machine;
  machine.startQuietly();
  machine.engines.stage.disc.reset();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    for (int i = 0; i < 3; ++i) machine.desk.expectBox("No Media", BoxAnswer::Ok);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
      if (machine.desk.boxes.size() == 3) machine.engines.stage.disc = fakes::FakeDisc{};
    };
    form.cmdOK.click();
  });
  machine.click("New");
  CHECK(machine.mod().LayoutOpen);
  CHECK(machine.desk.finished());
}

TEST_CASE("E060: No at the save question and Cancel after New leave no layout, and the changed one is gone") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 100);
  machine.desk.expectBox("Save Layout", BoxAnswer::No);
  machine.desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) { form.cmdCancel.click(); });
  machine.click("mnuFileNew");
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.window().Progress1.Text == std::string());
  CHECK(machine.window().panel3.Text == std::string());
  CHECK_FALSE(machine.window().ListView1.Enabled);
  CHECK(std::filesystem::is_empty(machine.folder / "Layouts"));
}

TEST_CASE("A layout is saved with its paths, and asks before it overwrites") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 100);
  machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
    CHECK_FALSE(form.cmdOK.Enabled);
    form.txtName.type("   ");
    CHECK_FALSE(form.cmdOK.Enabled);
    form.txtName.type("a/b");
    machine.desk.expectBox("Layout Name", BoxAnswer::Ok);
    form.cmdOK.click();
    CHECK(form.visible());
    form.txtName.type(" My Mix ");
    form.cmdOK.click();
  });
  machine.click("mnuFileSave");
  const std::string text = machine.folder.read("Layouts/My Mix.mixl");
  CHECK(text == "\"Audio\"\r\n1\r\n\"00:03:25\"\r\n\"" + machine.folder.path() + "/music/a.mp3\"\r\n");
  CHECK(machine.mod().LayoutSaved);
  CHECK(machine.mod().LayoutFileName == "My Mix.mixl");

  machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
    CHECK(form.txtName.Text == std::string("My Mix"));
    machine.desk.expectBox("Overwrite Layout", BoxAnswer::Cancel);
    form.cmdOK.click();
    CHECK(form.visible());
    form.cmdCancel.click();
  });
  machine.click("mnuFileSaveAs");
  CHECK(machine.folder.read("Layouts/My Mix.mixl") == text);
}

TEST_CASE("A layout that cannot be written ends the process with the error's number") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 100);
  std::filesystem::remove_all(machine.folder / "Layouts");
  machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
    form.txtName.type("x");
    machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  CHECK(machine.endOf([&] { machine.click("mnuFileSave"); }) == 1);
  CHECK(machine.desk.lastBox().text ==
        "Run-time error '76':\r\n\r\nPath not found\r\n\r\nThe open layout was saved as 'Rescued layout 1'.");
}

TEST_CASE("A new audio layout behind an MP3 layout is in no order but its own, and counts its tracks from 1") {
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.PromptSave = 0;
  machine.newLayout(AudioLayout);
  machine.addTrack("x.mp3", 10);
  machine.newLayout(Mp3Layout);
  REQUIRE(machine.window().ListView1.Sorted());
  machine.newLayout(AudioLayout);
  CHECK(machine.mod().NextTrackNumber == 1);
  for (const char* name : {"b.mp3", "a.mp3"}) machine.addTrack(name, 10);
  CHECK(machine.window().ListView1.Item(1).Text == "b.mp3");
  CHECK(machine.cdr1().audioQueue.at(1).number == 2);
}

TEST_CASE("A new MP3 layout follows the option of sorting") {
  for (const auto& [mode, first] :
       std::vector<std::pair<std::int16_t, std::string>>{{0, "a.mp3"}, {1, "b.mp3"}, {2, "b.mp3"}}) {
    Machine machine;
    machine.startQuietly();
    machine.mod().Options.SortMode = mode;
    machine.newLayout(Mp3Layout);
    for (const char* name : {"b.mp3", "a.mp3"}) machine.addTrack(name, 10);
    CHECK(machine.window().ListView1.Item(1).Text == first);
    CHECK(machine.window().ListView1.Sorted() == (mode != 2));
  }
}

TEST_CASE(
    "The dialog is hidden while the disc is asked for, and a kind that was clicked last is the one that is taken") {
  Machine machine;
  machine.startQuietly();
  machine.engines.stage.disc.reset();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    form.optMP3.click();
    form.optStandard.click();
    form.optMP3.click();
    machine.desk.expectBox("No Media", BoxAnswer::Ok);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
      CHECK_FALSE(form.visible());
      machine.engines.stage.disc = fakes::FakeDisc{};
      CHECK_FALSE(machine.enabled("AddFiles"));
    };
    form.cmdOK.click();
  });
  machine.click("New");
  CHECK(machine.mod().LayoutType == Mp3Layout);
  CHECK(machine.enabled("AddFiles"));
  CHECK(machine.enabled("mnuToolsErase"));
}

TEST_CASE("Without its tick the dialog makes no marker, and a second tick leaves the marker empty") {
  Machine machine;
  machine.start();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) { form.cmdOK.click(); });
  machine.activate();
  CHECK_FALSE(machine.folder.has("NoShow.dat"));
  machine.start();
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    machine.folder.write("NoShow.dat", "made by hand meanwhile");
    form.chkNoShow.click();
    form.cmdOK.click();
  });
  machine.activate();
  CHECK(machine.folder.read("NoShow.dat").empty());
}

}  // namespace trackloom
