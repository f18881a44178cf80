#include <catch2/catch.hpp>
#include <set>

#include "writing/WrittenDialogue.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// The write of both tracks, each cached before it is written, up to the closing of the disc.
constexpr int EventsOfCachedAudio = 18;

}  // namespace

TEST_CASE("An audio disc is written and closed as its dialogue has it") {
  Dialogue machine(AudioLayout);
  machine.record();
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "audio-closed");
}

TEST_CASE("A test alone goes like the write of an audio disc, under its own words") {
  Dialogue machine(AudioLayout);
  machine.record([](frmOptions& form) { form.optTestOnly.click(); });
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "audio-tested-only");
}

TEST_CASE("A test alone of a data disc speaks of the test") {
  Dialogue machine(Mp3Layout);
  machine.record([](frmOptions& form) {
    form.optTestOnly.click();
    form.chkCache.click();
  });
  machine.expectDone();
  machine.finish();
  CHECK(machine.engines.stage.disc == std::nullopt);
  checkDialogue(machine, "data-tested-only");
}

TEST_CASE("A test, the pause and the real write of cached tracks that stay open go as their dialogue has it") {
  Dialogue machine(AudioLayout);
  machine.record([](frmOptions& form) {
    form.optTestWrite.click();
    form.optTrack.click();
    form.chkCache.click();
  });
  machine.finish();
  machine.tick(machine.window().Timer1);
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "audio-tested-cached-open");
}

TEST_CASE("A data disc is written and closed as its dialogue has it") {
  Dialogue machine(Mp3Layout);
  machine.record();
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "data-closed");
}

TEST_CASE("A cached data session behind another one, which leaves the disc open, goes as its dialogue has it") {
  Dialogue machine(Mp3Layout);
  insert(machine, fakes::FakeDisc::withOpenSession(DataBlocks));
  machine.window().ListView1.SetSubItem(2, 3, "\\Rock");
  machine.record([](frmOptions& form) {
    form.optTestWrite.click();
    form.optLeaveOpen.click();
    form.chkCache.click();
    form.txtVolume.type(" Mix ");
  });
  machine.finish();
  machine.tick(machine.window().Timer1);
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "data-tested-cached-open");
}

TEST_CASE("A test and the write behind it make every copy but the first without a test") {
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  machine.record([](frmOptions& form) {
    form.optTestWrite.click();
    form.VScroll1.scrollTo(2);
  });
  machine.finish();
  machine.tick(machine.window().Timer1);
  machine.finish();
  machine.desk.expectBox("Insert Disc", BoxAnswer::Ok);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) { insert(machine); };
  machine.tick(machine.window().Timer2);
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "copies-tested");
}

TEST_CASE("Five copies given up at the third prompt are three, of which the first was only a test") {
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  machine.record([](frmOptions& form) {
    form.optTestOnly.click();
    form.VScroll1.scrollTo(5);
  });
  machine.finish();
  for (int prompt = 1; prompt <= 2; ++prompt) {
    insert(machine);
    machine.tick(machine.window().Timer2);
    machine.finish();
  }
  machine.desk.expectBox("Insert Disc", BoxAnswer::Ok);
  machine.desk.expectBox("Insert Disc", BoxAnswer::Cancel);
  machine.expectDone();
  machine.tick(machine.window().Timer2);
  CHECK(machine.mod().CopiesDone == 3);
  checkDialogue(machine, "copies-given-up");
}

TEST_CASE("E096: Five copies given up at the third prompt are three discs, and are told like any finished write") {
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  machine.record([](frmOptions& form) { form.VScroll1.scrollTo(5); });
  machine.finish();
  for (int prompt = 1; prompt <= 2; ++prompt) {
    machine.desk.expectBox("Insert Disc", BoxAnswer::Ok);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { insert(machine); };
    machine.tick(machine.window().Timer2);
    machine.finish();
  }
  machine.desk.whileBoxIsOpen = {};
  machine.desk.expectBox("Insert Disc", BoxAnswer::Cancel);
  machine.expectDone();
  machine.tick(machine.window().Timer2);
  CHECK(machine.mod().CopiesDone == 3);
  checkDialogue(machine, "copies-five");
}

