#include <catch2/catch.hpp>

#include "ripper/Ripping.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

const Lines ThreeNumbers{"01|00:00:00|00:10:00|00:10:00", "02|00:10:00|00:30:00|00:20:00",
                         "03|00:30:00|00:31:00|00:01:00"};

Lines textsOf(const ComboBox& combo) {
  Lines texts;
  for (const ComboBox::Item& item : combo.items()) texts.push_back(item.text);
  return texts;
}

/// The controls of the ripper's main window that a user can reach now, the list left out.
Lines usable(Ripping& machine) {
  Lines names;
  for (Control* control : machine.form().controls())
    if (control->Enabled && (dynamic_cast<Button*>(control) != nullptr || dynamic_cast<ComboBox*>(control) != nullptr ||
                             dynamic_cast<CheckBox*>(control) != nullptr))
      names.push_back(control->name());
  return names;
}

const Lines AllButExtraction{"ImageCombo1",  "cboSpeeds",     "cmdRead", "chkCDDB",
                             "cmdSelectAll", "cmdSelectNone", "cmdExit", "cmdHelp"};

}  // namespace

TEST_CASE("Every drive is listed by its letter, maker and model, trimmed, and the first one is chosen") {
  Ripping machine([](Ripping& before) {
    before.stage().drives = {{" D ", " ACME ", " Reader 52X "}, {"E", "", "Writer"}};
  });
  CHECK(textsOf(machine.form().ImageCombo1) == Lines{"D: ACME Reader 52X", "E:  Writer"});
  CHECK(machine.form().ImageCombo1.ListIndex() == 0);
  CHECK(machine.form().ImageCombo1.items()[1].image == 1);
  CHECK(machine.form().ImageList1.Count() == 1);
  CHECK(machine.form().cmdRead.Enabled);
  CHECK(machine.form().cboSpeeds.items().empty());
  CHECK(machine.status().empty());
}

TEST_CASE("Without any drive the window says so and can be closed, and no disc can be read") {
  Ripping machine([](Ripping& before) { before.stage().drives.clear(); });
  CHECK(machine.status() == "No CD Devices could be found...");
  CHECK(machine.form().ImageCombo1.ListIndex() == -1);
  machine.read();
  CHECK(machine.stage().take().empty());
  machine.form().cmdExit.click();
  CHECK(machine.window().visible());
}

TEST_CASE("A disc that nobody knows has numbers for names, and each window is as it should be meanwhile") {
  Ripping machine;
  Lines during;
  machine.pump.onPump = [&] {
    CHECK(machine.forms().frmReading->visible());
    CHECK(machine.forms().frmReading->Topmost);
    during = usable(machine);
  };
  machine.read();
  CHECK(during.empty());
  CHECK_FALSE(machine.forms().frmReading.exists());
  CHECK(machine.rows() == ThreeNumbers);
  CHECK(machine.form().caption == std::string("CD Ripper"));
  CHECK(machine.status() == "Contents of current inserted CD listed...");
  CHECK(usable(machine) == AllButExtraction);
  CHECK(machine.pump.pumped == 1);
  for (int row = 1; row <= 3; ++row) CHECK(machine.form().ListView2.Item(row).SmallIcon == 1);
}

TEST_CASE("The window of a read gives up its place on top when it goes") {
  Ripping machine;
  const auto reading = machine.forms().frmReading.get().keepAlive();
  CHECK(reading->Topmost);
  reading->unload();
  CHECK_FALSE(reading->Topmost);
}

TEST_CASE("Speeds double up to eight and then go by fours, behind the drive's own choice") {
  Ripping machine;
  for (const auto& [most, count, last] : {std::tuple<std::int16_t, std::size_t, const char*>{52, 16, "52X"},
                                          {0, 1, "AUTO"},
                                          {1, 2, "1X"},
                                          {7, 4, "4X"},
                                          {8, 5, "8X"},
                                          {32767, 8194, "32764X"}}) {
    machine.stage().drives[0].maxSpeed = most;
    machine.read();
    const auto& items = machine.form().cboSpeeds.items();
    REQUIRE(items.size() == count);
    CHECK(items.back().text == last);
    CHECK(machine.form().cboSpeeds.ListIndex() == 0);
  }
  machine.stage().drives[0].maxSpeed = 20;
  machine.read();
  CHECK(textsOf(machine.form().cboSpeeds) == Lines{"AUTO", "1X", "2X", "4X", "8X", "12X", "16X", "20X"});
  std::vector<std::int32_t> data;
  for (const auto& item : machine.form().cboSpeeds.items()) data.push_back(item.data);
  CHECK(data == std::vector<std::int32_t>{0, 1, 2, 4, 8, 12, 16, 20});
}

