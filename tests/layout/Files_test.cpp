#include "layout/frmFiles.h"

#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "runtime/Files.h"
#include "runtime/Text.h"

namespace trackloom {

using fakes::Machine;

namespace {

/// A machine with a layout of the kind and some folders of files.
class Picker : public Machine {
 public:
  explicit Picker(std::int16_t kind) {
    startQuietly();
    newLayout(kind);
    for (const char* name : {"mixed/b.mp3", "mixed/01 z.MP3", "mixed/a.wav", "mixed/notes.txt"}) makeTrack(name, 100);
    makeTrack("waves/x.wav", 100);
    std::filesystem::create_directories(folder / "music/empty");
    std::filesystem::create_directories(folder / "music/mixed/folder.mp3");
  }

  void pick(std::function<void(frmFiles&)> script) {
    desk.expectForm<frmFiles>("frmFiles", std::move(script));
    click("AddFiles");
  }
  std::string music(const std::string& name) const { return folder / ("music/" + name); }
};

/// The home folder of the process, another for as long as this lives.
class TemporaryHome {
 public:
  explicit TemporaryHome(const std::string& folder) { ::setenv("HOME", folder.c_str(), 1); }
  ~TemporaryHome() { ::setenv("HOME", before_.c_str(), 1); }
  TemporaryHome(const TemporaryHome&) = delete;
  TemporaryHome& operator=(const TemporaryHome&) = delete;

 private:
  const std::string before_ = HomeFolder().text;
};

std::string namesOf(const frmFiles& form) {
  std::string names;
  for (int row = 1; row <= form.ListView1.Count(); ++row) names += form.ListView1.Item(row).Text + ";";
  return names;
}

}  // namespace

TEST_CASE("E062: The list has the MP3 files before the WAV files, each sorted by name, with sizes and a total") {
  Picker machine(AudioLayout);
  machine.pick([&](frmFiles& form) {
    CHECK(form.caption == std::string("File Selection"));
    CHECK_FALSE(form.cmdOK.Enabled);
    form.FT1.choose(machine.music("mixed"));
    CHECK(namesOf(form) == "01 z.MP3;b.mp3;a.wav;");
    CHECK(form.ListView1.SubItem(1, 1) == "1 Bytes");
    CHECK(form.StatusBar1.PanelText(1) == "3 Files, 3 Bytes");
    CHECK(form.ListView1.SelectedRow() == 1);
    CHECK(form.ListView1.CheckedCount() == 0);
    CHECK(form.cmdOK.Enabled);
    form.cmdCancel.click();
  });
}

TEST_CASE("E063: An MP3 layout lists no WAV files, so a folder of them alone is an empty list") {
  Picker machine(Mp3Layout);
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("waves"));
    CHECK(form.ListView1.Count() == 0);
    CHECK_FALSE(form.cmdOK.Enabled);
    CHECK(form.StatusBar1.PanelText(1).empty());
    form.FT1.choose(machine.music("mixed"));
    CHECK(namesOf(form) == "01 z.MP3;b.mp3;");
    form.cmdCancel.click();
  });
}

TEST_CASE("E061: An empty folder empties the list, leaves the old words and buttons, and adds nothing but a mark") {
  Picker machine(AudioLayout);
  machine.addTrack("kept.mp3", 5);
  machine.mod().LayoutSaved = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.FT1.choose(machine.music("empty"));
    CHECK(form.ListView1.Count() == 0);
    CHECK(form.StatusBar1.PanelText(1) == "3 Files, 3 Bytes");
    CHECK(form.cmdCheckAll.Enabled);
    CHECK(form.cmdClearAll.Enabled);
    CHECK(form.cmdOK.Enabled);
    form.cmdOK.click();
  });
  CHECK(machine.window().ListView1.Count() == 1);
  CHECK_FALSE(machine.mod().LayoutSaved);
}

TEST_CASE("Add Checked takes the checked rows in order, remembers the folder and selects the first row") {
  Picker machine(AudioLayout);
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.cmdCheckAll.click();
    CHECK(form.ListView1.CheckedCount() == 3);
    form.cmdClearAll.click();
    CHECK(form.ListView1.CheckedCount() == 0);
    form.ListView1.check(1, true);
    form.ListView1.check(3, true);
    form.cmdOK.click();
  });
  ListView& listing = machine.window().ListView1;
  REQUIRE(listing.Count() == 2);
  CHECK(listing.Item(1).Text == "01 z.MP3");
  CHECK(listing.Item(2).Text == "a.wav");
  CHECK(listing.SelectedRow() == 1);
  CHECK(RTrim(machine.mod().Options.LastFolder) == machine.music("mixed") + "/");
  CHECK(machine.window().Progress1.Text == std::string("500 Blocks of 359,849 Blocks  (0% of CD Used)"));
  CHECK(machine.enabled("Record"));

  machine.pick([&](frmFiles& form) {
    CHECK(form.FT1.SelectedFolder() == machine.music("mixed"));
    CHECK(form.ListView1.Count() == 3);
    form.cmdCancel.click();
  });
}

