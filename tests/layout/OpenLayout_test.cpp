#include <catch2/catch.hpp>
#include <filesystem>
#include <functional>

#include "fakes/Machine.h"
#include "layout/frmNoAdd.h"
#include "layout/frmOpenLayout.h"
#include "layout/frmSave.h"
#include "writing/frmOptions.h"

namespace trackloom {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

constexpr const char* End = "\r\n";

/// A machine whose layouts are written by hand, not by the program.
class OpeningMachine : public Machine {
 public:
  OpeningMachine() {
    startQuietly();
    mod().Options.PromptSave = 0;
  }

  void layoutFile(const std::string& name, const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + End;
    folder.write("Layouts/" + name + ".mixl", text);
  }
  static std::string quoted(const std::string& text) { return '"' + text + '"'; }

  /// The user chooses the layout in the dialog; `announce` tells what comes behind that.
  void open(
      const std::string& name, const std::function<void()>& announce = [] {}) {
    desk.expectForm<frmOpenLayout>("frmOpenLayout", [=](frmOpenLayout& form) {
      for (int row = 1; row <= form.ListView1.Count(); ++row)
        if (form.ListView1.Item(row).Text == name) form.ListView1.SelectRow(row);
      form.cmdOK.click();
    });
    announce();
    click("Open");
  }
  void expectMissing(const Lines& paths) {
    desk.expectForm<frmNoAdd>("frmNoAdd", [=](frmNoAdd& form) {
      Lines told;
      for (int row = 1; row <= form.List1.Count(); ++row) told.push_back(form.List1.Item(row).Text);
      CHECK(told == paths);
      form.cmdOK.click();
    });
  }

  ListView& list() { return window().ListView1; }
  Lines rows() {
    Lines all;
    for (int row = 1; row <= list().Count(); ++row) all.push_back(list().Item(row).Text);
    return all;
  }
};

Lines rowOf(const ListView& list, int row) {
  Lines cells{list.Item(row).Text};
  cells.insert(cells.end(), list.Item(row).SubItems.begin(), list.Item(row).SubItems.end());
  return cells;
}

}  // namespace

TEST_CASE("E047: A layout name loses the blanks around it and keeps those inside") {
  OpeningMachine machine;
  machine.newLayout(AudioLayout);
  machine.desk.expectForm<frmSave>("frmSave", [](frmSave& form) {
    form.txtName.type("  my mix ");
    form.cmdOK.click();
  });
  machine.click("mnuFileSave");
  CHECK(machine.mod().LayoutFileName == "my mix.mixl");
  CHECK(machine.folder.has("Layouts/my mix.mixl"));
}

TEST_CASE("E048: A name of blanks alone cannot be confirmed") {
  OpeningMachine machine;
  machine.newLayout(AudioLayout);
  machine.desk.expectForm<frmSave>("frmSave", [](frmSave& form) {
    form.txtName.type("   ");
    CHECK_FALSE(form.cmdOK.Enabled);
    form.cmdCancel.click();
  });
  machine.click("mnuFileSave");
  CHECK(machine.mod().LayoutFileName.empty());
}

TEST_CASE("E049: Only the exact word makes an audio layout, any other an MP3 layout") {
  for (const char* word : {"\"audio\"", "\"MP3\"", "\"\"", "what"}) {
    OpeningMachine machine;
    machine.layoutFile("mix", {word, "0", "\"x\""});
    machine.open("mix");
    CHECK(machine.mod().LayoutType == Mp3Layout);
    CHECK(machine.list().columns().size() == 4);
    CHECK(machine.window().panel1.Text == std::string("MP3 Data CD (JOLIET)"));
  }
  OpeningMachine machine;
  machine.layoutFile("mix", {"Audio,0", "\"x\""});
  machine.open("mix");
  CHECK(machine.mod().LayoutType == AudioLayout);
  CHECK(machine.list().columns().size() == 3);
  CHECK(machine.window().panel1.Text == std::string("Standard Audio CD (JOLIET)"));
}