TEST_CASE("A speed that is chosen is told to the drive, an error there to nobody, and each read begins with AUTO") {
  Ripping machine;
  machine.read();
  machine.stage().take();
  machine.form().cboSpeeds.choose(3);
  machine.form().cboSpeeds.choose(3);
  CHECK(machine.stage().take() == Lines{"CDRipperX1.SetSpeed(4)", "CDRipperX1.SetSpeed(4)"});
  machine.stage().broken.insert("CDRipperX1.SetSpeed");
  machine.form().cboSpeeds.choose(1);
  machine.read();
  CHECK(machine.form().cboSpeeds.Text() == "AUTO");
  CHECK(machine.rows() == ThreeNumbers);
}

TEST_CASE("The names of the first match become those of the rows, caption and tags, trimmed and cut") {
  Ripping machine;
  machine.know("  " + std::string(35, 'a') + " ", " " + std::string(40, 'b'), {" One ", "Two", "Three"}, " ROCK ",
               " 19999 ");
  machine.stage().matches.push_back({"Other", "Other", "Jazz", "1", {{"x"}}});
  machine.read();
  CHECK(machine.names() == Lines{"One", "Two", "Three"});
  CHECK(machine.form().caption == "Trackloom CD Ripper (" + std::string(35, 'a') + " - " + std::string(40, 'b') + ")");
  CHECK(machine.rip().DiscArtist.get() == std::string(30, 'a'));
  CHECK(machine.rip().DiscAlbum.get() == std::string(30, 'b'));
  CHECK(machine.rip().DiscYear.get() == "1999");
  CHECK(machine.rip().DiscGenre == 17);
}

TEST_CASE("Only the first slash and the first backslash of a title give way") {
  Ripping machine;
  machine.know("AC/DC", "a\\b", {"a/b/c", "\\a\\b/", "a:b?"});
  machine.read();
  CHECK(machine.names() == Lines{"a-b/c", "-a\\b-", "a:b?"});
  CHECK(Trim(machine.rip().DiscArtist.get()) == "AC/DC");
  CHECK(Trim(machine.rip().DiscAlbum.get()) == "a\\b");
}

TEST_CASE("A disc becomes an unknown one only behind an empty drive, and a known one keeps its name") {
  Ripping machine;
  const auto captionAfterRead = [&] {
    machine.read();
    return machine.form().caption.get();
  };
  CHECK(captionAfterRead() == "CD Ripper");
  const auto disc = machine.stage().disc;
  machine.stage().disc.reset();
  machine.desk.expectBox("No Disc", BoxAnswer::Ok);
  CHECK(captionAfterRead() == "Trackloom CD Ripper");
  machine.stage().disc = disc;
  machine.form().chkCDDB.click();
  CHECK(captionAfterRead() == "Trackloom CD Ripper");
  machine.form().chkCDDB.click();
  CHECK(captionAfterRead() == "Trackloom CD Ripper (Unknown Disc)");
  machine.know("Anna", "Evenings", {});
  CHECK(captionAfterRead() == "Trackloom CD Ripper (Anna - Evenings)");
  machine.stage().matches.clear();
  CHECK(captionAfterRead() == "Trackloom CD Ripper (Anna - Evenings)");
}

TEST_CASE("An empty drive empties the list and leaves nothing to do but to read again") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"});
  machine.read();
  machine.form().cmdSelectAll.click();
  machine.stage().disc.reset();
  machine.stage().take();
  machine.desk.expectBox("No Disc", BoxAnswer::Ok);
  machine.read();
  CHECK(machine.stage().take() == Lines{"CDRipperX1.SelectRipDrive(0)", "CDRipperX1.DiscPresent"});
  CHECK(machine.rows().empty());
  CHECK(usable(machine) == Lines{"ImageCombo1", "cboSpeeds", "cmdRead", "chkCDDB", "cmdExit", "cmdHelp"});
  CHECK(machine.status() == "Contents of current inserted CD listed...");
  CHECK(Trim(machine.rip().DiscArtist.get()) == "Anna");
  CHECK_FALSE(machine.forms().frmReading.exists());
}

