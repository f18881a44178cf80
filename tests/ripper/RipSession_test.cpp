#include <algorithm>
#include <catch2/catch.hpp>

#include "ripper/RipSession.h"
#include "ripper/TagText.h"

namespace trackloom {

TEST_CASE("Every way of naming builds its paths, in the order of the rows and by their places") {
  const auto& [option, second, third] = GENERATE(table<int, std::string, std::string>({
      {0, "Two", "Three"},
      {1, "Anna - Two", "Anna - Three"},
      {2, "Evenings - Two", "Evenings - Three"},
      {3, "Side02", "Side03"},
  }));
  RipSession machine;
  machine.form().ListView2.edit(2, "  Two ");
  machine.check({2, 3});
  machine.stage().take();
  machine.extract([chosen = option](frmRipOptions& options) {
    options.naming[static_cast<std::size_t>(chosen)]->click();
    if (chosen == 3) options.txtName.type(" Side ");
    options.chkMP3.click();
  });
  CHECK(starting(machine.stage().take(), "CDRipperX1.QueueTrack") ==
        Lines{"CDRipperX1.QueueTrack(2, " + machine.rips() + second + ".mp3, 2)",
              "CDRipperX1.QueueTrack(3, " + machine.rips() + third + ".mp3, 3)"});
  Lines files{second + ".mp3", third + ".mp3"};
  std::sort(files.begin(), files.end());
  CHECK(ripsOf(machine) == files);
}

TEST_CASE("The encoder is bound for MP3 before its rate is set, and switched off for WAV") {
  RipSession machine;
  machine.check({1});
  machine.stage().take();
  machine.extract([](frmRipOptions& options) {
    options.chkMP3.click();
    options.Combo1.choose(2);
  });
  Lines calls = machine.stage().take();
  calls.resize(4);
  CHECK(calls ==
        Lines{"MP31.Encoder", "CDRipperX1.AttachEncoder(0)", "CDRipperX1.UseEncoder=True", "MP31.BitRate=192"});
  machine.extract();
  calls = machine.stage().take();
  calls.resize(2);
  CHECK(calls == Lines{"CDRipperX1.UseEncoder=False", "CDRipperX1.ClearQueue"});
}

TEST_CASE("A row is taken with the name that it has when the rip begins") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.complete();
  });
  machine.form().ListView2.edit(1, " Another ");
  machine.extract();
  CHECK(ripsOf(machine) == Lines{"Another.wav", "One.wav"});
  CHECK(tagOf(machine.folder.read("rips/Another.wav")).first == tagText("Another", "Anna", "Evenings", "1999"));
}

TEST_CASE("Progress is told in the words of WAV or MP3, in times within the track, and rounded half to even") {
  const bool mp3 = GENERATE(false, true);
  RipSession machine;
  machine.check({2});
  machine.rip(
      [&](frmRipStatus& status) {
        status.activated();
        machine.engine().step();
        machine.events().TrackStarted(HostPath("x"), 1000, 1200, 7);
        machine.hearing.heard();
        machine.events().RipStatus(7, 1000);
        CHECK(machine.hearing.heard() == Lines{std::string("  StatusBar1 \"Ripping Track(s) as ") +
                                                   (mp3 ? "MP3 format (320 kbps)...\"" : "standard WAV audio...\""),
                                               "  lblTime \"Track 07     00:00:00 / 00:02:50\""});
        for (const auto& [sector, percent] : {std::pair(1001, 0), std::pair(1003, 2), std::pair(1100, 50),
                                              std::pair(1005, 2), std::pair(1199, 100), std::pair(1200, 100)}) {
          machine.events().RipStatus(7, sector);
          CHECK(status.prgTrack.Value() == percent);
        }
        CHECK(status.lblTime.Caption == std::string("Track 07     00:02:50 / 00:02:50"));
        machine.complete();
      },
      [mp3](frmRipOptions& options) {
        if (!mp3) return;
        options.chkMP3.click();
        options.Combo1.choose(5);
      });
}

