#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

std::string tagged(std::string title, std::string artist) {
  title.resize(30, ' ');
  artist.resize(30, ' ');
  return "TAG" + title + artist + std::string(65, '\0');
}

/// A machine whose user prints the listing.
class Printing : public LayoutMachine {
 public:
  explicit Printing(std::int16_t kind = AudioLayout) : LayoutMachine(kind, 4'000'000) {}

  void addTagged(const std::string& name, const std::string& title, const std::string& artist,
                 std::int32_t blocks = 100) {
    addTrack(name, blocks);
    folder.write("music/" + name, tagged(title, artist));
  }
  /// Prints, with `use` as what the user does in frmPrintList.
  void print(const std::function<void(frmPrintList&)>& use) {
    desk.expectForm<frmReadStatus>("frmReadStatus", [](frmReadStatus& form) { form.activated(); });
    desk.expectForm<frmPrintList>("frmPrintList", [&](frmPrintList& form) {
      use(form);
      if (form.visible()) form.cmdCancel.click();
    });
    desk.transcript.clear();
    click("Print");
    CHECK(desk.finished());
  }
  /// Goes through to the page, which the user closes.
  void printPage(const std::function<void(frmPrintList&)>& use = [](frmPrintList&) {}) {
    prints.transcript.clear();
    print([&](frmPrintList& form) {
      use(form);
      desk.expectForm<frmPrint>("frmPrint", [this](frmPrint& page) {
        caption = page.caption;
        page.closeBox();
      });
      form.cmdPrint.click();
    });
  }
  Lines tables() const {
    Lines lines;
    for (const std::string& line : prints.transcript)
      if (line.starts_with("AddTable")) lines.push_back(line);
    return lines;
  }

  std::string caption;
};

Lines rowsOf(const ListView& list) {
  Lines rows;
  for (int row = 1; row <= list.Count(); ++row)
    rows.push_back(list.Item(row).Text + "|" + list.SubItem(row, 1) + "|" + list.SubItem(row, 2));
  return rows;
}

Lines textsOf(const ComboBox& combo) {
  Lines texts;
  for (const ComboBox::Item& item : combo.items()) texts.push_back(item.text);
  return texts;
}

Lines listAfterReading(Printing& machine) {
  Lines rows;
  machine.print([&](frmPrintList& form) { rows = rowsOf(form.ListView1); });
  return rows;
}

}  // namespace

TEST_CASE("E129: The numbers of the rows have two digits at least: 09, 10, 100") {
  Printing machine;
  for (int track = 1; track <= 100; ++track) machine.addTagged(std::to_string(track) + ".mp3", "T", "A", 1);
  const Lines rows = listAfterReading(machine);
  REQUIRE(rows.size() == 100);
  CHECK(rows[8] == "09|A|T");
  CHECK(rows[9] == "10|A|T");
  CHECK(rows[99] == "100|A|T");
}

TEST_CASE("E130: Reading a listing without rows shows nothing and closes at once") {
  Printing machine;
  machine.mod().TagsMissing = true;
  machine.mod().TrackTimes = {"1:00"};
  machine.mod().TrackTimeCount = 1;
  machine.desk.transcript.clear();
  auto& slot = machine.program().forms().printing.frmReadStatus;
  slot->activated();
  CHECK_FALSE(slot.exists());
  CHECK_FALSE(machine.program().forms().printing.frmPrintList.exists());
  CHECK(machine.desk.transcript == Lines{"unload frmReadStatus"});
  CHECK_FALSE(machine.mod().TagsMissing);
  CHECK(machine.mod().TrackTimes.empty());
  CHECK(machine.mod().TrackTimeCount == 0);
}

