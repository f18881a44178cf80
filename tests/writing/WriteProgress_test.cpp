#include <catch2/catch.hpp>

#include "writing/Recording.h"

namespace trackloom {

using fakes::Recording;
using Lines = std::vector<std::string>;

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

TEST_CASE("Caching is told in words and by a bar of its own, and takes the bar of the track back") {
  Recording machine;
  machine.record();
  CDWriterEvents& events = machine.cdr1().events;
  machine.status().pbTrack.SetValue(50);
  events.OnTrackCacheStart(2, 700);
  CHECK(machine.status().pbTrack.Value() == 0);
  CHECK(machine.status().pbCache.Max() == 700);
  CHECK(machine.desk.transcript.back() == "repaint lblOperation");
}

TEST_CASE("While an image is written, caching is shown by the hidden dialog of images, and nothing else moves") {
  Recording machine;
  machine.record();
  machine.mod().IsoWriteActive = true;
  frmStatus& status = machine.status();
  bool moved = false;
  std::vector<Connection> watched;
  for (Control* control : status.controls()) watched.push_back(control->changed.connect([&] { moved = true; }));
  machine.cdr1().events.OnTrackCacheStart(1, 700);
  machine.cdr1().events.OnCacheProgress(300);
  CHECK_FALSE(moved);
  CHECK(status.cmdCancel.Enabled);
  frmISO& hidden = machine.program().forms().writing.frmISO.get();
  CHECK(hidden.pbCache.Max() == 700);
  CHECK(hidden.pbCache.Value() == 300);
  CHECK_FALSE(hidden.visible());
}

TEST_CASE("E097: A test and the write of one track tell \"1 of 1\" twice, and what the disc is good for") {
  Recording machine;
  machine.window().ListView1.Remove(2);
  machine.record([](frmOptions& form) { form.optTestWrite.click(); });
  Lines told;
  Label& tracks = machine.status().lblTracks;
  const Connection watch = tracks.changed.connect([&] { told.push_back(tracks.Caption); });
  machine.cdr1().finish();
  machine.window().Timer1.tick();
  std::string text;
  machine.expectDone(text);
  machine.cdr1().finish();
  CHECK(std::count(told.begin(), told.end(), "1 of 1") == 2);
  CHECK(machine.mod().WritePhase == RealWrite);
  CHECK(text.starts_with("The created audio disc is ready"));
}

TEST_CASE("E098: The first block of the first track is 0 percent of the whole, the last of the last one 100") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Recording machine(kind);
  machine.record();
  CDWriterEvents& events = machine.cdr1().events;
  events.OnWriteStarting();
  events.OnTrackWriteStart(1, 1000);
  machine.status().pbOverall.SetValue(50);
  events.OnWriteProgress(1, 1, 0);
  CHECK(machine.status().pbOverall.Value() == 0);
  const std::int16_t last = kind == AudioLayout ? 2 : 1;
  events.OnTrackWriteStart(last, 500);
  events.OnWriteProgress(last, 500, 0);
  CHECK(machine.status().pbOverall.Value() == 100);
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

TEST_CASE("E099: A device error of number 0 still has its number behind its words") {
  Recording machine;
  machine.record();
  machine.cdr1().errorText = "medium error";
  CHECK(machine.errorAfter([&] { machine.cdr1().events.OnWriteError(DeviceError, 0); }) ==
        " A device error has occurred. Device Error: 0\r\nError Data - medium error");
}

TEST_CASE("E100: An error of a code that nobody knows opens the window of errors all the same") {
  const std::int32_t code = GENERATE(99, 4, -1);
  Recording machine;
  machine.record();
  CHECK(machine.errorAfter([&] { machine.cdr1().events.OnWriteError(code, 7); }) == " Unknown error occurred.");
}

TEST_CASE("A write error tells its words and ejects only when they are closed") {
  struct Case {
    std::int32_t code;
    const char* text;
  };
  const auto c = GENERATE(Case{0, " The read buffer could not be initialized...check your memory/disc resources."},
                          Case{1, " The write buffer could not be initialized...check your memory/disc resources."},
                          Case{2, " A file error was encountered while writing the disc."},
                          Case{3, " A device error has occurred. Device Error: 5\r\nError Data - medium error"});
  Recording machine;
  machine.record();
  machine.cdr1().errorText = "medium error";
  machine.engines.stage.take();
  machine.desk.expectForm<frmError>("frmError", [&](frmError& form) {
    CHECK(form.lblError.Caption == std::string(c.text));
    CHECK(machine.engines.stage.transcript.empty());
    form.cmdClose.click();
  });
  machine.cdr1().events.OnWriteError(c.code, 5);
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
  CHECK(machine.desk.lastBox().ofFailure);
  CHECK_FALSE(forms.frmErase.exists());
  CHECK_FALSE(forms.frmDiskInfo.exists());
  CHECK_FALSE(forms.frmError.exists());
  CHECK(machine.engines.stage.take().empty());
}

}  // namespace trackloom