TEST_CASE("A LastFolder that has vanished leaves the tree with nothing selected") {
  Picker machine(AudioLayout);
  machine.mod().Options.setLastFolder("/no/such/folder/");
  machine.pick([](frmFiles& form) {
    CHECK(form.FT1.SelectedFolder().empty());
    CHECK(form.ListView1.Count() == 0);
    form.cmdCancel.click();
  });
}

TEST_CASE("The home folder as LastFolder is listed like any other") {
  Picker machine(AudioLayout);
  const TemporaryHome home(machine.music("mixed"));
  machine.mod().Options.setLastFolder(HomeFolder().text + "/");
  machine.pick([](frmFiles& form) {
    CHECK(form.FT1.SelectedFolder() == HomeFolder().text);
    CHECK(form.ListView1.Count() == 3);
    form.cmdCancel.click();
  });
}

TEST_CASE("A slow folder's rows come one by one, the MP3 files before the WAV files, and its totals at the end") {
  Picker machine(AudioLayout);
  machine.folders.slow = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    CHECK(form.ListView1.Count() == 0);
    machine.folders.step();
    CHECK(namesOf(form) == "01 z.MP3;");
    CHECK(form.ListView1.SubItem(1, 1) == "");
    CHECK_FALSE(form.cmdOK.Enabled);
    machine.folders.step();
    CHECK(form.ListView1.SubItem(1, 1) == "1 Bytes");
    CHECK(form.cmdOK.Enabled);
    CHECK(form.ListView1.SelectedRow() == 0);
    machine.folders.step(4);
    CHECK(namesOf(form) == "01 z.MP3;b.mp3;a.wav;");
    CHECK(form.StatusBar1.PanelText(1) == "");
    machine.folders.step();
    CHECK(form.StatusBar1.PanelText(1) == "3 Files, 3 Bytes");
    CHECK(form.ListView1.SelectedRow() == 1);
    form.cmdCancel.click();
  });
}

TEST_CASE("What a slow folder still owes is dropped when another one is chosen") {
  Picker machine(AudioLayout);
  machine.folders.slow = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    machine.folders.step(2);
    form.FT1.choose(machine.music("waves"));
    CHECK(form.ListView1.Count() == 0);
    machine.folders.step(100);
    CHECK(namesOf(form) == "x.wav;");
    CHECK(form.StatusBar1.PanelText(1) == "1 Files, 1 Bytes");
    form.cmdCancel.click();
  });
}

TEST_CASE("Add Checked takes what is checked of a slow folder, and asks it no more") {
  Picker machine(AudioLayout);
  machine.folders.slow = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    machine.folders.step(3);
    form.cmdCheckAll.click();
    machine.pump.onPump = [&] { machine.folders.step(100); };
    form.cmdOK.click();
    CHECK(form.ListView1.Count() == 2);
  });
  CHECK(machine.window().ListView1.Count() == 2);
  CHECK(RTrim(machine.mod().Options.LastFolder) == machine.music("mixed") + "/");
}

TEST_CASE("A dialog that is cancelled hears no more of its folder, nor does the next one") {
  Picker machine(AudioLayout);
  machine.folders.slow = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.cmdCancel.click();
  });
  machine.pick([&](frmFiles& form) {
    machine.folders.step(100);
    CHECK(form.ListView1.Count() == 0);
    form.cmdCancel.click();
  });
}

TEST_CASE("A LastFolder that answers late does not take the place of the folder that was chosen meanwhile") {
  Picker machine(AudioLayout);
  machine.mod().Options.setLastFolder(machine.music("mixed") + "/");
  machine.folders.slow = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("waves"));
    machine.folders.step(100);
    CHECK(form.FT1.SelectedFolder() == machine.music("waves"));
    CHECK(namesOf(form) == "x.wav;");
    form.cmdCancel.click();
  });
  machine.pick([&](frmFiles& form) {
    CHECK(form.FT1.SelectedFolder().empty());
    machine.folders.step();
    CHECK(form.FT1.SelectedFolder() == machine.music("mixed"));
    form.cmdCancel.click();
  });
}