TEST_CASE("E050: A layout of no tracks opens empty, with no selection and no word") {
  OpeningMachine machine;
  machine.layoutFile("mix", {"\"Audio\"", "0", "\"00:00:00\""});
  machine.open("mix");
  CHECK(machine.mod().LayoutOpen);
  CHECK(machine.mod().LayoutHasFile);
  CHECK(machine.mod().LayoutFileName == "mix.mixl");
  CHECK(machine.list().Enabled);
  CHECK(machine.list().SelectedRow() == 0);
  CHECK(machine.desk.boxes.empty());
  CHECK(machine.enabled("AddFiles"));
}

TEST_CASE("E051: A count that sixteen bits cannot hold, doubled or not, is told, and no layout is open") {
  for (const auto& [kind, count] : std::vector<std::pair<std::string, std::string>>{
           {"\"MP3\"", "16384"}, {"\"MP3\"", "40000"}, {"\"Audio\"", "32768"}}) {
    OpeningMachine machine;
    machine.layoutFile("big", {kind, count, "\"x\""});
    machine.open("big", [&] { machine.desk.expectBox("Open CD Layout", BoxAnswer::Ok); });
    CHECK(machine.desk.lastBox().text == "The layout 'big' could not be read.\r\n\r\nOverflow");
    CHECK_FALSE(machine.mod().LayoutOpen);
    CHECK(machine.mod().LayoutFileName.empty());
    CHECK_FALSE(machine.list().Enabled);
    CHECK(machine.list().columns().size() == 3);
  }
}

TEST_CASE("E052: A missing track of an audio layout is one line, and the others are numbered without a gap") {
  OpeningMachine machine;
  const std::string a = machine.makeTrack("a.mp3", 10);
  const std::string c = machine.makeTrack("c.mp3", 10);
  machine.layoutFile("mix", {"\"Audio\"", "3", "\"x\"", machine.quoted(a), "\"/gone/b.mp3\"", machine.quoted(c)});
  machine.open("mix", [&] { machine.expectMissing({"/gone/b.mp3"}); });
  CHECK(machine.desk.finished());
  CHECK(machine.rows() == Lines{"a.mp3", "c.mp3"});
  REQUIRE(machine.cdr1().audioQueue.size() == 2);
  CHECK(machine.cdr1().audioQueue.at(0).path == a);
  CHECK(machine.cdr1().audioQueue.at(1).path == c);
  CHECK(machine.cdr1().audioQueue.at(1).number == 2);
  CHECK(machine.list().Item(2).Tag == 3);
  CHECK(machine.list().SelectedRow() == 1);
}

TEST_CASE("E053: A missing track of an MP3 layout is two lines, and the next track is read rightly") {
  OpeningMachine machine;
  const std::string b = machine.makeTrack("b.mp3", 10);
  machine.layoutFile("mix", {"\"MP3\"", "3", "\"x\"", "\"/gone/a.mp3\"", "\"\\Rock\"", machine.quoted(b), "\"\\Jazz\"",
                             "\"/gone/c.mp3\"", "\"No Folder\""});
  machine.open("mix", [&] { machine.expectMissing({"/gone/a.mp3", "\\Rock", "/gone/c.mp3", "No Folder"}); });
  CHECK(machine.desk.finished());
  REQUIRE(machine.rows() == Lines{"b.mp3"});
  CHECK(machine.list().SubItem(1, 3) == "\\Jazz");
  CHECK(machine.cdr1().dataQueue.contains("\\Jazz\\b.mp3"));
}

TEST_CASE("E054: Deleting the last layout leaves nothing to open or delete") {
  OpeningMachine machine;
  machine.layoutFile("a", {"\"Audio\"", "0", "\"x\""});
  machine.layoutFile("b", {"\"Audio\"", "0", "\"x\""});
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [&](frmOpenLayout& form) {
    form.ListView1.SelectRow(2);
    machine.desk.expectBox("Delete", BoxAnswer::Ok);
    form.cmdDelete.click();
    CHECK(rowOf(form.ListView1, 1) == Lines{"a", "0", "x", "Audio"});
    CHECK(form.ListView1.SelectedRow() == 1);
    CHECK(form.cmdOK.Enabled);
    machine.desk.expectBox("Delete", BoxAnswer::Ok);
    form.cmdDelete.click();
    CHECK(form.ListView1.Count() == 0);
    CHECK_FALSE(form.cmdOK.Enabled);
    CHECK_FALSE(form.cmdDelete.Enabled);
    form.cmdCancel.click();
  });
  machine.click("Open");
  CHECK_FALSE(machine.folder.has("Layouts/a.mixl"));
  CHECK_FALSE(machine.folder.has("Layouts/b.mixl"));
}