TEST_CASE("Each trouble has its words, an unknown code has none, and all of them let events run") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.engine().step();
    Lines told;
    for (int code = -1; code <= 16; ++code) {
      if (code == 7) continue;
      machine.pump.pumped = 0;
      machine.events().RipStatus(code, 123);
      CHECK(machine.pump.pumped == 1);
      const std::string& words = status.StatusBar1.PanelText(1);
      if (told.empty() || told.back() != words) told.push_back(words);
    }
    CHECK(told == Lines{"", "Jitter Could Not Be Corrected...123", "Speed Adjusted to Correct Error...",
                        "Read Failed...", "Retrying Read...", "Retry Failed...", "File Aborted...",
                        "Buffer Could Not Be Initialized...", "Error Creating File...", "Error Writing File...",
                        "Error Closing File...", "Drive Could Not Be Initialized...", "Ripping Cancelled..."});
    machine.pump.pumped = 0;
    machine.events().RipStatus(7, 0);
    CHECK(machine.pump.pumped == 1);
    CHECK(status.StatusBar1.PanelText(1) == "Ripping Track(s) as standard WAV audio...");
    machine.complete();
  });
}

TEST_CASE("A failed track leaves no file, moves the overall bar, uses up its name, and the rip is complete") {
  RipSession machine;
  machine.form().cmdSelectAll.click();
  machine.stage().trouble[1] = {5, 4, 8};
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    CHECK(status.prgTotal.Max() == 3);
    machine.desk.expectBox("Operation Complete", BoxAnswer::Ok);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { CHECK(status.prgTotal.Value() == 3); };
    machine.engine().finish();
  });
  CHECK(ripsOf(machine) == Lines{"Three.wav", "Two.wav"});
  CHECK(tagOf(machine.folder.read("rips/Two.wav")).first == tagText("Two", "Anna", "Evenings", "1999"));
  CHECK(tagOf(machine.folder.read("rips/Three.wav")).first == tagText("Three", "Anna", "Evenings", "1999"));
}

TEST_CASE(
    "The tag goes into the file that the engine names, also that of a failed track, and none into a missing one") {
  RipSession machine;
  machine.form().cmdSelectAll.click();
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.folder.write("aside", std::string(300, 'x'));
    machine.events().RipStarted();
    machine.events().TrackStarted(machine.folder.host("aside"), 0, 75, 1);
    machine.events().RipStatus(8, 0);
    machine.events().TrackFinished();
    CHECK(tagOf(machine.folder.read("aside")).first == tagText("One", "Anna", "Evenings", "1999"));
    machine.events().TrackStarted(HostPath(), 0, 75, 2);
    machine.events().RipStatus(10, 0);
    machine.events().TrackFinished();
    CHECK(status.prgTotal.Value() == 2);
    machine.desk.expectBox("Operation Complete", BoxAnswer::Ok);
    machine.events().RipFinished();
  });
  CHECK(ripsOf(machine).empty());
}

TEST_CASE("A track that nobody queued is finished without a tag") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.folder.write("aside", std::string(300, 'x'));
    machine.events().RipStarted();
    machine.events().TrackStarted(HostPath(), 0, 75, 1);
    machine.events().TrackFinished();
    machine.events().TrackStarted(machine.folder.host("aside"), 0, 75, 2);
    machine.events().TrackFinished();
    CHECK(machine.folder.read("aside") == std::string(300, 'x'));
    machine.desk.expectBox("Operation Complete", BoxAnswer::Ok);
    machine.events().RipFinished();
  });
}

TEST_CASE("Rows, ticks, caption and extraction are after a rip as they were before it, and it can be done again") {
  RipSession machine;
  machine.check({1, 3});
  const std::string caption = machine.form().caption;
  for (int times = 0; times < 2; ++times) {
    machine.extract();
    CHECK(machine.names() == Lines{"One", "Two", "Three"});
    CHECK(machine.form().ListView2.CheckedCount() == 2);
    CHECK(machine.form().caption == caption);
    CHECK(machine.form().cmdExtract.Enabled);
    CHECK_FALSE(machine.forms().frmRipStatus.exists());
    CHECK(machine.engine().events == nullptr);
    CHECK(machine.engine().queue() == std::vector<std::int16_t>{1, 3});
  }
}

TEST_CASE("Both bars are empty when the dialog comes, and the track's has its hundred steps for each row") {
  RipSession machine;
  machine.check({1});
  machine.forms().frmRipStatus->prgTotal.SetValue(50);
  machine.forms().frmRipStatus->prgTrack.SetValue(50);
  machine.rip([&](frmRipStatus& status) {
    CHECK(status.prgTotal.Value() == 0);
    CHECK(status.prgTrack.Value() == 0);
    status.prgTrack.SetMax(7);
    status.prgTrack.SetValue(3);
    status.prgTotal.SetValue(40);
    status.activated();
    CHECK(status.prgTrack.Max() == 100);
    CHECK(status.prgTrack.Value() == 0);
    CHECK(status.prgTotal.Value() == 0);
    machine.complete();
  });
}

