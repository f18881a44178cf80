#include <algorithm>
#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "layout/frmFolder.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

/// An MP3 layout of tracks in the root; the option of sorting is that of a first start, by track name.
class FolderMachine : public LayoutMachine {
 public:
  explicit FolderMachine(const Lines& names, std::int16_t sortMode = 0) : LayoutMachine(Mp3Layout) {
    mod().Options.SortMode = sortMode;
    for (const std::string& name : names) addTrack(name, 100);
    mod().LayoutSaved = true;
    engines.stage.take();
  }

  /// Opens the dialog by the command, and confirms it when `script` is done.
  void confirm(const std::function<void(frmFolder&)>& script, const char* command = "ShowAll") {
    desk.expectForm<frmFolder>("frmFolder", [&](frmFolder& form) {
      script(form);
      form.cmdOK.click();
    });
    click(command);
    REQUIRE(desk.finished());
  }

  /// Types a folder for these rows of the dialog.
  void type(const std::vector<int>& rows, const std::string& typed) {
    confirm([&](frmFolder& form) {
      form.ListView1.select(rows);
      form.txtFolder.type(typed);
    });
  }

  Lines folders() {
    Lines all;
    for (int row = 1; row <= window().ListView1.Count(); ++row) all.push_back(window().ListView1.SubItem(row, 3));
    return all;
  }
  Lines names() {
    Lines all;
    for (int row = 1; row <= window().ListView1.Count(); ++row) all.push_back(window().ListView1.Item(row).Text);
    return all;
  }
  /// The disc paths of the files in the queue.
  Lines queued() {
    Lines all;
    for (const auto& [disc, entry] : cdr1().dataQueue.entries())
      if (!entry.folder) all.push_back(disc);
    return all;
  }
};

Lines entriesOf(const ComboBox& box) {
  Lines all;
  for (const auto& item : box.items()) all.push_back(item.text);
  return all;
}

Lines tracksOf(const frmFolder& form) {
  Lines all;
  for (int row = 1; row <= form.ListView1.Count(); ++row) all.push_back(form.ListView1.Item(row).Text);
  return all;
}

}  // namespace

TEST_CASE("E067: A typed folder begins with one separator and ends with none, and may be nested") {
  for (const auto& [typed, folder] : std::vector<std::pair<std::string, std::string>>{
           {"Rock", "\\Rock"}, {"\\Rock\\", "\\Rock"}, {"Rock\\Eighties", "\\Rock\\Eighties"}}) {
    FolderMachine machine({"a.mp3"});
    machine.type({1}, typed);
    CHECK(machine.folders() == Lines{folder});
    CHECK(machine.queued() == Lines{folder + "\\a.mp3"});
    CHECK_FALSE(machine.mod().LayoutSaved);
  }
}

TEST_CASE("E068: Each selected row takes one more separator off the end of what was typed") {
  FolderMachine machine({"a.mp3", "b.mp3"});
  machine.type({1, 2}, "Rock\\\\");
  CHECK(machine.folders() == Lines{"\\Rock\\", "\\Rock"});
}

TEST_CASE("A lone separator is the root's own for the first row, and nothing is left of it for the second") {
  FolderMachine machine({"a.mp3", "b.mp3"});
  machine.type({1, 2}, "\\");
  CHECK(machine.folders() == Lines{"\\", ""});
}

TEST_CASE("A separator alone is typed for the first row, and the second one takes what is chosen") {
  FolderMachine machine({"a.mp3", "b.mp3", "c.mp3"});
  machine.type({3}, "Jazz");
  machine.confirm([](frmFolder& form) {
    form.ListView1.select({1, 2});
    form.cboFolder.choose(1);
    form.txtFolder.type("\\");
  });
  CHECK(machine.folders() == Lines{"\\", "\\Jazz", "\\Jazz"});
  CHECK(machine.queued() == Lines{"\\Jazz\\b.mp3", "\\Jazz\\c.mp3", "\\\\a.mp3"});
}

TEST_CASE("Blanks around what is typed are part of the folder's name") {
  FolderMachine machine({"a.mp3"});
  machine.type({1}, " Rock ");
  CHECK(machine.folders() == Lines{"\\ Rock "});
}

TEST_CASE("E069: No Folder is a folder of the disc when it is typed, and the root when it is chosen") {
  FolderMachine machine({"a.mp3"});
  machine.type({1}, "No Folder");
  CHECK(machine.folders() == Lines{"\\No Folder"});
  CHECK(machine.queued() == Lines{"\\No Folder\\a.mp3"});

  machine.confirm([](frmFolder& form) {
    form.ListView1.select({1});
    CHECK(entriesOf(form.cboFolder) == Lines{"\\No Folder", "No Folder"});
    form.cboFolder.choose(1);
  });
  CHECK(machine.folders() == Lines{"No Folder"});
  CHECK(machine.queued() == Lines{"\\a.mp3"});
}

