#include <catch2/catch.hpp>

#include "search/SearchMachine.h"

namespace trackloom {

using fakes::SearchMachine;

namespace {

std::string choicesOf(const frmSearch& form) {
  std::string choices;
  for (const ComboBox::Item& item : form.Combo1.items()) choices += item.text + ";";
  return choices;
}

/// Which of start, close, help, the types, check, clear and add are on.
std::string states(const frmSearch& form) {
  std::string states;
  for (const bool on : {form.cmdStart.Enabled.get(), form.cmdCancel.Enabled.get(), form.cmdHelp.Enabled.get(),
                        form.Combo1.Enabled.get(), form.cmdCheckAll.Enabled.get(), form.cmdClearAll.Enabled.get(),
                        form.cmdOK.Enabled.get()})
    states += on ? '1' : '0';
  return states;
}

std::string checks(const frmSearch& form) {
  std::string checks;
  for (int row = 1; row <= form.ListView1.Count(); ++row) checks += form.ListView1.Item(row).Checked ? '1' : '0';
  return checks;
}

const std::string Nothing = "The search of all available hard drives did not find any specified type Audio Files.";

}  // namespace

TEST_CASE("E119: Without hard drives the search is over at once and has found nothing") {
  SearchMachine machine(AudioLayout);
  machine.drives.roots = std::string(1, '\0');
  machine.search([&](frmSearch& form) {
    machine.run(form);
    CHECK(machine.desk.lastBox().text == Nothing);
    CHECK(machine.drives.walked.empty());
    CHECK(states(form) == "1111000");
    CHECK(form.cmdStart.Caption == std::string("&Start Search Now"));
    form.cmdCancel.click();
  });
}

TEST_CASE("A list of drives without its end counts as no drives") {
  SearchMachine machine(AudioLayout);
  machine.drives.roots.clear();
  CHECK(machine.found().empty());
  CHECK(machine.desk.lastBox().text == Nothing);
}

TEST_CASE("E120: On an MP3 layout WAV files are never listed, on an audio layout the type can be chosen") {
  SearchMachine mp3(Mp3Layout);
  for (const char* name : {"a.mp3", "b.wav", "c.txt"}) mp3.makeFile(name);
  CHECK(mp3.found() == "a.mp3;");
  mp3.search([](frmSearch& form) {
    CHECK(choicesOf(form) == "MP3 Files;");
    CHECK(form.Combo1.ListIndex() == 0);
    form.cmdCancel.click();
  });

  SearchMachine audio(AudioLayout);
  for (const char* name : {"a.mp3", "b.wav", "c.txt"}) audio.makeFile(name);
  audio.search([](frmSearch& form) {
    CHECK(choicesOf(form) == "MP3 Files;WAV Files;All Audio Files;");
    CHECK(form.Combo1.ListIndex() == 0);
    form.cmdCancel.click();
  });
  CHECK(audio.found(0) == "a.mp3;");
  CHECK(audio.found(1) == "b.wav;");
  CHECK(audio.found(2) == "a.mp3;b.wav;");
}

TEST_CASE("E121: One name in two folders makes two rows, and the layout silently takes the first alone") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("one/song.mp3");
  machine.makeFile("two/SONG.mp3");
  machine.search([&](frmSearch& form) {
    machine.run(form);
    CHECK(form.ListView1.Count() == 2);
    form.cmdCheckAll.click();
    form.cmdOK.click();
  });
  ListView& listing = machine.window().ListView1;
  REQUIRE(listing.Count() == 1);
  CHECK(listing.SubItem(1, 1) == machine.disk("one/"));
  CHECK(machine.desk.boxes.size() == 1);
}

TEST_CASE("E122: The last four characters decide, whatever their case") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"a.MP3", "b.mP3", "c.Wav", "d.mp3.txt", "e.mp34", "mp3", "f mp3", ".mp3"})
    machine.makeFile(name);
  CHECK(machine.found(2) == ".mp3;a.MP3;b.mP3;c.Wav;");
}

