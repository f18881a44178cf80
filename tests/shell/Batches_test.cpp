#include "model/Batch.h"

#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "layout/frmFiles.h"
#include "layout/frmNewOption.h"
#include "layout/frmOpenLayout.h"
#include "layout/frmSave.h"
#include "model/AddTrack.h"
#include "shell/Commands.h"
#include "writing/frmOptions.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

/// A machine with an audio layout into which four tracks are about to come, and a user who does something when the
/// second of them has.
class Busy : public LayoutMachine {
 public:
  explicit Busy(std::int16_t kind = AudioLayout) : LayoutMachine(kind) {
    for (const char* name : {"a.mp3", "b.mp3", "c.mp3", "d.mp3"}) paths.push_back(makeTrack(name, 100));
    pump.onPump = [this] {
      if (atSecond && window().ListView1.Count() == 2) std::exchange(atSecond, {})();
    };
  }

  Lines paths;
  std::function<void()> atSecond;

  void drop() { window().ListView1.dropFiles(paths); }
  void pick() {
    desk.expectForm<frmFiles>("frmFiles", [&](frmFiles& form) {
      form.FT1.choose(folder / "music");
      form.cmdCheckAll.click();
      form.cmdOK.click();
    });
    click("AddFiles");
  }
  /// Reads the four tracks as those of a layout file, as the command that opens it would.
  void open(Commands& commands) {
    {
      const Batch opening(session(), Batch::Source::LayoutFile);
      for (const std::string& path : paths) {
        const std::string name = SplitPath(session(), path);
        AddTrack(opening, {HostPath(path), mod().PathFolder, name}, LayoutFileTracks);
      }
    }
    commands.runKept();
  }
  int rows() { return window().ListView1.Count(); }
  void expectSaveAs(const std::string& name) {
    desk.expectForm<frmSave>("frmSave", [this, name](frmSave& form) {
      CHECK(rows() == 4);
      form.txtName.type(name);
      form.cmdOK.click();
    });
  }
  void expectNewLayout() {
    desk.expectForm<frmNewOption>("frmNewOption", [](frmNewOption& form) { form.cmdOK.click(); });
  }
  std::string saved(const std::string& name) const { return folder.read("Layouts/" + name + ".mixl"); }
};

/// The count line of a layout file.
std::string countIn(const std::string& layout) {
  const std::size_t first = layout.find("\r\n") + 2;
  return layout.substr(first, layout.find("\r\n", first) - first);
}

}  // namespace

TEST_CASE("While the batch of the file dialog runs, the main window takes no input of any kind") {
  Busy machine;
  machine.addTrack("first.mp3", 10);
  const Lines before = machine.paths;
  machine.pump.onPump = [&] {
    CHECK_FALSE(machine.window().takesInput());
    for (const char* tool : {"New", "Open", "AddFiles", "Delete", "Record", "mnuFileSave", "mnuFileClose",
                             "mnuFileExit", "mnuToolsEject", "mnuToolsOptions", "Ripper", "mnuActionsPlay"})
      machine.click(tool);
    machine.window().ListView1.dropFiles({machine.makeTrack("dropped.mp3", 10)});
    machine.window().ListView1.doubleClick(1);
    machine.window().DockStudio1.openMenu("mnuTools");
    machine.window().closeBox();
  };
  machine.engines.stage.take();
  machine.pick();
  CHECK(machine.desk.finished());
  CHECK(machine.rows() == 5);
  CHECK(machine.opener.orders.empty());
  CHECK(machine.mod().LayoutOpen);
  CHECK(machine.window().takesInput());
  machine.pump.onPump = {};
  machine.desk.expectBox("Remove Track", BoxAnswer::Cancel);
  machine.click("Delete");
}

TEST_CASE("What came during the batch of the file dialog does not come behind it either") {
  Busy machine;
  machine.addTrack("first.mp3", 10);
  machine.atSecond = [&] {
    machine.click("mnuFileSaveAs");
    machine.click("Record");
  };
  machine.pick();
  machine.pump.onPump = {};
  machine.window().ListView1.dropFiles({"/no/layout.txt"});
  CHECK(machine.desk.finished());
}

