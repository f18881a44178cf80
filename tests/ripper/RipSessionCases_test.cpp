#include <catch2/catch.hpp>

#include "ripper/RipSession.h"
#include "ripper/TagText.h"

namespace trackloom {

TEST_CASE("E154: Rows that bear their numbers give files of those names, or numbered custom ones, and no tags") {
  Ripping machine;
  machine.read();
  machine.extractAll();
  machine.extractAll([](frmRipOptions& options) {
    options.optNameCustom.click();
    options.chkMP3.click();
  });
  CHECK(ripsOf(machine) == Lines{"01.wav", "02.wav", "03.wav", "Track01.mp3", "Track02.mp3", "Track03.mp3"});
  for (const std::string& file : ripsOf(machine)) CHECK(machine.folder.read("rips/" + file) == std::string(1000, 'x'));
}

TEST_CASE("E155: A named track that begins with the digit 0 gets no tag, and neither does one without a name") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"0 Minutes", "", " 1 Minute"});
  machine.read();
  machine.extractAll([](frmRipOptions& options) { options.optNameCustom.click(); });
  CHECK(tagOf(machine.folder.read("rips/Track01.wav")).first == std::string(127, 'x'));
  CHECK(tagOf(machine.folder.read("rips/Track02.wav")).first == std::string(127, 'x'));
  CHECK(tagOf(machine.folder.read("rips/Track03.wav")).first == tagText("1 Minute", "Anna", "Evenings"));
}

TEST_CASE("E156: A row on the place of a data track is not ripped, but its name goes to the next file's tag") {
  Ripping machine;
  machine.stage().disc = {{0, 100, false}, {100, 75}, {175, 150}};
  machine.know("Anna", "Evenings", {"Data", "One", "Two"});
  machine.read();
  machine.form().cmdSelectAll.click();
  machine.stage().take();
  machine.expectOptions();
  machine.expectRip([&](frmRipStatus& status) {
    status.activated();
    CHECK(status.prgTotal.Max() == 2);
    machine.desk.expectBox("Operation Complete", BoxAnswer::Ok);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { CHECK(status.prgTotal.Value() == 1); };
    machine.engine().finish();
  });
  machine.form().cmdExtract.click();
  CHECK(starting(machine.stage().take(), "CDRipperX1.QueueTrack") ==
        Lines{"CDRipperX1.QueueTrack(2, " + machine.rips() + "Two.wav, 2)"});
  CHECK(ripsOf(machine) == Lines{"Two.wav"});
  CHECK(tagOf(machine.folder.read("rips/Two.wav")).first == tagText("One", "Anna", "Evenings"));
}

TEST_CASE("E157: Cancel before the engine has begun takes the dialog away, and no file is made") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    status.cmdCancel.click();
  });
  CHECK_FALSE(has(machine.hearing.heard(), "CDRipperX1.CancelRip"));
  machine.engine().finish();
  CHECK(ripsOf(machine).empty());
}

TEST_CASE("E158: A rip of an empty list is left to the engine, which has nothing to start with") {
  Ripping machine;
  machine.stage().disc = {{0, 100, false}};
  machine.read();
  machine.form().cmdSelectAll.click();
  machine.expectOptions();
  machine.expectRip([&](frmRipStatus& status) {
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { CHECK(status.prgTotal.Max() == 0); };
    status.activated();
  });
  machine.form().cmdExtract.click();
  CHECK(has(machine.hearing.heard(), "CDRipperX1.StartRip"));
}

TEST_CASE("E159: Progress of an empty track moves no bar and ends nothing") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.engine().step();
    machine.events().TrackStarted(HostPath(), 100, 100, 1);
    status.prgTrack.SetValue(30);
    machine.events().RipStatus(7, 100);
    CHECK(status.prgTrack.Value() == 30);
    CHECK(status.lblTime.Caption == std::string("Track 01     00:00:00 / 00:00:00"));
    machine.complete();
  });
}

TEST_CASE("E160: A name with artist or album has no limit but the thirty characters of those") {
  Ripping machine;
  machine.know(std::string(50, 'a'), std::string(50, 'b'), {std::string(150, 'c')});
  machine.read();
  machine.check({1});
  machine.extract([](frmRipOptions& options) { options.optNameListArtist.click(); });
  machine.extract([](frmRipOptions& options) { options.optNameListAlbum.click(); });
  CHECK(ripsOf(machine) == Lines{std::string(30, 'a') + " - " + std::string(150, 'c') + ".wav",
                                 std::string(30, 'b') + " - " + std::string(150, 'c') + ".wav"});
}

TEST_CASE("E161: A cancelled rip is told by the engine as a status and by the dialog in a box, in other words") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.engine().step();
    status.cmdCancel.click();
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.engine().finish();
  });
  CHECK(has(machine.hearing.heard(), "  StatusBar1 \"Ripping Cancelled...\""));
  CHECK(machine.desk.lastBox().text == "Ripping operation was cancelled.");
  // An engine that cancels by itself is no cancel of the user's.
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.engine().step();
    machine.events().RipStatus(14, 0);
    CHECK(status.StatusBar1.PanelText(1) == "Ripping Cancelled...");
    machine.complete();
  });
}

}  // namespace trackloom