TEST_CASE("E070: What is typed goes before what is chosen, but blanks count as nothing") {
  FolderMachine machine({"a.mp3", "b.mp3"});
  machine.type({1}, "Old");
  const auto chooseOld = [](frmFolder& form, const std::string& typed) {
    form.ListView1.select({2});
    form.cboFolder.choose(0);
    form.txtFolder.type(typed);
  };
  machine.confirm([&](frmFolder& form) { chooseOld(form, "New"); });
  CHECK(machine.folders() == Lines{"\\Old", "\\New"});
  machine.confirm([&](frmFolder& form) { chooseOld(form, "  "); });
  CHECK(machine.folders() == Lines{"\\Old", "\\Old"});
}

TEST_CASE("E071: A new folder sorts the listing anew where it is sorted by folder, and moves nothing where it is not") {
  FolderMachine byFolder({"a.mp3", "b.mp3"}, 1);
  byFolder.type({1}, "Z");
  CHECK(byFolder.names() == Lines{"b.mp3", "a.mp3"});
  byFolder.type({1}, "ZZ");
  CHECK(byFolder.names() == Lines{"a.mp3", "b.mp3"});
  CHECK(byFolder.folders() == Lines{"\\Z", "\\ZZ"});

  FolderMachine unsorted({"a.mp3", "b.mp3"}, 2);
  unsorted.type({1}, "Z");
  unsorted.type({2}, "A");
  CHECK(unsorted.names() == Lines{"a.mp3", "b.mp3"});
}

TEST_CASE("E072: The long name of an opened layout's track stays in the queue beside its shortened one") {
  const std::string name = std::string(70, 'x') + ".mp3";
  FolderMachine machine({name});
  // An opened layout queues its tracks under their full names.
  machine.cdr1().RemoveDataFile(DiscPath("\\" + std::string(60, 'x') + ".mp3"));
  machine.cdr1().AddDataFile(DiscPath("\\" + name), HostPath(machine.folder / "music/" + name));
  machine.type({1}, "Rock");
  CHECK(machine.queued() == Lines{"\\Rock\\" + std::string(60, 'x') + ".mp3", "\\" + name});
}

TEST_CASE("E073: A folder leaves the queue with its last track, and not with one of two") {
  FolderMachine machine({"a.mp3", "b.mp3"});
  machine.type({1, 2}, "Rock");
  const auto removesRock = [&] {
    const Lines calls = machine.engines.stage.take();
    return std::count(calls.begin(), calls.end(), "CDR1.RemoveDataFile(\\Rock)");
  };
  machine.type({1}, "Jazz");
  CHECK(removesRock() == 0);
  machine.type({2}, "Jazz");
  CHECK(removesRock() == 1);
}

TEST_CASE("The dialog lists folders as they first occur, with the root's word last only where no track has it") {
  FolderMachine machine({"a.mp3", "b.mp3", "c.mp3"});
  machine.type({2}, "Rock");
  machine.type({3}, "rock");
  machine.confirm([](frmFolder& form) {
    CHECK(entriesOf(form.cboFolder) == Lines{"No Folder", "\\Rock", "\\rock"});
    CHECK(form.cboFolder.ListIndex() == -1);
    CHECK(tracksOf(form) == Lines{"a.mp3", "b.mp3", "c.mp3"});
    CHECK(form.ListView1.SelectedRows().empty());
  });
}

TEST_CASE("Only tracks in the root are listed where the command says so, each still standing for its own row") {
  FolderMachine machine({"a.mp3", "b.mp3", "c.mp3"});
  machine.type({2}, "Rock");
  machine.confirm(
      [](frmFolder& form) {
        CHECK(tracksOf(form) == Lines{"a.mp3", "c.mp3"});
        form.ListView1.select({2});
        form.txtFolder.type("Jazz");
      },
      "ShowNoFolder");
  CHECK(machine.folders() == Lines{"No Folder", "\\Rock", "\\Jazz"});
}

TEST_CASE("OK marks the layout as changed without any selection, and Cancel changes nothing") {
  FolderMachine machine({"a.mp3"});
  machine.desk.expectForm<frmFolder>("frmFolder", [](frmFolder& form) {
    form.ListView1.select({1});
    form.txtFolder.type("Rock");
    form.cmdCancel.click();
  });
  machine.click("ShowAll");
  CHECK(machine.folders() == Lines{"No Folder"});
  CHECK(machine.mod().LayoutSaved);
  machine.confirm([](frmFolder&) {});
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK(machine.folders() == Lines{"No Folder"});
}