TEST_CASE("Each row that comes by a dialog or a drop makes the layout unsaved at once") {
  for (const bool picked : {true, false}) {
    Busy machine;
    Lines seen;
    machine.mod().LayoutSaved = true;
    machine.pump.onPump = [&] {
      if (machine.rows() > 0) seen.push_back(machine.mod().LayoutSaved ? "saved" : "unsaved");
      machine.mod().LayoutSaved = true;
    };
    picked ? machine.pick() : machine.drop();
    CHECK(seen == Lines(4, "unsaved"));
    CHECK_FALSE(machine.mod().LayoutSaved);
  }
}

TEST_CASE("An exit in the middle of a drop asks, and its Cancel lets the drop go on") {
  Busy machine;
  machine.mod().LayoutSaved = true;
  machine.desk.expectBox("Save Layout", BoxAnswer::Cancel);
  machine.atSecond = [&] { machine.window().closeBox(); };
  machine.drop();
  CHECK(machine.desk.finished());
  CHECK(machine.rows() == 4);

  Busy other;
  other.mod().LayoutSaved = true;
  other.desk.expectBox("Save Layout", BoxAnswer::No);
  other.atSecond = [&] { other.click("mnuFileExit"); };
  CHECK(other.endOf([&] { other.drop(); }) == 0);
}

TEST_CASE("A layout that is closed in the middle of a drop is closed for the rest of it") {
  Busy machine;
  machine.desk.expectBox("Save Layout", BoxAnswer::No);
  machine.atSecond = [&] { machine.click("mnuFileClose"); };
  machine.drop();
  CHECK(machine.rows() == 0);
  CHECK(machine.cdr1().audioQueue.empty());
  CHECK(machine.mod().LayoutSaved);
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.pump.pumped == 2);
  CHECK(machine.window().panel3.Text == std::string());
}

TEST_CASE("Neither a row nor the end of a drop reaches the layout that is begun in its middle") {
  Busy machine(Mp3Layout);
  const std::string other = machine.makeTrack("other/other.mp3", 50);
  machine.desk.expectBox("Save Layout", BoxAnswer::No);
  std::string folder;
  machine.atSecond = [&] {
    machine.expectNewLayout();
    machine.click("New");
    machine.window().ListView1.dropFiles({other});
    machine.mod().LayoutSaved = true;
    machine.window().Progress1.Text = "as it was";
    machine.engines.stage.take();
    folder = machine.mod().PathFolder;
  };
  machine.drop();
  CHECK(machine.mod().LayoutType == AudioLayout);
  REQUIRE(machine.rows() == 1);
  CHECK(machine.window().ListView1.Item(1).Text == "other.mp3");
  CHECK(machine.mod().LayoutSaved);
  CHECK(machine.window().Progress1.Text == std::string("as it was"));
  CHECK(machine.window().ListView1.SelectedRow() == 0);
  CHECK(machine.engines.stage.take().empty());
  CHECK(machine.mod().PathFolder == folder);
}

TEST_CASE("Commands that use the listing whole wait for the end of a drop, each once and in their order") {
  Busy machine;
  machine.addTrack("first.mp3", 10);
  std::size_t before = 0;
  machine.atSecond = [&] {
    for (const char* tool : {"Record", "mnuFileSaveAs", "mnuActionsRecord", "mnuFileSave", "Record", "mnuFileSaveAs"})
      machine.click(tool);
    before = machine.desk.transcript.size();
    machine.desk.expectForm<frmOptions>("frmOptions", [&](frmOptions& form) {
      CHECK(machine.rows() == 5);
      form.cmdCancel.click();
    });
    machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
      form.txtName.type("Mix");
      form.cmdOK.click();
    });
  };
  machine.drop();
  CHECK(machine.desk.finished());
  CHECK(Lines(machine.desk.transcript.begin() + static_cast<std::ptrdiff_t>(before), machine.desk.transcript.end()) ==
        Lines{"modal frmOptions", "unload frmOptions", "modal frmSave", "unload frmSave"});
  CHECK(countIn(machine.saved("Mix")) == "5");
  CHECK(machine.mod().LayoutSaved);
}