TEST_CASE("E055: Leaving the dialog by Cancel leaves no layout, a disabled list and an empty status bar") {
  OpeningMachine machine;
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [](frmOpenLayout& form) {
    CHECK_FALSE(form.cmdOK.Enabled);
    CHECK_FALSE(form.cmdDelete.Enabled);
    form.cmdCancel.click();
  });
  machine.click("mnuFileOpen");
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK_FALSE(machine.list().Enabled);
  CHECK(machine.list().Count() == 0);
  CHECK(machine.window().panel1.Text == std::string());
  CHECK(machine.window().panel3.Text == std::string());
  CHECK(machine.window().Progress1.Text == std::string());
}

TEST_CASE("The dialog lists layouts by name with the head of their files, and a bad one with its name alone") {
  OpeningMachine machine;
  machine.layoutFile("b", {"\"MP3\"", "12", "\"1.00 MB\"", "\"/x\""});
  machine.layoutFile("A", {"\"Audio\"", "3", "\"00:10:00\""});
  machine.folder.write("Layouts/c.mixl", "\"Audio\"");
  machine.folder.write("Layouts/d.MIXL", "\"Audio\"\r\n0\r\n\"x\"\r\n");
  std::filesystem::create_directory(machine.folder / "Layouts/e.mixl");
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [](frmOpenLayout& form) {
    REQUIRE(form.ListView1.Count() == 3);
    CHECK(rowOf(form.ListView1, 1) == Lines{"A", "3", "00:10:00", "Audio"});
    CHECK(rowOf(form.ListView1, 2) == Lines{"b", "12", "1.00 MB", "MP3"});
    CHECK(rowOf(form.ListView1, 3) == Lines{"c", "", "", ""});
    CHECK(form.ListView1.SelectedRow() == 1);
    CHECK(form.cmdOK.Enabled);
    CHECK(form.cmdDelete.Enabled);
    form.cmdCancel.click();
  });
  machine.click("Open");
}

TEST_CASE("A file that ends too early is told, and leaves the state behind a closed layout") {
  OpeningMachine machine;
  const std::string a = machine.makeTrack("a.mp3", 10);
  machine.layoutFile("short", {"\"Audio\"", "2", "\"x\"", machine.quoted(a)});
  machine.open("short", [&] { machine.desk.expectBox("Open CD Layout", BoxAnswer::Ok); });
  CHECK(machine.desk.lastBox().text == "The layout 'short' could not be read.\r\n\r\nInput past end of file");
  CHECK(machine.list().Count() == 0);
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK_FALSE(machine.enabled("AddFiles"));
  CHECK(machine.cdr1().audioQueue.empty());
}

TEST_CASE("Lines beyond the count are not read") {
  OpeningMachine machine;
  const std::string a = machine.makeTrack("a.mp3", 10);
  machine.layoutFile("mix", {"\"Audio\"", "1", "\"x\"", machine.quoted(a), machine.quoted(a)});
  machine.open("mix");
  CHECK(machine.rows() == Lines{"a.mp3"});
}

TEST_CASE("Opening leaves the saved state alone, has no duplicate and no room test, and keeps long names long") {
  OpeningMachine machine;
  machine.engines.stage.disc->freeAudio = 100;
  machine.engines.stage.disc->freeData = 100;
  const std::string name = std::string(70, 'x') + ".mp3";
  const std::string path = machine.makeTrack(name, 1000);
  machine.mod().LayoutSaved = false;
  machine.layoutFile(
      "mix", {"\"MP3\"", "2", "\"x\"", machine.quoted(path), "\"No Folder\"", machine.quoted(path), "\"\\Rock\""});
  machine.open("mix");
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK(machine.list().Count() == 2);
  CHECK(machine.cdr1().dataQueue.contains("\\" + name));
  CHECK(machine.cdr1().dataQueue.contains("\\Rock\\" + name));
}