TEST_CASE("A drive that cannot be taken gives an empty list and no message") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"});
  machine.read();
  machine.stage().drives[0].refuses = true;
  machine.stage().take();
  machine.read();
  CHECK(machine.stage().take() ==
        Lines{"CDRipperX1.SelectRipDrive(0)", "CDRipperX1.SelectRipDrive(0)", "CDRipperX1.LastDriveError"});
  CHECK(machine.rows().empty());
  CHECK(usable(machine) == AllButExtraction);
  CHECK(Trim(machine.rip().DiscArtist.get()).empty());
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("A disc whose contents cannot be read says so, and the speeds stand all the same") {
  Ripping machine;
  machine.read();
  machine.form().cmdSelectAll.click();
  machine.stage().contentsReadable = false;
  machine.read();
  CHECK(machine.status() == "No CD in the selected drive to read...");
  CHECK(machine.rows().empty());
  CHECK(usable(machine) == AllButExtraction);
  CHECK(machine.form().cboSpeeds.Text() == "AUTO");
}

TEST_CASE("An error of the engine ends the read with its number and words") {
  const char* call = GENERATE("ReadTOC", "TrackCount", "MaxSpeed");
  Ripping machine;
  machine.read();
  machine.stage().broken.insert(std::string("CDRipperX1.") + call);
  machine.desk.expectBox("Error", BoxAnswer::Ok);
  machine.read();
  CHECK(machine.desk.finished());
  CHECK(machine.desk.lastBox().text ==
        "CD Ripper encountered and error trying to read the contents of the inserted disc.\r\n\r\n"
        "Error# 57 Device I/O error");
  CHECK_FALSE(machine.forms().frmReading.exists());
  CHECK(machine.rows().empty());
  CHECK(usable(machine) == AllButExtraction);
  machine.stage().broken.clear();
  machine.read();
  CHECK(machine.rows() == ThreeNumbers);
}

TEST_CASE("A track whose end is no number any more ends the read with an overflow") {
  Ripping machine;
  machine.stage().disc = {{0, 75}, {2147483647, 1}};
  machine.desk.expectBox("Error", BoxAnswer::Ok);
  machine.read();
  CHECK(machine.desk.lastBox().text.ends_with("Error# 6 Overflow"));
  CHECK(machine.names() == Lines{"01"});
}

TEST_CASE("Nothing that fails in a look-up is told, and the read goes on with what it has") {
  const auto& [call, known] = GENERATE(table<std::string, bool>({{"CDRipperX1.DiscPresent", true},
                                                                 {"m_objCDDB.ConfigureServer", true},
                                                                 {"m_objCDDB.QueryDrive", true},
                                                                 {"m_objCDDB.Matches", false}}));
  CAPTURE(call);
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"});
  // Only the look-up's own question about the disc fails.
  machine.pump.onPump = [&, broken = call] { machine.stage().broken.insert(broken); };
  machine.read();
  CHECK(machine.names() == (known ? Lines{"One", "02", "03"} : Lines{"01", "02", "03"}));
  CHECK(machine.form().caption == std::string(known ? "Trackloom CD Ripper (Anna - Evenings)" : "CD Ripper"));
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("A disc that goes between the two looks at it is not looked up") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"});
  machine.pump.onPump = [&] { machine.stage().disc.reset(); };
  machine.read();
  CHECK(machine.status() == "No CD in the selected drive to read...");
  for (const std::string& call : machine.stage().take()) CHECK_FALSE(call.starts_with("m_objCDDB"));
  CHECK(machine.form().caption == std::string("CD Ripper"));
}

TEST_CASE("A second read forgets the rows, ticks and artist of the first") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One", "Two", "Three"}, "Jazz", "1999");
  machine.read();
  machine.form().cmdSelectAll.click();
  machine.stage().disc = {{0, 75}};
  machine.stage().matches.clear();
  machine.read();
  CHECK(machine.names() == Lines{"01"});
  CHECK(machine.form().ListView2.CheckedCount() == 0);
  CHECK_FALSE(machine.form().cmdExtract.Enabled);
  CHECK(Trim(machine.rip().DiscArtist.get()).empty());
  CHECK(Trim(machine.rip().DiscAlbum.get()) == "Evenings");
  CHECK(machine.rip().DiscYear.get() == "1999");
  CHECK(machine.rip().DiscGenre == 8);
}

TEST_CASE("A match without anything leaves an empty artist, album and year, and the first of the genres") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"}, "Jazz", "1999");
  machine.read();
  machine.know("", "", {});
  machine.read();
  CHECK(machine.form().caption == std::string("Trackloom CD Ripper ( - )"));
  CHECK(machine.rip().DiscAlbum.get() == std::string(30, ' '));
  CHECK(machine.rip().DiscYear.get() == std::string(4, ' '));
  CHECK(machine.rip().DiscGenre == 0);
  CHECK(machine.names() == Lines{"01", "02", "03"});
}