TEST_CASE("E124: A stop in the last folder of the last drive still tells the full number") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("a.mp3");
  machine.makeFile("last/b.mp3");
  machine.search([&](frmSearch& form) {
    machine.pump.onPump = [&] { form.cmdStart.click(); };
    machine.run(form);
    machine.pump.onPump = {};
    CHECK(machine.desk.lastBox().text == "The search of all available hard drives has found 2 Audio Files.");
    CHECK(machine.mod().LayoutOpen);
    form.cmdCancel.click();
  });
}

TEST_CASE("E125: While the search runs nothing but its own button ends it") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("sub/a.mp3");
  machine.search([&](frmSearch& form) {
    int pumps = 0;
    machine.pump.onPump = [&] {
      ++pumps;
      CHECK(form.cmdStart.Caption == std::string("Stop Search"));
      CHECK(states(form) == "1000000");
      form.cmdCancel.click();
      form.closeBox();
      CHECK_FALSE(form.closed());
      CHECK_FALSE(machine.forms().mod.StopSearch);
      form.ListView1.check(1, true);
    };
    machine.run(form);
    machine.pump.onPump = {};
    CHECK(pumps == 1);
    CHECK(checks(form) == "1");
    form.closeBox();
    CHECK(form.closed());
  });
  CHECK_FALSE(machine.forms().mod.StopSearch);
}

TEST_CASE("Each find has its type, its size in the user's signs and its folder, and is left unchecked") {
  SearchMachine machine(AudioLayout);
  machine.session().ports.separators = {".", ","};
  machine.makeFile("music/a.mp3", 1152);
  machine.makeFile("music/b.wav", 7);
  machine.search([&](frmSearch& form) {
    form.Combo1.choose(2);
    machine.run(form);
    REQUIRE(form.ListView1.Count() == 2);
    CHECK(form.ListView1.Item(1).SubItems == std::vector<std::string>{"MP3", "1,13 KB", machine.disk("music/")});
    CHECK(form.ListView1.Item(2).SubItems == std::vector<std::string>{"WAV", "7 Bytes", machine.disk("music/")});
    CHECK(form.ListView1.Item(1).SmallIcon == 1);
    CHECK(checks(form) == "00");
    CHECK(states(form) == "1111111");
    form.cmdCancel.click();
  });
}

TEST_CASE("The number of finds is told in groups, and each search begins with none") {
  SearchMachine machine(AudioLayout);
  for (int file = 0; file < 1000; ++file) machine.makeFile("many/" + std::to_string(file) + ".mp3");
  machine.search([&](frmSearch& form) {
    machine.run(form);
    CHECK(machine.desk.lastBox().text == "The search of all available hard drives has found 1,000 Audio Files.");
    form.cmdCheckAll.click();
    form.Combo1.choose(1);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { CHECK(states(form) == "1000000"); };
    machine.run(form);
    machine.desk.whileBoxIsOpen = {};
    CHECK(machine.desk.lastBox().text == Nothing);
    CHECK(form.ListView1.Count() == 0);
    CHECK(form.ListView1.CheckedCount() == 0);
    CHECK(machine.forms().mod.FilesFound == 0);
    CHECK(states(form) == "1111000");
    form.Combo1.choose(0);
    machine.run(form);
    CHECK(machine.desk.lastBox().text == "The search of all available hard drives has found 1,000 Audio Files.");
    form.cmdCancel.click();
  });
}

TEST_CASE("Only fixed drives are searched, in their order, as they were when the window was opened") {
  SearchMachine machine(AudioLayout);
  for (const char* drive : {"removable", "network", "optical", "memory", "unknown", "gone", "second"}) {
    machine.folder.write(std::string(drive) + "/x.mp3", "x");
    machine.drives.add(machine.folder / drive);
  }
  machine.drives.types = {{machine.folder / "removable", 2}, {machine.folder / "network", 4},
                          {machine.folder / "optical", 5},   {machine.folder / "memory", 6},
                          {machine.folder / "unknown", 0},   {machine.folder / "gone", 1}};
  machine.search([&](frmSearch& form) {
    CHECK(form.HardDrives == std::vector<std::string>{machine.disk(), machine.folder / "second"});
    machine.drives.add(machine.folder / "later");
    machine.run(form);
    CHECK(machine.drives.walked == std::vector<std::string>{machine.disk(), machine.folder / "second/"});
    CHECK(form.ListView1.Count() == 1);
    form.cmdCancel.click();
  });
  machine.search([&](frmSearch& form) {
    CHECK(form.HardDrives.size() == 3);
    form.cmdCancel.click();
  });
}