TEST_CASE("The long name of an opened layout goes onto the disc after its row has gone") {
  OpeningMachine machine;
  const std::string name = std::string(70, 'x') + ".mp3";
  machine.layoutFile("mix", {"\"MP3\"", "2", "\"x\"", machine.quoted(machine.makeTrack("a.mp3", 10)), "\"No Folder\"",
                             machine.quoted(machine.makeTrack(name, 10)), "\"No Folder\""});
  machine.open("mix");
  machine.list().SelectRow(2);
  machine.desk.expectBox("Remove Track", BoxAnswer::Ok);
  machine.click("Delete");
  CHECK(machine.rows() == Lines{"a.mp3"});
  machine.desk.expectForm<frmOptions>("frmOptions", [](frmOptions& form) { form.cmdOK.click(); });
  machine.click("Record");
  CHECK(machine.mod().WriteActive);
  CHECK(machine.cdr1().dataQueue.files().size() == 2);
  CHECK(machine.cdr1().dataQueue.contains("\\" + name));
}

TEST_CASE("A track that the engine refuses is told in the words of a drop, and the rest is read on") {
  OpeningMachine machine;
  const std::string a = machine.makeTrack("a.mp3", 10);
  machine.folder.write("music/text.mp3", "no music");
  const std::string text = machine.folder / "music/text.mp3";
  machine.layoutFile("mix", {"\"Audio\"", "2", "\"x\"", machine.quoted(text), machine.quoted(a)});
  machine.open("mix", [&] { machine.desk.expectBox("Invalid Audio File", BoxAnswer::Ok); });
  CHECK(machine.desk.lastBox().text ==
        "'" + text +
            "' could not be inserted into the Audio Queue.\r\n\r\nEnsure this is a valid 44khz Audio file (MP3 or WAV) "
            "and the file is not corrupt.");
  CHECK(machine.rows() == Lines{"a.mp3"});
}

TEST_CASE("Whether a track is there is asked where no slow folder holds up the window") {
  OpeningMachine machine;
  const std::string a = machine.makeTrack("a.mp3", 10);
  machine.folders.lost = {a};
  machine.layoutFile("mix", {"\"Audio\"", "1", "\"x\"", machine.quoted(a)});
  machine.open("mix", [&] { machine.expectMissing({a}); });
  CHECK(machine.list().Count() == 0);
}

TEST_CASE("A path that begins at no root counts as missing, whatever lies where the program stands") {
  OpeningMachine machine;
  machine.layoutFile("mix", {"\"Audio\"", "2", "\"x\"", "\"CMakeLists.txt\"", "\"\""});
  machine.open("mix", [&] { machine.expectMissing({"CMakeLists.txt", ""}); });
  CHECK(machine.list().Count() == 0);
}

TEST_CASE("The dialog measures the disc with the kind of the layout before, and stays open when no disc is given") {
  OpeningMachine machine;
  machine.newLayout(AudioLayout);
  machine.layoutFile("mix", {"\"MP3\"", "0", "\"x\""});
  machine.open("mix");
  CHECK(machine.window().panel3.Text == std::string("Layout Size:  0 Bytes - Disc Size:  807.16 MB "));

  machine.engines.stage.disc.reset();
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [&](frmOpenLayout& form) {
    machine.desk.expectBox("No Media", BoxAnswer::Cancel);
    form.cmdOK.click();
    CHECK_FALSE(form.closed());
    CHECK(machine.mod().LayoutFileName.empty());
    form.cmdCancel.click();
  });
  machine.click("Open");
}

