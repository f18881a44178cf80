#include <catch2/catch.hpp>
#include <map>
#include <thread>

#include "program/RealMachine.h"

namespace trackloom {

using fakes::contentOf;
using fakes::noise;
using fakes::outputOf;
using test::RealMachine;
namespace fs = std::filesystem;

namespace {

struct TrayCase {
  const char* what;
  std::function<void(const RealMachine&)> prepare;
  const char* boxAtNew;
  const char* boxAtRecord;
};

void twoDiscs(const RealMachine& machine) {
  fs::copy(machine.disc(), machine.disc().parent_path() / "Disc 0002", fs::copy_options::recursive);
}

std::string discIni(const std::string& status, int blocks) {
  return "[disc]\nmedium = CD-R\nstatus = " + status + "\nblocks = " + std::to_string(blocks) + "\n";
}

std::vector<TrayCase> trayCases() {
  return {{"empty tray", [](const RealMachine& machine) { fs::remove_all(machine.disc()); }, "No Media",
           "Media Not Loaded"},
          {"two discs", twoDiscs, "No Media", "Media Not Loaded"},
          {"nonsense in disc.ini", [](const RealMachine& machine) { machine.describe("nonsense"); },
           "No Available Space", "Closed Disc"},
          {"disc.ini longer than any", [](const RealMachine& machine) { machine.describe(std::string(1 << 20, '[')); },
           "No Available Space", "Closed Disc"},
          {"no disc.ini", [](const RealMachine& machine) { fs::remove(machine.disc() / "disc.ini"); },
           "No Available Space", "Closed Disc"},
          {"spoilt disc", [](const RealMachine& machine) { machine.describe(discIni("writing", 359849)); },
           "No Available Space", "Closed Disc"},
          {"no room", [](const RealMachine& machine) { machine.describe(discIni("blank", 0)); }, "No Available Space",
           "CD Changed"}};
}

/// A machine with an audio layout of two tracks and a blank disc.
class Ready : public RealMachine {
 public:
  explicit Ready(std::int32_t blocks = 40) {
    startQuietly();
    newLayout(AudioLayout);
    drop({wavFile("a.wav", blocks), wavFile("b.wav", blocks)});
    REQUIRE(window().ListView1.Count() == 2);
  }
  std::string music(std::int32_t blocks = 40) const {
    return samplesOf("a.wav", blocks) + std::string(std::size_t{150} * 2352, '\0') + samplesOf("b.wav", blocks);
  }
  bool discHasMusic(int number) const { return contentOf(finished(number) / "disc.bin") == music(); }
  std::string statusOf(const fs::path& place) const {
    const std::string ini = contentOf(place / "disc.ini");
    const auto at = ini.find("status = ");
    return ini.substr(at, ini.find('\n', at) - at);
  }
};

/// Each file of a disc with its bytes and its time.
std::map<std::string, std::pair<std::string, fs::file_time_type>> everythingIn(const fs::path& place) {
  std::map<std::string, std::pair<std::string, fs::file_time_type>> all;
  for (const auto& entry : fs::recursive_directory_iterator(place))
    all[entry.path().string()] = {entry.is_regular_file() ? contentOf(entry.path()) : "", entry.last_write_time()};
  return all;
}

}  // namespace

TEST_CASE("Each disc that cannot take a layout has its box at New and at Record") {
  for (const TrayCase& trial : trayCases()) {
    CAPTURE(trial.what);
    Ready machine;
    trial.prepare(machine);
    machine.desk.expectBox(trial.boxAtRecord, BoxAnswer::Ok);
    machine.click("Record");
    machine.mod().LayoutSaved = true;
    machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
      machine.desk.expectBox(trial.boxAtNew, BoxAnswer::Cancel);
      form.cmdOK.click();
    });
    machine.click("New");
    CHECK_FALSE(machine.mod().LayoutOpen);
    CHECK(machine.desk.finished());
  }
}

TEST_CASE("A disc laid into the tray while No Media is shown is found at OK") {
  RealMachine machine;
  machine.startQuietly();
  fs::rename(machine.disc(), machine.folder / "disc aside");
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    if (machine.desk.boxes.size() == 2) fs::rename(machine.folder / "disc aside", machine.disc());
  };
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    for (int box = 1; box <= 2; ++box) machine.desk.expectBox("No Media", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  machine.click("New");
  CHECK(machine.mod().LayoutOpen);
}