TEST_CASE("The row that the user goes to while a folder is listed stays selected") {
  Picker machine(AudioLayout);
  machine.folders.slow = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    machine.folders.step(4);
    form.ListView1.SelectRow(2);
    machine.folders.step(100);
    CHECK(form.ListView1.SelectedRow() == 2);
    form.cmdCancel.click();
  });
}

TEST_CASE("A folder that fails behind one with files leaves the buttons on") {
  Picker machine(AudioLayout);
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.FT1.choose(machine.music("gone"));
    CHECK(form.ListView1.Count() == 0);
    CHECK(form.StatusBar1.PanelText(1) == "3 Files, 3 Bytes");
    CHECK(form.cmdOK.Enabled);
    form.cmdCancel.click();
  });
}

TEST_CASE("Too big ends the batch, closes the dialog and keeps what was added before, without the selection") {
  Picker machine(AudioLayout);
  machine.engines.stage.disc->freeAudio = 600;
  machine.newLayout(AudioLayout);
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.cmdCheckAll.click();
    machine.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  CHECK(machine.window().ListView1.Count() == 2);
  CHECK(machine.window().ListView1.SelectedRow() == 0);
  CHECK_FALSE(machine.mod().LayoutSaved);
}

TEST_CASE("E065: A drop takes MP3 and WAV files whatever their case, and passes over all else without a word") {
  Picker machine(AudioLayout);
  ListView& listing = machine.window().ListView1;
  listing.dropFiles({machine.music("mixed/notes.txt"), machine.music("mixed/01 z.MP3"), machine.music("waves/x.wav"),
                     machine.music("empty")});
  listing.dropFiles({machine.makeTrack("mixed/last.mP3", 10), machine.makeTrack("waves/y.Wav", 10)});
  REQUIRE(listing.Count() == 4);
  CHECK(listing.Item(3).Text == "last.mP3");
  CHECK(listing.Item(4).Text == "y.Wav");
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("E065: A WAV file dropped on an MP3 layout makes no row and no words, but the limit is tested") {
  Picker machine(Mp3Layout);
  ListView& listing = machine.window().ListView1;
  listing.dropFiles({machine.music("waves/x.wav")});
  CHECK(listing.Count() == 0);
  CHECK(machine.desk.boxes.empty());

  machine.window().Progress1.Maximum = 100;
  machine.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
  listing.dropFiles({machine.music("waves/x.wav")});
}

TEST_CASE("Nothing can be dropped while no layout is open") {
  Machine machine;
  machine.startQuietly();
  machine.addTrack("a.mp3", 10);
  CHECK(machine.window().ListView1.Count() == 0);
}

TEST_CASE("A file that goes before its length is known ends the listing with its bare row") {
  Picker machine(AudioLayout);
  machine.pick([&](frmFiles& form) {
    const Connection watch = form.ListView1.listChanged.connect([&](const ListChange& change) {
      if (change.kind == ListChange::Kind::Inserted) std::filesystem::remove(machine.music("mixed/b.mp3"));
    });
    form.FT1.choose(machine.music("mixed"));
    CHECK(namesOf(form) == "01 z.MP3;b.mp3;");
    CHECK(form.ListView1.SubItem(1, 1) == "1 Bytes");
    CHECK(form.ListView1.SubItem(2, 1) == "");
    CHECK(form.StatusBar1.PanelText(1) == "");
    CHECK_FALSE(form.cmdOK.Enabled);
    form.cmdCancel.click();
  });
}

TEST_CASE("The sizes stand at the right, and the marks of all buttons follow the first folder that has files") {
  Picker machine(AudioLayout);
  machine.pick([&](frmFiles& form) {
    CHECK_FALSE(form.ListView1.columns()[0].rightAligned);
    CHECK(form.ListView1.columns()[1].rightAligned);
    form.FT1.choose(machine.music("empty"));
    CHECK_FALSE(form.cmdCheckAll.Enabled);
    CHECK_FALSE(form.cmdClearAll.Enabled);
    CHECK_FALSE(form.cmdOK.Enabled);
    CHECK(form.StatusBar1.PanelText(1).empty());
    form.FT1.choose(machine.music("waves"));
    CHECK(form.cmdCheckAll.Enabled);
    CHECK(form.cmdClearAll.Enabled);
    CHECK(form.cmdOK.Enabled);
    CHECK(form.ListView1.SelectedRow() == 1);
    CHECK(form.StatusBar1.PanelText(1) == "1 Files, 1 Bytes");
    form.cmdCancel.click();
  });
}

TEST_CASE("Each folder is counted anew, in the signs of the user") {
  Picker machine(AudioLayout);
  machine.session().ports.separators = {".", ","};
  machine.folder.write("music/large/a.mp3", std::string(1152, 'x'));
  for (int i = 0; i < 1000; ++i) machine.folder.write("music/many/" + std::to_string(i) + ".wav", "");
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("many"));
    CHECK(form.StatusBar1.PanelText(1) == "1.000 Files, 0 Bytes");
    form.FT1.choose(machine.music("large"));
    CHECK(form.StatusBar1.PanelText(1) == "1 Files, 1,13 KB");
    CHECK(form.ListView1.SubItem(1, 1) == "1,13 KB");
    form.cmdCancel.click();
  });
}