TEST_CASE("A full disc lets no layout be opened, and the dialog stays for another disc") {
  OpeningMachine machine;
  machine.layoutFile("mix", {"\"Audio\"", "0", "\"x\""});
  machine.engines.stage.disc->freeData = 0;
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [&](frmOpenLayout& form) {
    machine.desk.expectBox("No Available Space", BoxAnswer::Ok);
    form.cmdOK.click();
    CHECK_FALSE(form.closed());
    CHECK_FALSE(machine.mod().LayoutOpen);
    CHECK(machine.mod().LayoutFileName.empty());
    machine.engines.stage.disc->freeData = 100;
    form.cmdOK.click();
  });
  machine.click("Open");
  CHECK(machine.mod().LayoutOpen);
}

TEST_CASE("A file that cannot be deleted is told, and its row stays") {
  OpeningMachine machine;
  machine.layoutFile("a", {"\"Audio\"", "0", "\"x\""});
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [&](frmOpenLayout& form) {
    std::filesystem::remove(machine.folder / "Layouts/a.mixl");
    machine.desk.expectBox("Delete", BoxAnswer::Ok);
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    form.cmdDelete.click();
    CHECK(form.ListView1.Count() == 1);
    machine.desk.expectBox("Delete", BoxAnswer::Cancel);
    form.cmdDelete.click();
    form.cmdCancel.click();
  });
  machine.click("Open");
}

TEST_CASE("What is saved opens as it was, byte for byte the same when it is saved again") {
  OpeningMachine machine;
  machine.newLayout(Mp3Layout);
  for (const char* name : {"a \"b\".mp3", "line\nbreak.mp3", "\xff\xfe.mp3", "\xc3\x84.mp3"})
    machine.addTrack(name, 10);
  machine.list().SetSubItem(1, 3, "\\Rock");
  machine.desk.expectForm<frmSave>("frmSave", [](frmSave& form) {
    form.txtName.type("mix");
    form.cmdOK.click();
  });
  machine.click("mnuFileSave");
  const std::string saved = machine.folder.read("Layouts/mix.mixl");
  const Lines rows = machine.rows();
  machine.open("mix");
  CHECK(machine.rows() == rows);
  CHECK(machine.list().SubItem(1, 3) == "\\Rock");
  machine.click("mnuFileSave");
  CHECK(machine.folder.read("Layouts/mix.mixl") == saved);
}

TEST_CASE("An opened audio layout keeps the order of its file and counts from 1, whatever layout stood before it") {
  OpeningMachine machine;
  const std::string b = machine.makeTrack("b.mp3", 10);
  const std::string a = machine.makeTrack("a.mp3", 10);
  machine.newLayout(Mp3Layout);
  REQUIRE(machine.list().Sorted());
  machine.mod().NextTrackNumber = 7;
  machine.layoutFile("mix", {"\"Audio\"", "2", "\"x\"", machine.quoted(b), machine.quoted(a)});
  machine.open("mix");
  CHECK(machine.rows() == Lines{"b.mp3", "a.mp3"});
  CHECK_FALSE(machine.list().Sorted());
  CHECK(machine.cdr1().audioQueue.at(0).number == 1);
  CHECK(machine.mod().NextTrackNumber == 3);
}

TEST_CASE("An opened MP3 layout is sorted by the option, and its tracks take their places as they come") {
  for (const auto& [mode, rows] : std::vector<std::pair<std::int16_t, Lines>>{
           {0, {"a.mp3", "b.mp3"}}, {1, {"b.mp3", "a.mp3"}}, {2, {"b.mp3", "a.mp3"}}}) {
    OpeningMachine machine;
    machine.mod().Options.SortMode = mode;
    const std::string b = machine.makeTrack("b.mp3", 10);
    const std::string a = machine.makeTrack("a.mp3", 10);
    machine.layoutFile("mix", {"\"MP3\"", "2", "\"x\"", machine.quoted(b), "\"\\A\"", machine.quoted(a), "\"\\B\""});
    machine.open("mix");
    CHECK(machine.rows() == rows);
    CHECK(machine.list().SelectedRow() == 1);
  }
}