TEST_CASE("Each track is told and painted, measured by an engine of the window's own, and read") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.addTagged("b.mp3", "Dance", "Ben");
  machine.engines.stage.take();
  Lines captions;
  machine.desk.expectForm<frmReadStatus>("frmReadStatus", [&](frmReadStatus& form) {
    CHECK(form.Label1.Caption == std::string());
    const Connection heard = form.Label1.changed.connect([&] { captions.push_back(form.Label1.Caption); });
    form.activated();
  });
  machine.desk.expectForm<frmPrintList>("frmPrintList", [](frmPrintList& form) {
    CHECK(rowsOf(form.ListView1) == Lines{"01|Anna|Aubade", "02|Ben|Dance"});
    form.cmdCancel.click();
  });
  machine.desk.transcript.clear();
  machine.click("Print");
  CHECK(captions ==
        Lines{"Reading ID3 Tag Information from Track #1...", "Reading ID3 Tag Information from Track #2..."});
  CHECK(machine.desk.transcript == Lines{"modal frmReadStatus", "repaint Label1", "repaint Label1",
                                         "unload frmReadStatus", "modal frmPrintList", "unload frmPrintList"});
  const std::string music = machine.folder / "music/";
  CHECK(machine.engines.stage.take() == Lines{"CDR3.ClearAudioQueue", "CDR3.AddAudioTrack(" + music + "a.mp3, 1)",
                                              "CDR3.ClearAudioQueue", "CDR3.AddAudioTrack(" + music + "b.mp3, 1)"});
}

TEST_CASE("The reading is done once, however often the window is activated") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  auto& forms = machine.program().forms().printing;
  const auto form = forms.frmReadStatus->keepAlive();
  form->activated();
  form->activated();
  CHECK(forms.frmPrintList->ListView1.Count() == 1);
  CHECK(machine.mod().TrackTimeCount == 1);
}

TEST_CASE("Play times below ten minutes lose their leading zero, longer ones the last digit of their seconds") {
  Printing machine;
  // 75 blocks are a second.
  const std::vector<std::pair<std::int32_t, std::string>> lengths{{(3 * 60 + 45) * 75 + 12, "3:45"},
                                                                  {(12 * 60 + 34) * 75 + 56, "12:3"},
                                                                  {0, "0:00"},
                                                                  {(9 * 60 + 59) * 75, "9:59"},
                                                                  {10 * 60 * 75, "10:0"}};
  for (const auto& [blocks, time] : lengths)
    machine.addTagged(time.substr(0, 1) + time.substr(2) + ".mp3", "T", "A", blocks);
  listAfterReading(machine);
  CHECK(machine.mod().TrackTimes == Lines{"3:45", "12:3", "0:00", "9:59", "10:0"});
  CHECK(machine.mod().TrackTimeCount == 5);
}

TEST_CASE("A second run begins anew, with the times and the tags of that run alone") {
  Printing machine;
  machine.addTrack("untagged.mp3", 75);
  machine.desk.expectForm<frmReadStatus>("frmReadStatus", [](frmReadStatus& form) { form.activated(); });
  machine.desk.expectForm<frmPrintList>("frmPrintList", [](frmPrintList& form) { form.cmdCancel.click(); });
  machine.click("Print");
  CHECK(machine.mod().TagsMissing);
  machine.folder.write("music/untagged.mp3", tagged("Aubade", "Anna"));
  CHECK(listAfterReading(machine) == Lines{"01|Anna|Aubade"});
  CHECK_FALSE(machine.mod().TagsMissing);
  CHECK(machine.mod().TrackTimes == Lines{"0:01"});
}

TEST_CASE("A WAV file has a time like any other, and is Unknown twice") {
  Printing machine;
  machine.addTrack("a.wav", 750);
  CHECK(listAfterReading(machine) == Lines{"01|Unknown|Unknown"});
  CHECK(machine.mod().TrackTimes == Lines{"0:10"});
}

TEST_CASE("What the engine refuses has the time of an empty queue, also behind a longer track") {
  Printing machine(Mp3Layout);
  machine.addTagged("a.mp3", "Aubade", "Anna", 750);
  machine.addTagged("b.mp3", "Dance", "Ben");
  machine.engines.stage.audio.erase(machine.folder / "music/b.mp3");
  listAfterReading(machine);
  CHECK(machine.mod().TrackTimes == Lines{"0:10", "0:00"});
}

TEST_CASE("The list shows and keeps a text up to its first zero byte") {
  Printing machine;
  machine.addTagged("a.mp3", std::string("Aubade\0rest", 11), std::string(30, '\0'));
  CHECK(listAfterReading(machine) == Lines{"01||Aubade"});
  CHECK_FALSE(machine.mod().TagsMissing);
}

