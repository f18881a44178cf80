#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "writing/WritingForms.h"

namespace trackloom {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// A machine with a layout of two tracks, ready to record.
class Recording : public Machine {
 public:
  explicit Recording(std::int16_t kind = AudioLayout) {
    startQuietly();
    newLayout(kind);
    addTrack("a.mp3", 1000);
    addTrack("b.mp3", 500);
    engines.stage.take();
    desk.transcript.clear();
  }

  void record(const std::function<void(frmOptions&)>& choose = {}) {
    desk.expectForm<frmOptions>("frmOptions", [choose](frmOptions& form) {
      if (choose) choose(form);
      form.cmdOK.click();
    });
    click("Record");
  }
  void refused(const std::string& title) {
    desk.expectBox(title, BoxAnswer::Ok);
    click("mnuActionsRecord");
    CHECK(desk.finished());
    CHECK_FALSE(mod().RecordConfirmed);
    CHECK(window().visible());
  }
  /// The write of one track goes through and ends well.
  void complete() {
    CDWriterEvents& events = cdr1().events;
    events.OnWriteStarting();
    events.OnTrackWriteStart(1, 1000);
    events.OnWriteProgress(1, 1000, 80);
    events.OnTrackClosing(1);
    events.OnOperationComplete();
  }
  void expectDone(std::string& text) {
    desk.expectForm<frmDone>("frmDone", [&text](frmDone& form) {
      text = form.lblTypeInfo.Caption;
      form.cmdClose.click();
    });
  }
  frmStatus& status() { return program().forms().writing.frmStatus.get(); }
};

}  // namespace

TEST_CASE("Recording without a disc is refused before anything else") {
  Recording machine;
  machine.engines.stage.disc.reset();
  machine.refused("Media Not Loaded");
  CHECK(machine.desk.lastBox().text ==
        "Please insert a CDR disc into the chosen drive and select the Record CD option again when ready.");
}

TEST_CASE("A closed disc is refused before any file is looked at") {
  Recording machine(Mp3Layout);
  machine.engines.stage.disc->status = DiscClosed;
  std::filesystem::remove(machine.folder / "music/a.mp3");
  machine.refused("Closed Disc");
}