TEST_CASE("A kept command runs behind the drop's own end") {
  Busy machine;
  machine.atSecond = [&] {
    machine.expectSaveAs("Mix");
    machine.click("mnuFileSave");
  };
  machine.drop();
  CHECK(countIn(machine.saved("Mix")) == "4");
  CHECK(machine.saved("Mix").find(machine.mod().LayoutTotalText) != std::string::npos);
  CHECK(machine.mod().LayoutSaved);
  machine.desk.transcript.clear();
  machine.window().ListView1.dropFiles({machine.makeTrack("e.mp3", 1)});
  CHECK(machine.desk.transcript.empty());
}

TEST_CASE("Print and the commands for images wait too") {
  Busy machine(Mp3Layout);
  machine.addTrack("first.mp3", 10);
  REQUIRE(machine.enabled("mnuFileWrite"));
  std::size_t before = 0;
  machine.atSecond = [&] {
    for (const char* tool : {"mnuFileWrite", "mnuActionsCreate", "Print"}) machine.click(tool);
    before = machine.desk.transcript.size();
    machine.engines.stage.disc->status = DiscClosed;
    machine.desk.expectBox("Closed Disc", BoxAnswer::Ok);
    for (const char* form : {"frmISO", "frmReadStatus", "frmPrintList"})
      machine.desk.expectForm<Form>(form, [&](Form& shown) {
        CHECK(machine.rows() == 5);
        shown.closeBox();
      });
  };
  machine.drop();
  CHECK(machine.desk.finished());
  CHECK(machine.desk.transcript.at(before) == "modal frmISO");
}

TEST_CASE("A kept command is dropped when its layout has gone, also when another one is open by then") {
  for (const bool another : {false, true}) {
    Busy machine;
    machine.desk.expectBox("Save Layout", BoxAnswer::No);
    machine.atSecond = [&] {
      machine.click("mnuFileSave");
      if (another) machine.expectNewLayout();
      machine.click(another ? "New" : "mnuFileClose");
    };
    machine.drop();
    CHECK(machine.desk.finished());
    CHECK(machine.mod().LayoutOpen == another);
  }
}

TEST_CASE("A kept command is dropped when its tool is off by then") {
  Busy machine;
  REQUIRE(machine.enabled("mnuFileWrite"));
  machine.atSecond = [&] {
    machine.click("mnuFileWrite");
    machine.engines.stage.disc.reset();
    machine.window().DockStudio1.openMenu("mnuTools");
  };
  machine.drop();
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("A kept command is dropped when the main window is hidden by then") {
  Busy machine;
  machine.addTrack("first.mp3", 10);
  machine.atSecond = [&] {
    machine.click("Record");
    machine.click("mnuFileSaveAs");
    machine.click("Ripper");
  };
  machine.drop();
  CHECK(machine.rows() == 5);
  CHECK(machine.desk.finished());
  CHECK_FALSE(machine.window().visible());
}

TEST_CASE("A kept command that hides the main window leaves none for those behind it") {
  Busy machine;
  machine.addTrack("first.mp3", 10);
  machine.atSecond = [&] {
    machine.click("Record");
    machine.click("mnuFileSaveAs");
    machine.desk.expectForm<frmOptions>("frmOptions", [](frmOptions& form) { form.cmdOK.click(); });
  };
  machine.drop();
  CHECK(machine.mod().WriteActive);
  CHECK(machine.desk.finished());
}

TEST_CASE("What comes in a drop within a drop waits for the outer one") {
  Busy machine;
  const std::string inner = machine.makeTrack("inner/x.mp3", 10);
  std::size_t atInnerEnd = 0;
  machine.atSecond = [&] {
    machine.pump.onPump = [&] { machine.click("mnuFileSave"); };
    machine.window().ListView1.dropFiles({inner});
    atInnerEnd = machine.desk.transcript.size();
    machine.pump.onPump = {};
    machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
      CHECK(machine.rows() == 5);
      form.cmdCancel.click();
    });
  };
  machine.drop();
  CHECK(machine.desk.finished());
  CHECK(machine.desk.transcript.at(atInnerEnd) == "modal frmSave");
}