TEST_CASE("Whatever is wrong with disc, tracks and room is told one after the other, in the order of the flow") {
  Dialogue machine(AudioLayout);
  auto& disc = machine.engines.stage.disc;
  disc.reset();
  std::filesystem::remove(machine.folder / "music/a.mp3");
  const auto refused = [&](const std::string& title, BoxAnswer answer = BoxAnswer::Ok) {
    machine.desk.expectBox(title, answer);
    machine.mod().RecordConfirmed = true;
    machine.click("Record");
    CHECK_FALSE(machine.mod().RecordConfirmed);
  };
  refused("Media Not Loaded");
  insert(machine, fakes::FakeDisc{.status = DiscClosed, .rewritable = true, .freeAudio = 4});
  refused("Closed Disc");
  disc->status = DiscStatusUnknown;
  refused("CDRW Disc Inserted", BoxAnswer::Cancel);
  machine.desk.expectBox("CDRW Disc Inserted", BoxAnswer::Ok);
  refused("Missing Track");
  disc->rewritable = false;
  machine.makeTrack("a.mp3", 3);
  refused("CD Changed");
  disc->freeAudio = 5;
  machine.desk.expectForm<frmOptions>("frmOptions", [](frmOptions& form) { form.cmdCancel.click(); });
  machine.click("Record");
  CHECK_FALSE(machine.mod().RecordConfirmed);
  checkDialogue(machine, "refusals");
}

TEST_CASE(
    "On an MP3 layout what is wrong with disc, files and room is told in the same order, and no rewritable disc is") {
  Dialogue machine(Mp3Layout);
  auto& disc = machine.engines.stage.disc;
  disc.reset();
  std::filesystem::remove(machine.folder / "music/b.mp3");
  const auto refused = [&](const std::string& title) {
    machine.desk.expectBox(title, BoxAnswer::Ok);
    machine.click("Record");
    CHECK_FALSE(machine.mod().RecordConfirmed);
  };
  refused("Media Not Loaded");
  insert(machine, fakes::FakeDisc{.status = DiscClosed, .rewritable = true, .freeData = 4});
  refused("Closed Disc");
  disc->status = DiscEmpty;
  refused("Missing Track");
  machine.makeTrack("b.mp3", 2);
  refused("CD Changed");
  disc->freeData = 5;
  machine.desk.expectForm<frmOptions>("frmOptions", [](frmOptions& form) { form.closeBox(); });
  machine.click("Record");
  checkDialogue(machine, "refusals-data");
}

TEST_CASE("An error of each code is told in its own words, and the disc is ejected when they are closed") {
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  Lines ends;
  for (const std::int32_t code : {0, 1, 2, 3, 4, 99}) {
    insert(machine);
    machine.engines.stage.fault = fakes::FakeFault{.block = 1, .code = code, .number = code * 10, .words = "no laser"};
    machine.record();
    machine.heard();
    machine.hear("code " + std::to_string(code));
    machine.expectError();
    machine.finish();
    for (std::string& line : machine.heard()) ends.push_back(std::move(line));
  }
  for (const std::string& line : ends) machine.hear(line);
  checkDialogue(machine, "errors");
}

TEST_CASE("An error ends the recording in the same way in each of its phases") {
  const int events = GENERATE(range(0, EventsOfCachedAudio));
  const bool test = GENERATE(true, false);
  Dialogue machine(AudioLayout);
  machine.record([test](frmOptions& form) {
    form.chkCache.click();
    if (test) form.optTestWrite.click();
  });
  machine.step(events);
  machine.withStatus = false;
  machine.heard();
  machine.expectError();
  machine.cdr1().events.OnWriteError(FileError, 0);
  CHECK_FALSE(machine.window().Timer1.Enabled);
  checkDialogue(machine, "error-in-phase");
}

TEST_CASE("An error ends everything that was to follow: the real write behind a test, and all copies") {
  for (const bool test : {true, false}) {
    Dialogue machine(AudioLayout);
    machine.withStatus = false;
    if (test) machine.engines.stage.fault = fakes::FakeFault{.block = 3};
    machine.record([test](frmOptions& form) {
      (test ? form.optTestWrite : form.optCreateOnly).click();
      form.VScroll1.scrollTo(3);
    });
    if (!test) {
      machine.finish();
      insert(machine, fakes::FakeDisc::closed());
      machine.tick(machine.window().Timer2);
    }
    machine.expectError();
    machine.finish();
    CHECK_FALSE(machine.window().Timer1.Enabled);
    CHECK_FALSE(machine.window().Timer2.Enabled);
    checkDialogue(machine, test ? "error-in-test" : "error-in-copy");
  }
}