TEST_CASE("E131: With a layout file mix.mixl open the title reads Trackloom - mix") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.mod().LayoutFileName = "mix.mixl";
  machine.print([](frmPrintList& form) { CHECK(form.txtTitle.Text == std::string("Trackloom - mix")); });
}

TEST_CASE("E132: A layout that was never saved is called Trackloom - Untitled Layout") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  for (const char* name : {"", "  "}) {
    machine.mod().LayoutFileName = name;
    machine.print([](frmPrintList& form) { CHECK(form.txtTitle.Text == std::string("Trackloom - Untitled Layout")); });
  }
}

TEST_CASE("A suggested title longer than can be typed stays whole") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.mod().LayoutFileName = std::string(60, 'm') + ".mixl";
  machine.print([](frmPrintList& form) {
    CHECK(form.txtTitle.Text == "Trackloom - " + std::string(60, 'm'));
    form.txtTitle.type(std::string(60, 'x'));
    CHECK(form.txtTitle.Text == std::string(50, 'x'));
  });
}

TEST_CASE(
    "An audio layout is printed on the insert unless the user chooses the page, an MP3 layout on the page alone") {
  for (const std::int16_t kind : {AudioLayout, Mp3Layout}) {
    Printing machine(kind);
    machine.addTagged("a.mp3", "Aubade", "Anna");
    machine.print([&](frmPrintList& form) {
      CHECK(form.optAudio.selected() == (kind == AudioLayout));
      CHECK(form.optStandard.selected() == (kind == Mp3Layout));
      CHECK(form.optAudio.Enabled == (kind == AudioLayout));
      CHECK(form.optStandard.Enabled);
    });
  }
}

TEST_CASE("The header colours stand in their order with a sample each, White before Cyan, and Blue is chosen") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.print([](frmPrintList& form) {
    CHECK(textsOf(form.ImageCombo1) == Lines{"Red", "Green", "Yellow", "Blue", "Magenta", "White", "Cyan"});
    CHECK(form.ImageCombo1.Text() == "Blue");
    std::vector<int> images;
    for (const ComboBox::Item& item : form.ImageCombo1.items()) {
      images.push_back(item.image);
      CHECK(form.ImageCombo1.Images->Picture(item.image) == item.text);
    }
    CHECK(images == std::vector<int>{1, 2, 3, 4, 5, 7, 6});
  });
}

TEST_CASE("The fonts of the screen stand sorted, whatever their case, and the last that reads Arial is chosen") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.prints.fonts = {"serif", "arial", "Zebra", "ARIAL ", "Mono"};
  machine.print([](frmPrintList& form) {
    CHECK(textsOf(form.Combo1) == Lines{"arial", "ARIAL ", "Mono", "serif", "Zebra"});
    CHECK(form.Combo1.Text() == "ARIAL ");
    CHECK(textsOf(form.Combo2) == Lines{"8", "10", "12"});
    CHECK(form.Combo2.Text() == "10");
  });
}

TEST_CASE("E135: On a screen without Arial no font is chosen, and the page has the font of the control") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.prints.fonts = {"Arial Black", "Serif"};
  machine.printPage([](frmPrintList& form) { CHECK(form.Combo1.ListIndex() == -1); });
  CHECK(machine.mod().ListingFont.empty());
  CHECK(machine.prints.transcript.at(1) == "Font.Name = ");
}

TEST_CASE("Missing tags are told once, over the list") {
  Printing machine;
  machine.addTrack("a.mp3", 100);
  machine.print([&](frmPrintList& form) {
    machine.desk.expectBox("Track Information", BoxAnswer::Ok);
    form.activated();
    form.activated();
  });
  CHECK(machine.desk.boxes.size() == 1);
  machine.folder.write("music/a.mp3", tagged("Aubade", "Anna"));
  machine.print([](frmPrintList& form) { form.activated(); });
  CHECK(machine.desk.boxes.size() == 1);
}