TEST_CASE("The dialog is hidden before window events run and before the first track comes, and is gone at the end") {
  Picker machine(AudioLayout);
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.cmdCheckAll.click();
    std::vector<int> rowsAtPump;
    machine.pump.onPump = [&] {
      CHECK_FALSE(form.visible());
      CHECK_FALSE(form.closed());
      rowsAtPump.push_back(machine.window().ListView1.Count());
    };
    form.cmdOK.click();
    machine.pump.onPump = {};
    CHECK(rowsAtPump == std::vector<int>{0, 1, 2, 3});
    CHECK(form.closed());
  });
}

TEST_CASE("E064: Add Checked with no row checked marks a listing with rows and remembers the folder") {
  Picker machine(AudioLayout);
  machine.addTrack("kept.mp3", 5);
  machine.addTrack("second.mp3", 5);
  machine.window().ListView1.SelectRow(2);
  machine.mod().LayoutSaved = true;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.cmdOK.click();
  });
  CHECK(machine.window().ListView1.Count() == 2);
  CHECK(machine.window().ListView1.SelectedRow() == 1);
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK(RTrim(machine.mod().Options.LastFolder) == machine.music("mixed") + "/");
}

TEST_CASE("Add Checked with a single row adds it and selects it, and marks no empty listing") {
  Picker machine(AudioLayout);
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("waves"));
    form.cmdOK.click();
  });
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.mod().LayoutSaved);
  CHECK(RTrim(machine.mod().Options.LastFolder) == machine.music("waves") + "/");
  machine.pick([&](frmFiles& form) {
    form.ListView1.check(1, true);
    form.cmdOK.click();
  });
  CHECK(machine.window().ListView1.Count() == 1);
  CHECK(machine.window().ListView1.SelectedRow() == 1);
  CHECK(machine.window().ListView1.SubItem(1, 1) == machine.music("waves") + "/");
}

TEST_CASE("Cancel leaves the last folder as it was") {
  Picker machine(AudioLayout);
  const std::string before = machine.mod().Options.LastFolder;
  machine.pick([&](frmFiles& form) {
    form.FT1.choose(machine.music("mixed"));
    form.cmdCheckAll.click();
    form.cmdCancel.click();
  });
  CHECK(machine.mod().Options.LastFolder == before);
  CHECK(machine.window().ListView1.Count() == 0);
}

TEST_CASE("E066: A drop that overflows keeps what came before, looks at nothing behind it, and tells the new totals") {
  Picker machine(AudioLayout);
  machine.engines.stage.disc->freeAudio = 600;
  machine.newLayout(AudioLayout);
  std::vector<std::string> paths;
  for (const char* name : {"1.mp3", "2.mp3", "3.mp3", "4.mp3"}) paths.push_back(machine.makeTrack(name, 100));
  machine.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
  machine.mod().LayoutSaved = true;
  machine.window().ListView1.dropFiles(paths);
  CHECK(machine.window().ListView1.Count() == 2);
  CHECK(machine.cdr1().audioQueue.size() == 2);
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK(machine.window().ListView1.SelectedRow() == 0);
  CHECK(machine.window().Progress1.Text == std::string("500 Blocks of 600 Blocks  (83% of CD Used)"));
}

TEST_CASE("A drop tells the commands before the meter") {
  Picker machine(AudioLayout);
  bool meterChanged = false;
  const Connection watch = machine.window().Progress1.changed.connect([&] {
    meterChanged = true;
    CHECK(machine.enabled("Delete"));
  });
  machine.addTrack("a.mp3", 10);
  CHECK(meterChanged);
}

TEST_CASE("A drop that leaves the listing empty leaves the meter alone, though its file goes on counting") {
  Picker machine(Mp3Layout);
  machine.engines.stage.disc->freeData = 1000;
  machine.newLayout(Mp3Layout);
  machine.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
  machine.window().ListView1.dropFiles({machine.makeTrack("big.mp3", 900)});
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.cdr1().DataQueueBlocks() == 900);
  CHECK(machine.window().Progress1.Text == std::string("0 Blocks of 1,000 Blocks  (0% of CD Used)"));
  CHECK(machine.mod().LayoutSaved);
}

}  // namespace trackloom