TEST_CASE("A write is cancelled in each phase in which its button is on, in the same words, and in no other") {
  const int events = GENERATE(range(0, EventsOfCachedAudio));
  // The button is off from the caching of each track until it is written, and from the closing of the session on.
  const bool off = std::set{2, 3, 4, 9, 10, 11, 16, 17}.contains(events);
  CAPTURE(events);
  Dialogue machine(AudioLayout);
  machine.record([](frmOptions& form) { form.chkCache.click(); });
  machine.step(events);
  machine.withStatus = false;
  machine.heard();
  REQUIRE(machine.status().cmdCancel.Enabled == !off);
  if (!off) machine.desk.expectBox("Cancel", BoxAnswer::Cancel);
  machine.status().cmdCancel.click();
  if (off) {
    CHECK(machine.heard().empty());
    return;
  }
  machine.desk.expectBox("Cancel", BoxAnswer::Ok);
  machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
  machine.status().cmdCancel.click();
  CHECK_FALSE(machine.cdr1().busy());
  CHECK(machine.window().visible());
  checkDialogue(machine, "cancelled");
}

TEST_CASE("In the pause behind a test, or behind a copy, Cancel lets nothing follow, as its dialogue has it") {
  const bool test = GENERATE(true, false);
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  machine.record([test](frmOptions& form) {
    form.optTrack.click();
    if (test) form.optTestWrite.click();
    form.VScroll1.scrollTo(2);
  });
  machine.finish();
  machine.heard();
  machine.desk.expectBox("Cancel", BoxAnswer::Ok);
  machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
  machine.status().cmdCancel.click();
  checkDialogue(machine, test ? "cancelled-behind-test" : "cancelled-behind-copy");
}

TEST_CASE("Behind a session or disc that was closed the pauses cannot be cancelled any more") {
  const bool test = GENERATE(true, false);
  Dialogue machine(Mp3Layout);
  machine.record([test](frmOptions& form) {
    if (test) form.optTestWrite.click();
    form.VScroll1.scrollTo(2);
  });
  machine.finish();
  machine.status().cmdCancel.click();
  CHECK(machine.desk.boxes.empty());
  insert(machine);
  machine.tick(test ? machine.window().Timer1 : machine.window().Timer2);
  machine.step(2);
  CHECK(machine.status().cmdCancel.Enabled);
}

TEST_CASE("What a recording leaves behind takes a later error for one of a write") {
  const std::string end = GENERATE("ended", "cancelled", "failed");
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  if (end == "failed") machine.engines.stage.fault = fakes::FakeFault{};
  machine.record([](frmOptions& form) { form.optTestOnly.click(); });
  if (end == "cancelled") {
    machine.desk.expectBox("Cancel", BoxAnswer::Ok);
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.status().cmdCancel.click();
  } else {
    end == "failed" ? machine.expectError() : machine.expectDone();
    machine.finish();
  }
  machine.heard();
  machine.hear(std::string("left behind: ") + (machine.mod().WriteActive ? "active" : "idle") + ", phase " +
               std::to_string(machine.mod().WritePhase) + (machine.cdr1().TestMode() ? ", test" : ", real"));
  machine.expectError();
  machine.cdr1().events.OnWriteError(WriteBufferError, 0);
  checkDialogue(machine, "left-behind");
}

TEST_CASE("A recording behind another one that was given up, failed or ended begins afresh") {
  const std::string end = GENERATE("cancelled", "failed", "ended");
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  machine.record([](frmOptions& form) { form.VScroll1.scrollTo(2); });
  machine.finish();
  insert(machine, end == "failed" ? fakes::FakeDisc::closed() : fakes::FakeDisc{});
  machine.tick(machine.window().Timer2);
  if (end == "cancelled") {
    machine.step(3);
    machine.desk.expectBox("Cancel", BoxAnswer::Ok);
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.status().cmdCancel.click();
  } else {
    end == "failed" ? machine.expectError() : machine.expectDone();
    machine.finish();
  }
  insert(machine);
  machine.mod().IsoWriteActive = machine.mod().DiscCloseActive = true;
  machine.heard();
  machine.withStatus = true;
  machine.record();
  CHECK(machine.mod().CopiesDone == 0);
  CHECK_FALSE(machine.mod().IsoWriteActive);
  CHECK_FALSE(machine.mod().DiscCloseActive);
  machine.expectDone();
  machine.finish();
  CHECK(machine.mod().CopiesDone == 1);
  checkDialogue(machine, "audio-closed");
}

