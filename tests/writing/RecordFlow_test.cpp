#include <catch2/catch.hpp>

#include "writing/Recording.h"

namespace trackloom {

using fakes::FakeDataQueue;
using fakes::Recording;
using Lines = std::vector<std::string>;

namespace {

/// The calls by which the engine is told what to write.
Lines tracksAsked(Recording& machine) {
  const std::string music = machine.folder.path() + "/music/";
  Lines asked;
  for (std::string call : machine.engines.stage.take())
    if (call.starts_with("CDR1.Add")) asked.push_back(call.erase(call.find(music), music.size()));
  return asked;
}

/// The user drags one row onto another.
void drag(Recording& machine, int from, int to) {
  ListView& listing = machine.window().ListView1;
  const auto middle = [](int row) { return ListView::DragRowHeight * (row + 0.5); };
  listing.reportView(1, ListView::DragRowHeight * 11);
  listing.press(MouseButton::Left);
  listing.dragOver(middle(from));
  listing.dragOver(middle(to));
  listing.drop(middle(to));
}

}  // namespace

TEST_CASE("E081: The rows of an audio layout that were dragged into a new order are written in the new order") {
  Recording machine;
  machine.addTrack("c.mp3", 10);
  drag(machine, 1, 3);
  machine.engines.stage.take();
  machine.record();
  CHECK(tracksAsked(machine) ==
        Lines{"CDR1.AddAudioTrack(b.mp3, 1)", "CDR1.AddAudioTrack(c.mp3, 2)", "CDR1.AddAudioTrack(a.mp3, 3)"});
}

TEST_CASE("E082: After removals the tracks of an audio disc have the numbers from 1 on without gaps") {
  Recording machine;
  machine.addTrack("c.mp3", 10);
  machine.addTrack("d.mp3", 20);
  for (const int row : {1, 2}) {
    machine.window().ListView1.SelectRow(row);
    machine.desk.expectBox("Remove Track", BoxAnswer::Ok);
    machine.click("Delete");
  }
  REQUIRE(machine.cdr1().audioQueue.at(0).number == 2);
  REQUIRE(machine.cdr1().audioQueue.at(1).number == 4);
  machine.engines.stage.take();
  machine.record();
  CHECK(tracksAsked(machine) == Lines{"CDR1.AddAudioTrack(b.mp3, 1)", "CDR1.AddAudioTrack(d.mp3, 2)"});
  CHECK(machine.cdr1().audioQueue.size() == 2);
  CHECK(machine.mod().NextTrackNumber == 5);
}

TEST_CASE("E083: An MP3 layout on an empty disc imports nothing and does not speak of it") {
  Recording machine(Mp3Layout);
  std::string said = "nothing yet";
  machine.engines.stage.onLine = [&](const std::string& call) {
    if (call.starts_with("CDR1.VolumeLabel")) said = machine.status().lblOperation.Caption;
  };
  machine.record();
  CHECK(said.empty());
  const Lines calls = machine.engines.stage.take();
  CHECK(std::count(calls.begin(), calls.end(), "CDR1.ImportLastSession(True)") == 1);
  const Lines& shown = machine.desk.transcript;
  CHECK(std::count(shown.begin(), shown.end(), "repaint frmStatus") == 0);
}

TEST_CASE("E084: The import of an earlier session is shown before the first file is queued") {
  Recording machine(Mp3Layout);
  machine.engines.stage.disc = fakes::FakeDisc::withOpenSession(DataBlocks);
  Lines seen;
  machine.engines.stage.onLine = [&](const std::string& call) {
    if (call.starts_with("CDR1.AddDataFile"))
      seen.push_back(machine.desk.transcript.back() + ": " + machine.status().lblOperation.Caption.get());
  };
  machine.record();
  CHECK(seen == Lines(2, "repaint frmStatus: Importing Previous Session..."));
}

TEST_CASE("E085: Without the cache of data its frame is off and its bar idle for that write, and on in the next") {
  Recording machine(Mp3Layout);
  machine.record([](frmOptions& form) { form.optLeaveOpen.click(); });
  CHECK_FALSE(machine.status().Frame2.Enabled);
  bool moved = false;
  const Connection watch = machine.status().pbCache.changed.connect([&] { moved = true; });
  std::string text;
  machine.expectDone(text);
  machine.cdr1().finish();
  CHECK_FALSE(moved);

  machine.engines.stage.disc = fakes::FakeDisc{};
  machine.record([](frmOptions& form) { form.chkCache.click(); });
  CHECK(machine.status().Frame2.Enabled);
}

TEST_CASE("E090: Recording without a disc is refused before anything else, even where there is nothing to record") {
  Recording machine;
  machine.window().ListView1.Clear();
  machine.engines.stage.disc.reset();
  machine.refused("Media Not Loaded");
  CHECK(machine.desk.lastBox().text ==
        "Please insert a CDR disc into the chosen drive and select the Record CD option again when ready.");
}

TEST_CASE("E092: A closed disc is refused before any file is looked at") {
  Recording machine(Mp3Layout);
  machine.engines.stage.disc->status = DiscClosed;
  std::filesystem::remove(machine.folder / "music/a.mp3");
  machine.refused("Closed Disc");
}

TEST_CASE("E093: A rewritable disc asks on an audio layout before any file is looked at, and not on an MP3 layout") {
  Recording audio;
  audio.engines.stage.disc->rewritable = true;
  std::filesystem::remove(audio.folder / "music/b.mp3");
  audio.desk.expectBox("CDRW Disc Inserted", BoxAnswer::Cancel);
  audio.click("Record");
  CHECK(audio.desk.boxes.size() == 1);
  CHECK(audio.desk.lastBox().buttons == BoxButtons::OkCancel);
  CHECK(audio.desk.lastBox().icon == BoxIcon::Question);

  Recording data(Mp3Layout);
  data.engines.stage.disc->rewritable = true;
  data.record();
  CHECK(data.desk.boxes.empty());
}

TEST_CASE("A missing track is told by its number, asked for where no slow folder holds up the window") {
  Recording machine;
  machine.folders.lost = {machine.folder / "music/b.mp3"};
  machine.refused("Missing Track");
  CHECK(machine.desk.lastBox().text ==
        "Trackloom was unable to find Track #2 in the location specified in your Layout.\r\n\r\nCD creation has "
        "stopped.");
}

TEST_CASE("E091: A layout that exactly fills the disc passes, and one block more is refused") {
  Recording machine;
  machine.engines.stage.disc->freeAudio = 1499;
  machine.refused("CD Changed");
  CHECK(machine.mod().DiscBlocks == 1499);
  CHECK(machine.window().Progress1.Maximum.get() == 359849);
  machine.engines.stage.disc->freeAudio = 1500;
  machine.record();
  CHECK(machine.mod().RecordConfirmed);
}

TEST_CASE("An audio write hides the main window, rebuilds the queue in listing order and starts") {
  Recording machine;
  machine.record();
  const std::string music = machine.folder.path() + "/music/";
  const Lines calls = machine.engines.stage.take();
  const Lines tail(calls.end() - 5, calls.end());
  CHECK(tail == Lines{"CDR1.DiscMode=0", "CDR1.ClearAudioQueue", "CDR1.AddAudioTrack(" + music + "a.mp3, 1)",
                      "CDR1.AddAudioTrack(" + music + "b.mp3, 2)", "CDR1.StartWrite"});
  CHECK_FALSE(machine.window().visible());
  CHECK(machine.status().visible());
  CHECK(machine.mod().WriteActive);
  CHECK_FALSE(machine.status().Frame2.Enabled);
  CHECK(machine.status().lblSpeed.Caption == std::string("Write Speed:  10x"));
}

TEST_CASE("A data write imports first, then takes the label, and does not clear its queue") {
  Recording machine(Mp3Layout);
  machine.engines.stage.disc = fakes::FakeDisc::withOpenSession(DataBlocks);
  machine.record([](frmOptions& form) { form.txtVolume.type("Mix"); });
  const std::string music = machine.folder.path() + "/music/";
  const Lines calls = machine.engines.stage.take();
  const Lines tail(calls.end() - 6, calls.end());
  CHECK(tail == Lines{"CDR1.DiscMode=1", "CDR1.ImportLastSession(True)", "CDR1.VolumeLabel=Mix",
                      "CDR1.AddDataFile(\\a.mp3, " + music + "a.mp3)", "CDR1.AddDataFile(\\b.mp3, " + music + "b.mp3)",
                      "CDR1.StartWrite"});
  CHECK(machine.status().lblOperation.Caption == std::string("Importing Previous Session..."));
  CHECK(machine.desk.transcript.back() == "repaint frmStatus");
}

TEST_CASE("Two long names that begin alike are one file of the disc, and its bytes are the later track's") {
  Recording machine(Mp3Layout);
  const std::string start(60, 'x');
  machine.addTrack(start + "-early.mp3", 10);
  machine.addTrack(start + "-later.mp3", 20);
  machine.record();
  const FakeDataQueue& queue = machine.cdr1().dataQueue;
  CHECK(queue.files().size() == 3);
  CHECK(queue.entries().at("\\" + start + ".mp3").source == machine.folder / ("music/" + start + "-later.mp3"));
}

TEST_CASE("An audio disc that is open holds no session that a data write could import") {
  Recording machine(Mp3Layout);
  machine.engines.stage.disc = fakes::FakeDisc::withOpenSession(AudioBlocks);
  machine.record();
  CHECK(machine.status().lblOperation.Caption == std::string());
}

TEST_CASE("Copies wait for the next disc and are real writes, whatever was chosen") {
  Recording machine;
  machine.record([](frmOptions& form) {
    form.optTestOnly.click();
    form.VScroll1.scrollTo(2);
    CHECK(form.txtCopies.Text == std::string("2"));
  });
  machine.complete();
  CHECK(machine.window().Timer2.Enabled);
  CHECK_FALSE(machine.engines.stage.disc.has_value());
  machine.desk.expectBox("Insert Disc", BoxAnswer::Ok);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) { machine.engines.stage.disc = fakes::FakeDisc{}; };
  machine.window().Timer2.tick();
  CHECK(machine.desk.lastBox().text ==
        "Copy 1 of 2 complete.\r\n\r\nPlease insert the next disc for the next copy of the current layout and click OK "
        "when the disc is ready.");
  CHECK_FALSE(machine.window().Timer2.Enabled);
  CHECK_FALSE(machine.cdr1().TestMode());
  std::string text;
  machine.expectDone(text);
  machine.complete();
  CHECK(text.starts_with("The created audio disc is ready"));
}

TEST_CASE("Cancel at the prompt for the next disc ends with the copies made so far") {
  Recording machine;
  machine.record([](frmOptions& form) { form.VScroll1.scrollTo(5); });
  machine.complete();
  machine.desk.expectBox("Insert Disc", BoxAnswer::Cancel);
  std::string text;
  machine.expectDone(text);
  machine.window().Timer2.tick();
  CHECK(machine.mod().CopiesDone == 1);
  CHECK(machine.window().visible());
  CHECK_FALSE(machine.window().Timer2.Enabled);
}

TEST_CASE("A tick that comes while the box of the last one is open opens no second box") {
  Recording machine;
  machine.record([](frmOptions& form) { form.VScroll1.scrollTo(2); });
  machine.complete();
  machine.desk.expectBox("Insert Disc", BoxAnswer::Ok);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    machine.window().Timer2.tick();
    machine.engines.stage.disc = fakes::FakeDisc{};
  };
  machine.window().Timer2.tick();
  CHECK(machine.desk.boxes.size() == 1);
}

}  // namespace trackloom