TEST_CASE("An empty title is the name of its row") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One", "", "Three"});
  machine.read();
  CHECK(machine.names() == Lines{"One", "", "Three"});
}

TEST_CASE("A tick in any row allows the extraction, and the last one that goes takes it back") {
  Ripping machine;
  machine.read();
  ListView& list = machine.form().ListView2;
  list.check(3, true);
  CHECK(machine.form().cmdExtract.Enabled);
  list.check(1, true);
  list.check(3, false);
  CHECK(machine.form().cmdExtract.Enabled);
  list.check(1, false);
  CHECK_FALSE(machine.form().cmdExtract.Enabled);
  machine.form().cmdSelectAll.click();
  CHECK(list.CheckedCount() == 3);
  CHECK(machine.form().cmdExtract.Enabled);
  machine.form().cmdSelectNone.click();
  CHECK(list.CheckedCount() == 0);
  CHECK_FALSE(machine.form().cmdExtract.Enabled);
}

TEST_CASE("A ticked row that is no track allows no extraction") {
  Ripping machine;
  machine.read();
  machine.form().ListView2.Add({"Data", {}, 2});
  machine.form().ListView2.check(4, true);
  CHECK_FALSE(machine.form().cmdExtract.Enabled);
  machine.form().ListView2.check(2, true);
  CHECK(machine.form().cmdExtract.Enabled);
}

TEST_CASE("The user can name rows, and nothing sorts them") {
  Ripping machine;
  machine.read();
  machine.form().ListView2.edit(1, "zzz");
  CHECK(machine.names() == Lines{"zzz", "02", "03"});
  CHECK_FALSE(machine.form().ListView2.Sorted());
}

TEST_CASE("The ripper begins afresh each time it is opened, and what is known of the last disc stays") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"});
  machine.read();
  machine.form().closeBox();
  CHECK(machine.window().visible());
  CHECK_FALSE(machine.forms().frmRipMain.exists());
  machine.click("Ripper");
  CHECK(machine.form().caption == std::string("CD Ripper"));
  CHECK(machine.rows().empty());
  CHECK(machine.form().cboSpeeds.items().empty());
  CHECK(Trim(machine.rip().DiscArtist.get()) == "Anna");
}

TEST_CASE("While a disc is read the ripper's window cannot be closed, and its reading window can") {
  Ripping machine;
  machine.pump.onPump = [&] {
    machine.form().closeBox();
    CHECK(machine.forms().frmRipMain.exists());
    machine.forms().frmReading->closeBox();
    CHECK_FALSE(machine.forms().frmReading.exists());
  };
  machine.read();
  CHECK(machine.rows() == ThreeNumbers);
  CHECK(machine.form().cmdSelectAll.Enabled);
  CHECK_FALSE(machine.form().cmdExtract.Enabled);
}

TEST_CASE("A read whose windows have both been closed in its pump runs to its end and touches no new window") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"});
  const bool broken = GENERATE(false, true);
  machine.pump.onPump = [&] {
    machine.forms().frmReading->closeBox();
    machine.form().closeBox();
    if (broken) machine.stage().broken.insert("CDRipperX1.ReadTOC");
  };
  if (broken) machine.desk.expectBox("Error", BoxAnswer::Ok);
  machine.read();
  CHECK(machine.desk.finished());
  CHECK_FALSE(machine.forms().frmRipMain.exists());
  CHECK_FALSE(machine.forms().frmReading.exists());
  CHECK(machine.window().visible());
  for (const std::string& call : machine.stage().take()) CHECK_FALSE(call.starts_with("m_objCDDB"));
}

TEST_CASE("A read that begins in the pump of another one leaves the disc listed once") {
  Ripping machine;
  int pumps = 0;
  machine.pump.onPump = [&] {
    if (++pumps > 1) return;
    machine.forms().frmReading->closeBox();
    machine.read();
  };
  machine.read();
  CHECK(pumps == 2);
  CHECK(machine.rows() == ThreeNumbers);
  CHECK(usable(machine) == AllButExtraction);
}

TEST_CASE("E140: A data track ahead has no row, so each row bears the name and times of the track behind its place") {
  Ripping machine;
  machine.stage().disc = {{0, 100, false}, {100, 75}, {175, 150}};
  machine.know("Anna", "Evenings", {"Data", "One", "Two"});
  machine.read();
  CHECK(machine.rows() == Lines{"One|00:01:25|00:02:25|00:01:00", "Two|00:02:25|00:04:25|00:02:00"});
}