TEST_CASE("A move takes the file out before it puts it back, and asks for its old folder's removal at the end") {
  FolderMachine machine({"a.mp3", "b.mp3"});
  machine.type({1, 2}, "Rock");
  machine.engines.stage.take();
  machine.type({1, 2}, "Jazz");
  const std::string music = machine.folder / "music/";
  CHECK(machine.engines.stage.take() ==
        Lines{"CDR1.RemoveDataFile(\\Rock\\a.mp3)", "CDR1.AddDataFile(\\Jazz\\a.mp3, " + music + "a.mp3)",
              "CDR1.RemoveDataFile(\\Rock\\b.mp3)", "CDR1.AddDataFile(\\Jazz\\b.mp3, " + music + "b.mp3)",
              "CDR1.RemoveDataFile(\\Rock)", "CDR1.RemoveDataFile(\\Rock)"});
}

TEST_CASE("A folder stays in the queue for any track that is left in it, the first of the listing and the last") {
  for (const int left : {1, 2, 3}) {
    FolderMachine machine({"a.mp3", "b.mp3", "c.mp3"});
    machine.type({1, 2, 3}, "Rock");
    machine.engines.stage.take();
    machine.type(left == 1   ? std::vector<int>{2, 3}
                 : left == 2 ? std::vector<int>{1, 3}
                             : std::vector<int>{1, 2},
                 "Jazz");
    const Lines calls = machine.engines.stage.take();
    CHECK(std::count(calls.begin(), calls.end(), "CDR1.RemoveDataFile(\\Rock)") == 0);
  }
}

TEST_CASE("Tracks that leave two folders take both out of the queue, in the order of their rows") {
  FolderMachine machine({"a.mp3", "b.mp3", "c.mp3"});
  machine.type({1}, "Rock");
  machine.type({2}, "Jazz");
  machine.engines.stage.take();
  machine.confirm([](frmFolder& form) {
    form.ListView1.select({1, 2, 3});
    CHECK(entriesOf(form.cboFolder) == Lines{"\\Rock", "\\Jazz", "No Folder"});
    form.cboFolder.choose(2);
  });
  const Lines calls = machine.engines.stage.take();
  REQUIRE(calls.size() == 8);
  CHECK(calls[6] == "CDR1.RemoveDataFile(\\Rock)");
  CHECK(calls[7] == "CDR1.RemoveDataFile(\\Jazz)");
  CHECK(machine.queued() == Lines{"\\a.mp3", "\\b.mp3", "\\c.mp3"});
}

TEST_CASE(
    "Nothing typed and nothing chosen makes the empty folder, which lies at the root but is no root to the filters") {
  FolderMachine machine({"a.mp3", "b.mp3"});
  machine.confirm([](frmFolder& form) { form.ListView1.select({1}); });
  CHECK(machine.folders() == Lines{"", "No Folder"});
  CHECK(machine.queued() == Lines{"\\a.mp3", "\\b.mp3"});
  machine.confirm([](frmFolder& form) { CHECK(tracksOf(form) == Lines{"b.mp3"}); }, "ShowNoFolder");
  machine.confirm([](frmFolder& form) {
    CHECK(tracksOf(form) == Lines{"a.mp3", "b.mp3"});
    CHECK(entriesOf(form.cboFolder) == Lines{"", "No Folder"});
  });
}

TEST_CASE("The name of the folder that gets the focus is selected whole") {
  FolderMachine machine({"a.mp3"});
  machine.confirm([](frmFolder& form) {
    int selected = 0;
    const Connection watch = form.txtFolder.selectAllRequested.connect([&] { ++selected; });
    form.txtFolder.focus();
    CHECK(selected == 1);
  });
}

TEST_CASE("A folder of the disc goes into the layout's file, and its sort order into the listing at once") {
  FolderMachine machine({"a.mp3", "b.mp3"}, 0);
  machine.mod().Options.SortMode = 1;
  machine.type({1}, "Z");
  CHECK(machine.names() == Lines{"b.mp3", "a.mp3"});
  CHECK(machine.window().ListView1.Sorted());
  CHECK(machine.window().ListView1.SortKey() == 3);
}

TEST_CASE("A refusal of the engine goes unnoticed, and the row shows the new folder all the same") {
  FolderMachine machine({"a.mp3"});
  machine.engines.stage.data.clear();
  machine.type({1}, "Rock");
  CHECK(machine.folders() == Lines{"\\Rock"});
  CHECK(machine.desk.boxes.empty());
}

}  // namespace trackloom