TEST_CASE("A layout of one track opens with that track selected, its time, its totals and its commands") {
  OpeningMachine machine;
  machine.layoutFile("mix", {"\"Audio\"", "1", "\"x\"", machine.quoted(machine.makeTrack("a.mp3", 4350))});
  machine.open("mix");
  CHECK(machine.list().SelectedRow() == 1);
  CHECK(rowOf(machine.list(), 1) == Lines{"a.mp3", machine.folder / "music/", "00:58:00"});
  CHECK(machine.window().panel3.Text == std::string("Layout Time:  01:00:00 - Disc Time:  79:57:74 "));
  CHECK(machine.window().Progress1.Text == std::string("4,500 Blocks of 359,849 Blocks  (1% of CD Used)"));
  CHECK(machine.enabled("Record"));
}

TEST_CASE("Window events run behind each line of a layout file that is there, also behind a refused one") {
  OpeningMachine machine;
  machine.folder.write("music/text.mp3", "no music");
  const std::string a = machine.makeTrack("a.mp3", 10);
  machine.layoutFile("mix", {"\"Audio\"", "3", "\"x\"", machine.quoted(machine.folder / "music/text.mp3"),
                             "\"/gone.mp3\"", machine.quoted(a)});
  machine.pump.pumped = 0;
  machine.open("mix", [&] {
    machine.desk.expectBox("Invalid Audio File", BoxAnswer::Ok);
    machine.expectMissing({"/gone.mp3"});
  });
  CHECK(machine.pump.pumped == 2);
}

TEST_CASE("What a layout's tracks missed is told anew for each layout") {
  OpeningMachine machine;
  machine.layoutFile("one", {"\"Audio\"", "1", "\"x\"", "\"/gone/1.mp3\""});
  machine.layoutFile("two", {"\"Audio\"", "1", "\"x\"", "\"/gone/2.mp3\""});
  machine.open("one", [&] { machine.expectMissing({"/gone/1.mp3"}); });
  machine.open("two", [&] { machine.expectMissing({"/gone/2.mp3"}); });
  CHECK(machine.desk.finished());
}

TEST_CASE("A data file that the queue refuses is told, and the rest of the MP3 layout is read on") {
  OpeningMachine machine;
  machine.folder.write("music/odd.mp3", "no room for it");
  const std::string a = machine.makeTrack("a.mp3", 10);
  machine.layoutFile("mix", {"\"MP3\"", "2", "\"x\"", machine.quoted(machine.folder / "music/odd.mp3"), "\"\\Rock\"",
                             machine.quoted(a), "\"No Folder\""});
  machine.open("mix", [&] { machine.desk.expectBox("Unable to Add File", BoxAnswer::Ok); });
  CHECK(machine.rows() == Lines{"a.mp3"});
}

TEST_CASE("Open and Delete take the selected layout, and OK on no selected one does nothing") {
  OpeningMachine machine;
  for (const char* name : {"a", "b", "c"}) machine.layoutFile(name, {"\"Audio\"", "0", "\"x\""});
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [&](frmOpenLayout& form) {
    form.ListView1.SelectRow(2);
    machine.desk.expectBox("Delete", BoxAnswer::Ok);
    form.cmdDelete.click();
    CHECK(machine.folder.has("Layouts/a.mixl"));
    CHECK_FALSE(machine.folder.has("Layouts/b.mixl"));
    CHECK(form.ListView1.SelectedRow() == 1);
    form.ListView1.SelectRow(0);
    machine.engines.stage.take();
    form.cmdOK.click();
    CHECK_FALSE(form.closed());
    CHECK(machine.engines.stage.take().empty());
    form.ListView1.SelectRow(2);
    form.cmdOK.click();
    CHECK(form.closed());
  });
  machine.click("Open");
  CHECK(machine.mod().LayoutFileName == "c.mixl");
}

TEST_CASE("A deletion without a selected layout is told like one that fails") {
  OpeningMachine machine;
  machine.layoutFile("a", {"\"Audio\"", "0", "\"x\""});
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [&](frmOpenLayout& form) {
    form.ListView1.SelectRow(0);
    machine.desk.expectBox("Delete", BoxAnswer::Ok);
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    form.cmdDelete.click();
    form.cmdCancel.click();
  });
  machine.click("Open");
  CHECK(machine.folder.has("Layouts/a.mixl"));
}

}  // namespace trackloom