TEST_CASE("A finished disc put back is closed at Record and has no space at New") {
  Ready machine;
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(machine.discHasMusic(1));
  fs::remove_all(machine.recorder() / "tray/Disc 0002");
  fs::rename(machine.finished(1), machine.disc());
  machine.desk.expectBox("Closed Disc", BoxAnswer::Ok);
  machine.click("Record");
  machine.mod().LayoutSaved = true;
  machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
    machine.desk.expectBox("No Available Space", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  machine.click("New");
}

TEST_CASE("A smaller disc than that of the start is refused as changed, and stays as it is") {
  Ready machine;
  machine.describe(discIni("blank", 30));
  const auto before = everythingIn(machine.disc());
  machine.desk.expectBox("CD Changed", BoxAnswer::Ok);
  machine.click("Record");
  CHECK(everythingIn(machine.disc()) == before);
}

TEST_CASE("A write that fails half-way is told in words, spoils its disc alone, and the next disc comes out well") {
  Ready machine;
  machine.configure("[faults]\nfailWriteAt = 200\n");
  machine.record();
  CHECK(machine.errorOfWrite() ==
        " A device error has occurred. Device Error: 199680\r\nError Data - write error at block 200 (3/0C/00)");
  CHECK(machine.statusOf(machine.finished(1)) == "status = writing");
  CHECK(machine.window().visible());
  CHECK(machine.window().ListView1.Count() == 2);

  machine.configure("");
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(machine.discHasMusic(2));
}

TEST_CASE("A write that fails while it closes spoils its disc alone") {
  const char* part = GENERATE("track", "session", "disc");
  Ready machine;
  machine.configure(std::string("[faults]\nfailClosing = ") + part + "\n");
  machine.record();
  CHECK_THAT(machine.errorOfWrite(),
             Catch::StartsWith(" A device error has occurred. Device Error: ") && Catch::Contains(part));
  CHECK(machine.statusOf(machine.finished(1)) == "status = writing");
}

TEST_CASE("A write cancelled half-way spoils its disc alone, and the next one comes out well") {
  Ready machine;
  machine.configure("maximumSpeed = 1\nrealTimePacing = yes\n");
  machine.record();
  frmStatus& status = machine.program().forms().writing.frmStatus.get();
  REQUIRE(machine.events.runUntil([&] { return status.pbTrack.Value() > 0; }));
  machine.desk.expectBox("Cancel", BoxAnswer::Ok);
  machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
  status.cmdCancel.click();
  CHECK(machine.statusOf(machine.finished(1)) == "status = writing");
  machine.events.runPosted();
  CHECK(machine.window().visible());

  machine.configure("");
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(machine.discHasMusic(2));
}

TEST_CASE("A test alone leaves the disc as it was, to the byte and the time") {
  Ready machine;
  machine.configure("refuseEject = yes\n");
  const auto before = everythingIn(machine.disc());
  machine.record([](frmOptions& form) { form.optTestOnly.click(); });
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(everythingIn(machine.disc()) == before);
}

TEST_CASE("A test before the write records the same disc once") {
  Ready machine;
  machine.record([](frmOptions& form) { form.optTestWrite.click(); });
  REQUIRE(machine.events.runUntil([&] { return machine.window().Timer1.Enabled.get(); }));
  machine.window().Timer1.tick();
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(machine.discHasMusic(1));
  CHECK_FALSE(fs::exists(machine.finished(2)));
}

TEST_CASE("Two copies with automatic feed are two equal discs, with nobody asked") {
  Ready machine;
  machine.record([](frmOptions& form) { form.VScroll1.scrollTo(2); });
  REQUIRE(machine.events.runUntil([&] { return machine.window().Timer2.Enabled.get(); }));
  machine.window().Timer2.tick();
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(machine.desk.boxes.empty());
  CHECK(machine.discHasMusic(1));
  CHECK(machine.discHasMusic(2));
}

TEST_CASE("Of two copies of a test alone the second is truly written") {
  Ready machine;
  machine.record([](frmOptions& form) {
    form.optTestOnly.click();
    form.VScroll1.scrollTo(2);
  });
  REQUIRE(machine.events.runUntil([&] { return machine.window().Timer2.Enabled.get(); }));
  machine.describe(discIni("blank", 1000));
  CHECK_FALSE(fs::exists(machine.disc() / "disc.bin"));
  machine.window().Timer2.tick();
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK(machine.statusOf(machine.finished(1)) == "status = closed");
  CHECK(machine.discHasMusic(1));
}

TEST_CASE("A copy goes onto whatever disc lies there: one that takes nothing is an error, and stays as it is") {
  const bool closed = GENERATE(true, false);
  Ready machine;
  machine.configure("automaticFeed = no\n");
  machine.record([](frmOptions& form) { form.VScroll1.scrollTo(3); });
  REQUIRE(machine.events.runUntil([&] { return machine.window().Timer2.Enabled.get(); }));
  CHECK(machine.discHasMusic(1));
  const fs::path next = machine.recorder() / "tray/Disc 0002";
  fs::copy(machine.finished(1), next, fs::copy_options::recursive);
  if (!closed) {
    fs::remove_all(next);
    fs::create_directory(next);
    std::ofstream(next / "disc.ini") << discIni("blank", 100);
  }
  machine.configure("refuseEject = yes\n");
  const auto before = everythingIn(next);
  machine.window().Timer2.tick();
  CHECK_THAT(machine.errorOfWrite(),
             Catch::StartsWith(" A device error") && Catch::Contains(closed ? "closed" : "100 blocks left"));
  CHECK(everythingIn(next) == before);
  CHECK_FALSE(machine.window().Timer2.Enabled);
}

TEST_CASE("What was dragged and removed is on the disc as the listing has it") {
  Ready machine;
  machine.drop({machine.wavFile("c.wav", 20), machine.wavFile("d.wav", 30)});
  ListView& listing = machine.window().ListView1;
  listing.SelectRow(2);
  machine.desk.expectBox("Remove Track", BoxAnswer::Ok);
  machine.click("Delete");
  listing.select({3});
  listing.moveSelected(-1);
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  const std::string pause(std::size_t{150} * 2352, '\0');
  CHECK(contentOf(machine.finished(1) / "disc.bin") == RealMachine::samplesOf("a.wav", 40) + pause +
                                                           RealMachine::samplesOf("d.wav", 30) + pause +
                                                           RealMachine::samplesOf("c.wav", 20));
}

TEST_CASE("A file that is cut short while the disc is written fails the write as a file") {
  Ready machine;
  machine.configure("realTimePacing = yes\n");
  machine.drop({machine.wavFile("c.wav", 20000)});
  machine.record();
  frmStatus& status = machine.program().forms().writing.frmStatus.get();
  REQUIRE(machine.events.runUntil([&] { return status.pbTrack.Value() > 0; }));
  fs::resize_file(machine.folder / "music/c.wav", 100000);
  CHECK(machine.errorOfWrite() == " A file error was encountered while writing the disc.");
  CHECK(machine.statusOf(machine.finished(1)) == "status = writing");
}

TEST_CASE("Files that go while the options are open fail the write before it touches the disc") {
  RealMachine machine;
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  machine.startQuietly();
  machine.newLayout(kind);
  const std::string path = kind == AudioLayout ? machine.wavFile("a.wav", 40) : machine.mp3File("a.mp3", 4000);
  machine.drop({path});
  machine.configure("refuseEject = yes\n");
  const auto before = everythingIn(machine.disc());
  machine.record([&](frmOptions&) { fs::remove(path); });
  CHECK(machine.errorOfWrite() == " A file error was encountered while writing the disc.");
  CHECK(everythingIn(machine.disc()) == before);
}

TEST_CASE("A file of thousands of gigabytes is too big for the layout, and the program goes on") {
  RealMachine machine;
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  const std::string huge = machine.mp3File("huge.mp3", 1);
  std::error_code refused;
  fs::resize_file(huge, std::uintmax_t{5} << 40, refused);
  if (refused) {
    WARN("This disk takes no file of that size: " << refused.message());
    return;
  }
  machine.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
  machine.drop({huge});
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.mod().LayoutOpen);
}