TEST_CASE(
    "A stop before a later drive sets the button back behind which the box comes, one in the last drive does not") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("a/a.mp3");
  machine.folder.write("second/b/b.mp3", "x");
  machine.drives.add(machine.folder / "second");
  const auto captionAtBox = [&](int stopAt) {
    std::string caption;
    machine.search([&](frmSearch& form) {
      int pumps = 0;
      machine.pump.onPump = [&] {
        if (++pumps == stopAt) form.cmdStart.click();
      };
      machine.desk.whileBoxIsOpen = [&](const MessageBox&) { caption = form.cmdStart.Caption; };
      machine.run(form);
      machine.desk.whileBoxIsOpen = {};
      machine.pump.onPump = {};
      CHECK(form.cmdStart.Caption == std::string("&Start Search Now"));
      caption += " " + std::to_string(form.ListView1.Count());
      form.cmdCancel.click();
    });
    return caption;
  };
  CHECK(captionAtBox(1) == "&Start Search Now 1");
  CHECK(captionAtBox(2) == "Stop Search 2");
  CHECK(captionAtBox(0) == "Stop Search 2");
}

TEST_CASE("A stopped search ends with the number of what it found, and the next one begins at the first drive") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"a/1.mp3", "b/2.mp3", "c/3.mp3"}) machine.makeFile(name);
  machine.search([&](frmSearch& form) {
    machine.pump.onPump = [&] {
      if (form.ListView1.Count() == 2 && !machine.forms().mod.StopSearch) form.cmdStart.click();
    };
    machine.run(form);
    machine.pump.onPump = {};
    CHECK(machine.desk.lastBox().text == "The search of all available hard drives has found 2 Audio Files.");
    CHECK(states(form) == "1111111");
    CHECK(machine.drives.asked.back() == machine.disk("b/"));
    machine.run(form);
    CHECK(machine.desk.lastBox().text == "The search of all available hard drives has found 3 Audio Files.");
    form.cmdCancel.click();
  });
}

TEST_CASE("Check All and Clear All take every row, on a second go too") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"1.mp3", "2.mp3", "3.mp3"}) machine.makeFile(name);
  machine.search([&](frmSearch& form) {
    machine.run(form);
    form.ListView1.check(2, true);
    form.cmdCheckAll.click();
    CHECK(checks(form) == "111");
    form.cmdClearAll.click();
    CHECK(checks(form) == "000");
    form.cmdCheckAll.click();
    CHECK(checks(form) == "111");
    form.cmdCancel.click();
  });
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.mod().LayoutSaved);
}

TEST_CASE("Add Checked takes the checked finds in list order behind the hidden window, and selects the first track") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"z/1.mp3", "a/2.mp3", "m/3.mp3"}) machine.makeFile(name);
  machine.addTrack("kept.mp3", 5);
  machine.addTrack("other.mp3", 5);
  machine.window().ListView1.SelectRow(2);
  machine.search([&](frmSearch& form) {
    machine.run(form);
    form.ListView1.check(1, true);
    form.ListView1.check(3, true);
    std::vector<int> rowsAtPump;
    machine.pump.onPump = [&] {
      CHECK_FALSE(form.visible());
      CHECK_FALSE(form.closed());
      CHECK_FALSE(machine.window().takesInput());
      rowsAtPump.push_back(machine.window().ListView1.Count());
    };
    form.cmdOK.click();
    machine.pump.onPump = {};
    CHECK(rowsAtPump == std::vector<int>{2, 3, 4});
    CHECK(form.closed());
  });
  ListView& listing = machine.window().ListView1;
  REQUIRE(listing.Count() == 4);
  CHECK(listing.Item(3).Text == "2.mp3");
  CHECK(listing.SubItem(3, 1) == machine.disk("a/"));
  CHECK(listing.Item(4).Text == "1.mp3");
  CHECK(listing.SelectedRow() == 1);
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK(machine.window().Progress1.Text == std::string("810 Blocks of 359,849 Blocks  (0% of CD Used)"));
}