TEST_CASE("A dialog that is activated once more queues everything anew and counts from the first name") {
  RipSession machine;
  machine.check({1, 2});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    CDRipperEvents* const dialog = machine.engine().events;
    for (int event = 0; event < 6; ++event) machine.engine().step();
    machine.engine().events = nullptr;
    machine.engine().finish();
    machine.engine().events = dialog;
    status.activated();
    CHECK(status.prgTotal.Value() == 0);
    CHECK(machine.engine().queue() == std::vector<std::int16_t>{1, 2});
    machine.complete();
  });
  CHECK(tagOf(machine.folder.read("rips/One.wav")).first == tagText("One", "Anna", "Evenings", "1999"));
  CHECK(tagOf(machine.folder.read("rips/Two.wav")).first == tagText("Two", "Anna", "Evenings", "1999"));
}

TEST_CASE("Behind its end a rip is no running one any more") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
      status.closeBox();
      CHECK_FALSE(status.visible());
    };
    machine.complete();
  });
}

TEST_CASE("A rip that cannot start says so and takes its dialog away") {
  RipSession machine;
  machine.check({1});
  machine.stage().disc.reset();
  machine.rip([&](frmRipStatus& status) {
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    status.activated();
  });
  CHECK(machine.desk.lastBox().text == "An error was encountered.  Extraction could not be started.");
  CHECK(machine.form().cmdExtract.Enabled);
}

TEST_CASE("A running rip is ended by nothing but its Cancel, and one that waits also by its close box") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.engine().step();
    status.closeBox();
    CHECK(status.visible());
    CHECK(status.cmdCancel.Cancel);
    machine.complete();
  });
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    status.closeBox();
  });
  machine.engine().finish();
  CHECK(ripsOf(machine) == Lines{"One.wav"});
}

TEST_CASE("A rip is cancelled in each of its states, once or twice, and what is whole stays") {
  const int events = GENERATE(range(1, 12));
  const int clicks = GENERATE(1, 2);
  RipSession machine;
  machine.check({1, 2});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    for (int event = 0; event < events; ++event) machine.engine().step();
    const int pumped = machine.pump.pumped;
    for (int click = 0; click < clicks; ++click) status.cmdCancel.click();
    CHECK(machine.pump.pumped == pumped + clicks);
    CHECK(status.visible());
    CHECK(status.cmdCancel.Enabled);
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.engine().finish();
  });
  CHECK(has(machine.hearing.heard(), "  StatusBar1 \"Ripping Cancelled...\""));
  // The start, and five events to each track.
  CHECK(ripsOf(machine) == (events > 10 ? Lines{"One.wav", "Two.wav"} : events > 5 ? Lines{"One.wav"} : Lines{}));
}

TEST_CASE("A cancel that comes in with the events of a report is one") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    status.activated();
    machine.engine().step();
    machine.engine().step();
    machine.pump.onPump = [&] {
      machine.pump.onPump = nullptr;
      status.cmdCancel.click();
    };
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.engine().finish();
  });
  CHECK(ripsOf(machine).empty());
  // The next rip knows nothing of it.
  machine.extract();
  CHECK(ripsOf(machine) == Lines{"One.wav"});
}

TEST_CASE("A dialog that goes in the pump of its first activation leaves an engine that finds no listener") {
  RipSession machine;
  machine.check({1});
  machine.rip([&](frmRipStatus& status) {
    machine.pump.onPump = [&] {
      machine.pump.onPump = nullptr;
      status.cmdCancel.click();
      CHECK_FALSE(status.visible());
    };
    status.activated();
  });
  const Lines calls = machine.hearing.heard();
  CHECK(has(calls, "CDRipperX1.QueueTrack(1, rips/One.wav, 1)"));
  CHECK(has(calls, "CDRipperX1.StartRip"));
  CHECK(machine.engine().events == nullptr);
  machine.engine().finish();
  CHECK(ripsOf(machine).empty());
  CHECK_FALSE(machine.forms().frmRipStatus.exists());
}

TEST_CASE("A dialog that goes in that pump still tells that the rip cannot start") {
  RipSession machine;
  machine.check({1});
  machine.stage().disc.reset();
  machine.rip([&](frmRipStatus& status) {
    machine.pump.onPump = [&] {
      machine.pump.onPump = nullptr;
      status.closeBox();
    };
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    status.activated();
  });
}

}  // namespace trackloom