TEST_CASE("Reading a layout file leaves the layout saved, and lets every command but those of the whole listing in") {
  Busy machine;
  machine.mod().LayoutSaved = true;
  Commands commands(machine.session(), machine.program().forms());
  machine.atSecond = [&] {
    CHECK(machine.mod().LayoutSaved);
    machine.expectSaveAs("Mix");
    commands.dispatch("mnuFileSave");
    commands.dispatch("mnuToolsEject");
  };
  machine.open(commands);
  CHECK(machine.desk.finished());
  CHECK(countIn(machine.saved("Mix")) == "4");
  CHECK_FALSE(machine.engines.stage.disc.has_value());
}

TEST_CASE("A saved layout that is being read can be left at once") {
  Busy machine;
  machine.mod().LayoutSaved = true;
  Commands commands(machine.session(), machine.program().forms());
  machine.atSecond = [&] { commands.dispatch("mnuFileClose"); };
  machine.open(commands);
  CHECK(machine.rows() == 0);
  CHECK(machine.pump.pumped == 2);
}

TEST_CASE("A layout that counts as unsaved is left when it has been read whole") {
  for (const char* tool : {"New", "mnuFileOpen", "mnuFileClose", "mnuFileExit"}) {
    Busy machine;
    machine.mod().LayoutSaved = false;
    Commands commands(machine.session(), machine.program().forms());
    machine.atSecond = [&] {
      commands.dispatch(tool);
      CHECK(machine.rows() == 2);
      CHECK(machine.desk.boxes.empty());
      machine.desk.expectBox("Save Layout", BoxAnswer::Yes);
      machine.expectSaveAs("Mix");
      if (tool == std::string("New")) machine.expectNewLayout();
      if (tool == std::string("mnuFileOpen"))
        machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [](frmOpenLayout& form) { form.cmdCancel.click(); });
    };
    const bool exits = machine.endOf([&] { machine.open(commands); }).has_value();
    CHECK(exits == (tool == std::string("mnuFileExit")));
    CHECK(machine.desk.finished());
    CHECK(countIn(machine.saved("Mix")) == "4");
  }
}

TEST_CASE("Save in the middle of a layout file that opens slowly writes all of its tracks, behind its end") {
  Busy machine;
  machine.drop();
  machine.expectSaveAs("Mix");
  machine.click("mnuFileSave");
  const std::string whole = machine.saved("Mix");
  machine.click("mnuFileClose");

  bool savedInTheMiddle = false;
  machine.atSecond = [&] {
    machine.window().DockStudio1.openMenu("mnuTools");
    REQUIRE(machine.enabled("mnuFileSave"));
    machine.folder.write("Layouts/Mix.mixl", "not yet");
    machine.click("mnuFileSave");
    savedInTheMiddle = machine.saved("Mix") != "not yet";
  };
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [](frmOpenLayout& form) { form.cmdOK.click(); });
  machine.click("mnuFileOpen");
  CHECK_FALSE(savedInTheMiddle);
  CHECK(machine.rows() == 4);
  CHECK(machine.saved("Mix") == whole);
}

TEST_CASE("The close box of the window is an exit that waits in the same way") {
  Busy machine;
  machine.mod().LayoutSaved = false;
  Commands unused(machine.session(), machine.program().forms());
  machine.atSecond = [&] {
    machine.window().closeBox();
    machine.window().closeBox();
    CHECK(machine.desk.boxes.empty());
  };
  machine.open(unused);
  CHECK(machine.rows() == 4);
  machine.desk.expectBox("Save Layout", BoxAnswer::No);
  CHECK(machine.endOf([&] { machine.window().ListView1.dropFiles({"/end/of/the/batch.txt"}); }) == 0);
}

}  // namespace trackloom