TEST_CASE("E141: Titles beyond the disc's tracks are not shown, and rows without one are numbered") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One", "Two", "Three", "Four", "Five"});
  machine.read();
  CHECK(machine.names() == Lines{"One", "Two", "Three"});
  machine.know("Anna", "Evenings", {"One"});
  machine.read();
  CHECK(machine.names() == Lines{"One", "02", "03"});
  machine.stage().disc = std::vector<fakes::FakeRipTrack>(12, {0, 75});
  machine.stage().matches.clear();
  machine.read();
  CHECK(machine.names().at(9) == "10");
  machine.stage().disc->front().audio = false;
  machine.read();
  CHECK(machine.names().front() == "02");
}

TEST_CASE("E142: A title with two slashes keeps the second, so its file cannot be made, which is told") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"a/b/c"});
  machine.read();
  CHECK(machine.names().front() == "a-b/c");
  machine.check({1});
  machine.hearing.heard();
  machine.extract();
  const Lines heard = machine.hearing.heard();
  CHECK(std::find(heard.begin(), heard.end(), "CDRipperX1.QueueTrack(1, rips/a-b/c.wav, 1)") != heard.end());
  CHECK(std::find(heard.begin(), heard.end(), "  StatusBar1 \"Error Creating File...\"") != heard.end());
  CHECK_FALSE(machine.folder.has("rips/a-b"));
}

TEST_CASE("E143: A genre of no row is 255 and no genre the first row, which is Blues") {
  Ripping machine;
  machine.know("Anna", "Evenings", {}, "Gangsta");
  machine.read();
  CHECK(machine.rip().DiscGenre == 255);
  machine.know("Anna", "Evenings", {}, "");
  machine.read();
  CHECK(machine.rip().DiscGenre == 0);
}

TEST_CASE("E144: Without the look-up the caption stays, the artist goes, and album, year and genre linger") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One"}, "Jazz", "1999");
  machine.read();
  machine.form().chkCDDB.click();
  machine.stage().take();
  machine.read();
  CHECK(machine.stage().take() == Lines{"CDRipperX1.SelectRipDrive(0)", "CDRipperX1.DiscPresent",
                                        "CDRipperX1.SelectRipDrive(0)", "CDRipperX1.MaxSpeed", "CDRipperX1.SetSpeed(0)",
                                        "CDRipperX1.ReadTOC", "CDRipperX1.TrackCount"});
  CHECK(machine.form().caption == std::string("Trackloom CD Ripper (Anna - Evenings)"));
  CHECK(machine.names() == Lines{"01", "02", "03"});
  CHECK(Trim(machine.rip().DiscArtist.get()).empty());
  CHECK(Trim(machine.rip().DiscAlbum.get()) == "Evenings");
  CHECK(machine.rip().DiscYear.get() == "1999");
  CHECK(machine.rip().DiscGenre == 8);
}

TEST_CASE("E145: Choosing another drive clears nothing and asks nothing, until it is read") {
  Ripping machine([](Ripping& before) { before.stage().drives.push_back({"E"}); });
  machine.read();
  machine.check({2});
  machine.stage().take();
  machine.form().ImageCombo1.choose(1);
  CHECK(machine.stage().take().empty());
  CHECK(machine.rows() == ThreeNumbers);
  CHECK(machine.form().cmdExtract.Enabled);
  machine.read();
  const Lines calls = machine.stage().take();
  CHECK(calls.front() == "CDRipperX1.SelectRipDrive(1)");
  CHECK(std::find(calls.begin(), calls.end(), "m_objCDDB.QueryDrive(1, E, \"\", \"\")") != calls.end());
}

TEST_CASE("E146: Select All of an empty list allows the extraction all the same") {
  Ripping machine;
  machine.stage().contentsReadable = false;
  machine.read();
  machine.form().cmdSelectAll.click();
  CHECK(machine.form().cmdExtract.Enabled);
  machine.form().cmdSelectNone.click();
  CHECK_FALSE(machine.form().cmdExtract.Enabled);
}

TEST_CASE("E147: A disc of data tracks alone lists nothing, and says that it is listed") {
  Ripping machine;
  machine.stage().disc = {{0, 100, false}, {100, 100, false}};
  machine.read();
  CHECK(machine.rows().empty());
  CHECK(machine.status() == "Contents of current inserted CD listed...");
  CHECK(usable(machine) == AllButExtraction);
}

}  // namespace trackloom