TEST_CASE("On an MP3 layout the listing is sorted anew behind the batch, on an audio layout it is not") {
  SearchMachine mp3(Mp3Layout);
  mp3.mod().Options.SortMode = 0;
  SearchMachine audio(AudioLayout);
  for (SearchMachine* machine : {&mp3, &audio}) {
    ListView& listing = machine->window().ListView1;
    listing.SetSorted(false);
    machine->addTrack("b.mp3", 5);
    machine->addTrack("c.mp3", 5);
    machine->makeFile("a.mp3");
    machine->search([&](frmSearch& form) {
      machine->run(form);
      form.cmdCheckAll.click();
      form.cmdOK.click();
    });
    CHECK(listing.Item(1).Text == (machine == &mp3 ? "a.mp3" : "b.mp3"));
    CHECK(listing.Sorted() == (machine == &mp3));
    CHECK(listing.SelectedRow() == 1);
  }
}

TEST_CASE("A find that is refused is told with its words, and the next ones come in") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"1.mp3", "2.mp3"}) machine.makeFile(name);
  machine.folder.write("disk/0.mp3", "no music");
  machine.search([&](frmSearch& form) {
    machine.run(form);
    form.cmdCheckAll.click();
    machine.desk.expectBox("Invalid Audio File", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  CHECK(
      machine.desk.lastBox().text ==
      "'" + machine.disk("0.mp3") +
          "' could not be inserted into the Audio Queue.\r\n\r\nEnsure this is a valid 44khz Stereo Audio file (MP3 or "
          "WAV) and the file is not corrupt.");
  CHECK(machine.window().ListView1.Count() == 2);
}

TEST_CASE("Too big ends the batch of finds, keeps what came before, and closes the window without sort or selection") {
  SearchMachine machine(Mp3Layout, 600);
  machine.mod().Options.SortMode = 0;
  for (const char* name : {"1.mp3", "2.mp3", "3.mp3", "4.mp3"}) machine.makeFile(name);
  machine.window().ListView1.SetSorted(false);
  machine.search([&](frmSearch& form) {
    machine.run(form);
    form.cmdCheckAll.click();
    machine.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
    form.cmdOK.click();
    CHECK(form.closed());
  });
  CHECK(machine.window().ListView1.Count() == 2);
  CHECK(machine.window().ListView1.SelectedRow() == 0);
  CHECK_FALSE(machine.window().ListView1.Sorted());
  CHECK_FALSE(machine.mod().LayoutSaved);
}

TEST_CASE("Add Checked without a check leaves an empty listing unmarked, and marks one with rows") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("1.mp3");
  const auto addNone = [&] {
    machine.search([&](frmSearch& form) {
      machine.run(form);
      form.cmdOK.click();
    });
  };
  addNone();
  CHECK(machine.mod().LayoutSaved);
  machine.addTrack("kept.mp3", 5);
  machine.mod().LayoutSaved = true;
  addNone();
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK(machine.window().ListView1.Count() == 1);
}

TEST_CASE("A name that is no UTF-8 is found and added in its own bytes") {
  SearchMachine machine(AudioLayout);
  const std::string name = "caf\xE9.mp3";
  machine.makeFile(name);
  machine.search([&](frmSearch& form) {
    machine.run(form);
    REQUIRE(form.ListView1.Count() == 1);
    form.cmdCheckAll.click();
    form.cmdOK.click();
  });
  REQUIRE(machine.window().ListView1.Count() == 1);
  CHECK(machine.window().ListView1.Item(1).Text == name);
}

}  // namespace trackloom