TEST_CASE("E133: OK of frmEdit is off while either box holds only blanks, and on for two filled cells at once") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.addTagged("b.mp3", "", "Ben");
  machine.print([&](frmPrintList& form) {
    form.ListView1.SelectRow(1);
    machine.desk.expectForm<frmEdit>(
        "frmEdit",
        [](frmEdit& edit) {
          CHECK(edit.txtArtist.Text == std::string("Anna"));
          CHECK(edit.txtTitle.Text == std::string("Aubade"));
          CHECK(edit.cmdOK.Enabled);
          edit.txtArtist.type("  ");
          CHECK_FALSE(edit.cmdOK.Enabled);
          edit.txtArtist.type("\t");
          CHECK(edit.cmdOK.Enabled);
          edit.txtTitle.type("");
          CHECK_FALSE(edit.cmdOK.Enabled);
          edit.cmdCancel.click();
        },
        "frmPrintList");
    form.cmdEdit.click();
    form.ListView1.SelectRow(2);
    machine.desk.expectForm<frmEdit>(
        "frmEdit",
        [](frmEdit& edit) {
          CHECK_FALSE(edit.cmdOK.Enabled);
          edit.closeBox();
        },
        "frmPrintList");
    form.cmdEdit.click();
    CHECK(rowsOf(form.ListView1) == Lines{"01|Anna|Aubade", "02|Ben|"});
  });
}

TEST_CASE("E134: Unknown edited into a name is printed, and the file keeps its bytes") {
  Printing machine;
  machine.addTrack("a.mp3", 75);
  machine.addTagged("b.mp3", "Dance", "Ben", 150);
  const std::string before = machine.folder.read("music/a.mp3");
  machine.printPage([&](frmPrintList& form) {
    machine.desk.expectBox("Track Information", BoxAnswer::Ok);
    form.activated();
    CHECK(form.ListView1.SelectedRow() == 1);
    machine.desk.expectForm<frmEdit>(
        "frmEdit",
        [](frmEdit& edit) {
          edit.txtArtist.type(" Clara ");
          edit.txtTitle.type(" Nocturne ");
          edit.cmdOK.click();
        },
        "frmPrintList");
    form.ListView1.doubleClick(1);
    CHECK(rowsOf(form.ListView1) == Lines{"01|Clara|Nocturne", "02|Ben|Dance"});
  });
  CHECK(machine.tables().at(0).find("01|Clara|Nocturne|0:01;") != std::string::npos);
  CHECK(machine.folder.read("music/a.mp3") == before);
  CHECK(listAfterReading(machine).at(0) == "01|Unknown|Unknown");
}

TEST_CASE("With no row selected there is nothing to edit") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.print([](frmPrintList& form) {
    form.activated();
    form.ListView1.select({});
    form.cmdEdit.click();
  });
}

TEST_CASE("The settings are handed over, and the list is kept hidden while the page shows") {
  Printing machine;
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.printPage([](frmPrintList& form) {
    form.ImageCombo1.choose(5);
    form.Combo1.choose(2);
    form.Combo2.choose(2);
    form.txtTitle.type("  Evenings  ");
  });
  const Trackloom50Mod1& mod = machine.mod();
  CHECK(mod.HeaderColour == "White");
  CHECK(mod.ListingFont == "Serif");
  CHECK(mod.ListingFontSize == 12);
  CHECK(mod.PrintTitle == "Evenings");
  CHECK(mod.PrintStyle == 1);
  CHECK(machine.desk.transcript == Lines{"modal frmReadStatus", "repaint Label1", "unload frmReadStatus",
                                         "modal frmPrintList", "hide frmPrintList", "modal frmPrint", "unload frmPrint",
                                         "unload frmPrintList"});
}

TEST_CASE("Printing an unsorted MP3 layout switches the sorting of its listing off again, also behind the page") {
  Printing machine(Mp3Layout);
  machine.mod().Options.SortMode = 2;
  machine.newLayout(Mp3Layout);
  machine.addTagged("b.mp3", "Dance", "Ben");
  machine.addTagged("a.mp3", "Aubade", "Anna");
  machine.desk.expectForm<frmChooseSort>("frmChooseSort", [](frmChooseSort& form) { form.cmdOK.click(); });
  machine.printPage([&](frmPrintList& form) {
    CHECK(rowsOf(form.ListView1) == Lines{"01|Anna|Aubade", "02|Ben|Dance"});
    CHECK(machine.window().ListView1.Sorted());
  });
  CHECK_FALSE(machine.window().ListView1.Sorted());
  CHECK(machine.window().ListView1.Item(1).Text == "a.mp3");
}

}  // namespace trackloom