TEST_CASE("An MP3 disc is read by other programs, closed or left open") {
  const bool leftOpen = GENERATE(false, true);
  RealMachine machine;
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  machine.drop({machine.mp3File("one.mp3", 5000), machine.mp3File("two.mp3", 70000)});
  machine.record([leftOpen](frmOptions& form) {
    if (leftOpen) form.optLeaveOpen.click();
    form.txtVolume.type("Robust");
  });
  machine.expectDone();
  REQUIRE(machine.finishes());
  const std::string image = "'" + (machine.finished(1) / "disc.iso").string() + "'";
  CHECK_THAT(outputOf("isoinfo -J -f -i " + image), Catch::Contains("/one.mp3\n") && Catch::Contains("/two.mp3\n"));
  CHECK_THAT(outputOf("isoinfo -d -i " + image), Catch::Contains("Volume id: Robust"));
  CHECK_THAT(outputOf("iso-info -l " + image), Catch::Contains("two.mp3"));
  CHECK_THAT(outputOf("xorriso -indev " + image + " -lsl /"), Catch::Contains("70000") && Catch::Contains("one.mp3"));
  CHECK(outputOf("isoinfo -J -x /two.mp3 -i " + image) == noise(70000, 70000));
  const std::string ini = contentOf(machine.finished(1) / "disc.ini");
  CHECK_THAT(ini, Catch::Contains(leftOpen ? "status = open" : "status = closed"));
}

TEST_CASE("A layout that is recorded onto an open MP3 disc shows the files of both sessions") {
  RealMachine machine;
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  machine.drop({machine.mp3File("one.mp3", 5000)});
  machine.record([](frmOptions& form) { form.optLeaveOpen.click(); });
  machine.expectDone();
  REQUIRE(machine.finishes());
  fs::remove_all(machine.recorder() / "tray/Disc 0002");
  fs::rename(machine.finished(1), machine.disc());
  machine.mod().LayoutSaved = true;
  machine.newLayout(Mp3Layout);
  machine.drop({machine.mp3File("two.mp3", 70000)});
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  const std::string ini = contentOf(machine.finished(1) / "disc.ini");
  const std::string start = std::to_string(std::stoi(ini.substr(ini.find("start = ", ini.find("[track 2]")) + 8)));
  const std::string reader = "isoinfo -J -T " + start + " -i '" + (machine.finished(1) / "disc.iso").string() + "' ";
  CHECK(outputOf(reader + "-f") == "/one.mp3\n/two.mp3\n");
  CHECK(outputOf(reader + "-x /one.mp3") == noise(5000, 5000));
  CHECK(outputOf(reader + "-x /two.mp3") == noise(70000, 70000));
  CHECK(ini.find("status = closed\n") < ini.find("[session 1]"));
}

}  // namespace trackloom