TEST_CASE("A rewritable disc asks on an audio layout and not on an MP3 layout") {
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

TEST_CASE("A layout that exactly fills the disc passes, and one block more is refused") {
  Recording machine;
  machine.engines.stage.disc->freeAudio = 1499;
  machine.refused("CD Changed");
  CHECK(machine.mod().DiscBlocks == 1499);
  CHECK(machine.window().Progress1.Maximum.get() == 359849);
  machine.engines.stage.disc->freeAudio = 1500;
  machine.record();
  CHECK(machine.mod().RecordConfirmed);
}

TEST_CASE("The options show what the layout can use") {
  Recording audio;
  audio.record([](frmOptions& form) {
    CHECK(form.optTrack.Enabled);
    CHECK_FALSE(form.optLeaveOpen.Enabled);
    CHECK_FALSE(form.txtVolume.Enabled);
    CHECK_FALSE(form.lblVolume.Visible);
    CHECK(form.optCreateOnly.selected());
    CHECK(form.optClose.selected());
    CHECK_FALSE(form.chkCache.Value);
    CHECK(form.Pic2.Visible);
    form.TS1.choose(2);
    CHECK(form.Pic1.Visible);
    CHECK_FALSE(form.Pic2.Visible);
  });
  Recording data(Mp3Layout);
  data.record([](frmOptions& form) {
    CHECK_FALSE(form.optTrack.Enabled);
    CHECK(form.optLeaveOpen.Enabled);
    CHECK(form.txtVolume.Enabled);
    CHECK(form.lblVolume.Visible);
    form.txtVolume.type("  ");
  });
  CHECK(data.mod().DiscVolumeLabel == "New MP3 CD");
}

TEST_CASE("The speeds go down by fours and by halves, and the highest reaches the engine at once") {
  struct Case {
    std::int16_t max;
    const char* list;
  };
  const auto c = GENERATE(Case{48, "48x44x40x36x32x28x24x20x16x12x8x4x2x1x"}, Case{10, "10x6x2x1x"}, Case{5, "5x1x"},
                          Case{3, "3x2x1x"}, Case{4, "4x2x1x"}, Case{2, "2x1x"}, Case{1, "1x"}, Case{0, "Default"});
  Recording machine;
  machine.engines.stage.drives[0].maxSpeed = c.max;
  machine.engines.stage.take();
  machine.desk.expectForm<frmOptions>("frmOptions", [&](frmOptions& form) {
    std::string list;
    for (const ComboBox::Item& item : form.cboWriteSpeed.items()) list += item.text;
    CHECK(list == c.list);
    form.cmdCancel.click();
  });
  machine.click("Record");
  CHECK_FALSE(machine.mod().RecordConfirmed);
  const Lines calls = machine.engines.stage.take();
  const std::string set = "CDR1.SetWriteSpeed(" + std::to_string(c.max) + ")";
  CHECK((std::find(calls.begin(), calls.end(), set) != calls.end()) == (c.max > 0));
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

TEST_CASE("An audio disc that is open holds no session that a data write could import") {
  Recording machine(Mp3Layout);
  machine.engines.stage.disc = fakes::FakeDisc::withOpenSession(AudioBlocks);
  machine.record();
  CHECK(machine.status().lblOperation.Caption == std::string());
}

TEST_CASE("The close modes and the cache reach the engine") {
  Recording machine;
  machine.record([](frmOptions& form) {
    form.optTrack.click();
    form.chkCache.click();
  });
  CHECK_FALSE(machine.cdr1().CloseDisc());
  CHECK(machine.cdr1().CacheAudioTracks());
  CHECK_FALSE(machine.cdr1().CacheDataTrack());
  CHECK(machine.status().Frame2.Enabled);
}

TEST_CASE("The events of a write tell the status window how it goes on") {
  Recording machine;
  machine.record();
  CDWriterEvents& events = machine.cdr1().events;
  frmStatus& status = machine.status();
  events.OnWriteStarting();
  CHECK(status.lblOperation.Caption == std::string("Preparing to write disc...Please wait..."));
  events.OnTrackCacheStart(1, 1000);
  CHECK(status.lblOperation.Caption == std::string("Caching Track #1..."));
  CHECK_FALSE(status.cmdCancel.Enabled);
  events.OnCacheProgress(400);
  CHECK(status.pbCache.Value() == 400);
  events.OnTrackWriteStart(1, 1000);
  CHECK(status.lblOperation.Caption == std::string("Writing Track #1..."));
  CHECK(status.cmdCancel.Enabled);
  CHECK(status.pbCache.Value() == 0);
  events.OnWriteProgress(1, 0, 12);
  CHECK(status.pbOverall.Value() == 0);
  events.OnWriteProgress(1, 500, 97);
  CHECK(status.pbTrack.Value() == 500);
  CHECK(status.pbOverall.Value() == 25);
  CHECK(status.lblDevice.Caption == std::string("97%"));
  events.OnReadBufferLevel(88);
  CHECK(status.lblBuffer.Caption == std::string("88%"));
  events.OnTrackClosing(1);
  CHECK(status.lblOperation.Caption == std::string("Closing Track #1..."));
  CHECK(status.lblTracks.Caption == std::string("1 of 2"));
  events.OnTrackWriteStart(2, 500);
  events.OnWriteProgress(2, 500, 97);
  CHECK(status.pbOverall.Value() == 100);
  events.OnSessionClosing();
  CHECK(status.lblOperation.Caption == std::string("Closing session...Please wait..."));
  CHECK(status.lblTracks.Caption == std::string(""));
  CHECK_FALSE(status.cmdCancel.Enabled);
  events.OnDiscClosing();
  CHECK(status.lblOperation.Caption == std::string("Closing disc...This operation can take several minutes on slower "
                                                   "CD recording drives...Please wait..."));
}

TEST_CASE("A track of no blocks does not end the program") {
  Recording machine;
  machine.record();
  machine.cdr1().events.OnWriteStarting();
  machine.cdr1().events.OnTrackWriteStart(1, 0);
  machine.cdr1().events.OnWriteProgress(1, 0, 5);
  CHECK(machine.status().lblDevice.Caption == std::string("5%"));
}

TEST_CASE("A finished write shows the main window, ejects, and tells what the disc is good for") {
  Recording machine;
  machine.record();
  machine.desk.transcript.clear();
  std::string text;
  machine.expectDone(text);
  machine.engines.stage.take();
  machine.complete();
  CHECK(text ==
        "The created audio disc is ready to be played in any standard CD player.  No further tracks can be "
        "added to this disc.");
  CHECK(machine.engines.stage.take() == Lines{"CDR1.EjectDisc"});
  CHECK(machine.window().visible());
  const Lines shown = machine.desk.transcript;
  CHECK(Lines(shown.end() - 4, shown.end()) ==
        Lines{"unload frmStatus", "show frmListing", "modal frmDone", "unload frmDone"});
}

TEST_CASE("A test before the write pauses on the same disc and then writes for real") {
  Recording machine;
  machine.record([](frmOptions& form) { form.optTestWrite.click(); });
  CHECK(machine.cdr1().TestMode());
  machine.engines.stage.take();
  machine.complete();
  CHECK(machine.engines.stage.take().empty());
  CHECK(machine.window().Timer1.Enabled);
  CHECK(machine.status().lblTracks.Caption == std::string("N/A"));
  machine.window().Timer1.tick();
  CHECK_FALSE(machine.cdr1().TestMode());
  std::string text;
  machine.expectDone(text);
  machine.complete();
  CHECK(text.starts_with("The created audio disc is ready"));
}

TEST_CASE("After a test only the words are those of a test") {
  Recording machine;
  machine.record([](frmOptions& form) { form.optTestOnly.click(); });
  std::string text;
  machine.expectDone(text);
  machine.complete();
  CHECK(text ==
        "Test creation of the current layout was performed successfully.  No errors were encountered during the "
        "testing process.");
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

TEST_CASE("A write error tells its words and ejects only when they are closed") {
  struct Case {
    std::int32_t code;
    const char* text;
  };
  const auto c = GENERATE(Case{0, " The read buffer could not be initialized...check your memory/disc resources."},
                          Case{1, " The write buffer could not be initialized...check your memory/disc resources."},
                          Case{2, " A file error was encountered while writing the disc."},
                          Case{3, " A device error has occurred. Device Error: 0\r\nError Data - medium error"},
                          Case{99, " Unknown error occurred."});
  Recording machine;
  machine.record();
  machine.cdr1().errorText = "medium error";
  machine.engines.stage.take();
  machine.desk.expectForm<frmError>("frmError", [&](frmError& form) {
    CHECK(form.lblError.Caption == std::string(c.text));
    CHECK(machine.engines.stage.transcript.empty());
    form.cmdClose.click();
  });
  machine.cdr1().events.OnWriteError(c.code, 0);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.EjectDisc"});
  CHECK(machine.window().visible());
}

TEST_CASE("An error outside of a write is told in a box, closes the disc dialogs and ejects nothing") {
  const bool erasing = GENERATE(true, false);
  Recording machine;
  WritingForms& forms = machine.program().forms().writing;
  forms.frmErase.get();
  forms.frmDiskInfo.get();
  machine.engines.stage.take();
  machine.desk.expectForm<Form>(erasing ? "frmErase" : "frmDiskInfo", [&](const Form& form) {
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    machine.cdr1().events.OnWriteError(3, 7);
    CHECK(form.closed());
  });
  (erasing ? forms.frmErase->showModal(&machine.window()) : forms.frmDiskInfo->showModal(&machine.window()));
  CHECK(machine.desk.finished());
  CHECK_FALSE(forms.frmErase.exists());
  CHECK_FALSE(forms.frmDiskInfo.exists());
  CHECK_FALSE(forms.frmError.exists());
  CHECK(machine.engines.stage.take().empty());
}

TEST_CASE("Cancelling a write aborts, hides, tells, ejects, in that order") {
  Recording machine;
  machine.record();
  frmStatus& status = machine.status();
  machine.engines.stage.take();
  machine.desk.expectBox("Cancel", BoxAnswer::Cancel);
  status.cmdCancel.click();
  CHECK(machine.engines.stage.take().empty());

  machine.desk.expectBox("Cancel", BoxAnswer::Ok);
  machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
  machine.desk.transcript.clear();
  status.cmdCancel.click();
  CHECK(machine.engines.stage.take() == Lines{"CDR1.AbortWrite", "CDR1.EjectDisc"});
  CHECK(machine.desk.transcript == Lines{"hide frmStatus", "show frmListing", "unload frmStatus"});
  CHECK(machine.desk.lastBox().text ==
        "The current write operation has been cancelled.\r\n\r\nThe inserted disc may be unusable now.");
}

TEST_CASE("A write that ends while the user is asked about cancelling is not cancelled any more") {
  Recording machine;
  machine.record();
  frmStatus& status = machine.status();
  const auto alive = status.keepAlive();
  machine.engines.stage.take();
  std::string text;
  machine.desk.expectBox("Cancel", BoxAnswer::Ok);
  machine.expectDone(text);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) { machine.complete(); };
  status.cmdCancel.click();
  CHECK(text.starts_with("The created audio disc is ready"));
  CHECK(machine.engines.stage.take() == Lines{"CDR1.EjectDisc"});
  CHECK(machine.desk.boxes.size() == 1);
}

TEST_CASE("Cancel in the pause behind a passed test or a copy lets nothing more be written") {
  for (const bool test : {true, false}) {
    Recording machine;
    machine.record([test](frmOptions& form) {
      if (test)
        form.optTestWrite.click();
      else
        form.VScroll1.scrollTo(2);
    });
    machine.complete();
    machine.engines.stage.disc = fakes::FakeDisc{};
    Timer& timer = test ? machine.window().Timer1 : machine.window().Timer2;
    REQUIRE(timer.Enabled);
    machine.engines.stage.take();
    machine.desk.expectBox("Cancel", BoxAnswer::Ok);
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { timer.tick(); };
    machine.status().cmdCancel.click();
    timer.tick();
    CHECK_FALSE(timer.Enabled);
    CHECK(machine.engines.stage.take() == Lines{"CDR1.AbortWrite", "CDR1.EjectDisc"});
    CHECK(machine.desk.finished());
  }
}

TEST_CASE("What is written next waits while the user is asked about cancelling, and follows when he goes on") {
  Recording machine;
  machine.record([](frmOptions& form) { form.optTestWrite.click(); });
  machine.engines.stage.take();
  machine.desk.expectBox("Cancel", BoxAnswer::Cancel);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    machine.complete();
    machine.window().Timer1.tick();
    machine.window().Timer1.tick();
    CHECK(machine.engines.stage.take().empty());
    CHECK(machine.cdr1().TestMode());
  };
  machine.status().cmdCancel.click();
  CHECK_FALSE(machine.cdr1().TestMode());
  CHECK(machine.engines.stage.take() == Lines{"CDR1.StartWrite"});
  CHECK_FALSE(machine.window().Timer1.Enabled);
}

TEST_CASE("A question about cancelling that is answered in time leaves the pause as long as it was") {
  Recording machine;
  machine.record([](frmOptions& form) { form.optTestWrite.click(); });
  machine.complete();
  machine.engines.stage.take();
  machine.desk.expectBox("Cancel", BoxAnswer::Cancel);
  machine.status().cmdCancel.click();
  CHECK(machine.engines.stage.take().empty());
  CHECK(machine.window().Timer1.Enabled);
  machine.window().Timer1.tick();
  CHECK_FALSE(machine.cdr1().TestMode());
}

TEST_CASE("The status window refuses to be closed by its user") {
  Recording machine;
  machine.record();
  frmStatus& status = machine.status();
  status.closeBox();
  CHECK(status.visible());
}

}  // namespace trackloom