TEST_CASE("A closing session or disc that is not of a recording opens no status window") {
  Dialogue machine(AudioLayout);
  machine.cdr1().events.OnSessionClosing();
  machine.cdr1().events.OnDiscClosing();
  CHECK_FALSE(machine.program().forms().writing.frmStatus.exists());
  CHECK(machine.heard().empty());
}

TEST_CASE("A session or disc that is being closed takes all figures of the writing away") {
  const bool disc = GENERATE(true, false);
  Dialogue machine(AudioLayout);
  machine.record();
  machine.step(4);
  machine.cdr1().events.OnTrackClosing(1);
  machine.cdr1().events.OnCacheProgress(40);
  machine.heard();
  disc ? machine.cdr1().events.OnDiscClosing() : machine.cdr1().events.OnSessionClosing();
  Lines heard = machine.heard();
  REQUIRE(heard.size() == 9);
  heard.resize(7);
  CHECK(heard == Lines{"  pbCache 0/100", "  pbTrack 0/3", "  lblBuffer \"\"", "  lblDevice \"\"", "  lblTracks \"\"",
                       "  pbOverall 0/100", "  cmdCancel off"});
}

TEST_CASE("A track whose length nobody told counts as not begun") {
  Dialogue machine(AudioLayout);
  machine.record();
  machine.cdr1().events.OnWriteStarting();
  machine.cdr1().events.OnTrackWriteStart(2, 0);
  machine.cdr1().events.OnWriteProgress(2, 1, 7);
  CHECK(machine.status().pbOverall.Value() == 50);
  CHECK(machine.status().lblDevice.Caption == std::string("7%"));
  machine.cdr1().events.OnTrackWriteStart(2, 1);
  machine.cdr1().events.OnWriteProgress(2, 1000, 8);
  CHECK(machine.status().pbOverall.Value() == 50);
  CHECK(machine.status().lblDevice.Caption == std::string("8%"));
}

TEST_CASE("Where nothing can be divided, nothing of the whole is done") {
  Dialogue machine(Mp3Layout);
  machine.record();
  machine.status().pbOverall.SetValue(30);
  machine.cdr1().events.OnWriteProgress(1, 1, 7);
  CHECK(machine.status().pbOverall.Value() == 0);
  machine.cdr1().events.OnWriteStarting();
  machine.cdr1().events.OnTrackWriteStart(1, 0);
  machine.status().pbOverall.SetValue(30);
  machine.cdr1().events.OnWriteProgress(1, 1, 7);
  CHECK(machine.status().pbOverall.Value() == 0);
}

TEST_CASE("An error outside of a recording takes the dialog of the erasing away before that of the disc") {
  Dialogue machine(AudioLayout);
  WritingForms& forms = machine.program().forms().writing;
  forms.frmErase.get();
  forms.frmDiskInfo.get();
  machine.desk.expectForm<Form>("frmErase", [&](Form&) {
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    machine.cdr1().events.OnWriteError(FileError, 0);
  });
  forms.frmErase->showModal(&machine.window());
  CHECK(machine.heard() ==
        Lines{"modal frmErase",
              "box Error: OK \"There was an error encountered trying to perform the requested disc operation.\"",
              "unload frmErase", "unload frmDiskInfo"});
}

TEST_CASE("The close box of the error leaves the disc in the drive") {
  Dialogue machine(AudioLayout);
  machine.withStatus = false;
  machine.engines.stage.fault = fakes::FakeFault{};
  machine.record();
  machine.heard();
  machine.desk.expectForm<frmError>("frmError", [](frmError& form) { form.closeBox(); });
  machine.finish();
  CHECK(machine.heard() == Lines{"unload frmStatus", "show frmListing", "modal frmError", "unload frmError"});
}

TEST_CASE("A recording with no kind of layout ends with the words for an image") {
  Dialogue machine(AudioLayout);
  machine.mod().LayoutType = 0;
  machine.mod().WritePhase = RealWrite;
  CHECK(machine.program().forms().writing.frmDone->lblTypeInfo.Caption ==
        std::string("The created disc now contains the chosen ISO image.  The disc has been closed for any further "
                    "writing."));
}

}  // namespace trackloom
