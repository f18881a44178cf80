#include <algorithm>
#include <catch2/catch.hpp>
#include <fstream>

#include "ripper/Ripping.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// The lines of a file in tests/ripper/dialogues; a line that begins with # says what it is about.
Lines dialogue(const std::string& name) {
  std::ifstream file(std::string(TRACKLOOM_SOURCE_DIR) + "/tests/ripper/dialogues/" + name + ".txt");
  Lines lines;
  for (std::string line; std::getline(file, line);)
    if (!line.starts_with("#")) lines.push_back(line);
  return lines;
}

/// A ripper of which each call, window, box, pump and change in its windows is written down.
class Dialogue : public Ripping {
 public:
  explicit Dialogue(const std::function<void(Ripping&)>& prepare = {}) : Ripping(prepare) {
    pump.onPump = [this] { hearing.hear("pump"); };
  }

  void read() {
    hearing.heard();
    hearing.watch(form());
    Ripping::read();
  }
  /// From the click of the extraction on; `use` is what happens in the dialog of the rip behind its first activation.
  void rip(const std::vector<int>& rows, const std::function<void()>& use,
           const std::function<void(frmRipOptions&)>& choose = {}) {
    Ripping::read();
    check(rows);
    expectOptions(choose);
    expectRip([&](frmRipStatus& status) {
      status.activated();
      use();
    });
    hearing.watch(form());
    hearing.heard();
    form().cmdExtract.click();
  }
  void complete() {
    desk.expectBox("Operation Complete", BoxAnswer::Ok);
    engine().finish();
  }
  /// The dialogue went as written down; told is the first place where it did not.
  void went(const std::string& name) {
    const Lines lines = hearing.heard();
    const Lines wanted = dialogue(name);
    REQUIRE_FALSE(wanted.empty());
    CHECK(desk.finished());
    for (std::size_t line = 0; line < std::max(lines.size(), wanted.size()); ++line) {
      INFO(name << ".txt, at line " << line + 1 << " without its head");
      REQUIRE((line < lines.size() ? lines[line] : "the end") == (line < wanted.size() ? wanted[line] : "the end"));
    }
  }
};

void knowTwo(Ripping& machine) {
  machine.know("Anna", "Evenings", {"One", "Two"}, "Jazz", "1999");
}

}  // namespace

TEST_CASE("A disc that the database knows is read as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.read();
  machine.went("read-known");
}

TEST_CASE("A disc that nobody looks up is read as its dialogue has it") {
  Dialogue machine;
  machine.form().chkCDDB.click();
  machine.read();
  machine.went("read-alone");
}

TEST_CASE("A drive without a disc behind one with a disc goes as its dialogue has it") {
  Dialogue machine;
  machine.read();
  machine.check({1});
  machine.stage().disc.reset();
  machine.desk.expectBox("No Disc", BoxAnswer::Ok);
  machine.read();
  machine.went("read-no-disc");
}

TEST_CASE("A second read, of a disc that is known no more, goes as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.read();
  machine.form().cmdSelectAll.click();
  machine.form().cboSpeeds.choose(2);
  machine.stage().matches.clear();
  machine.read();
  machine.went("read-again");
}

TEST_CASE("A drive that cannot be taken goes as its dialogue has it") {
  Dialogue machine([](Ripping& before) { before.stage().drives[0].refuses = true; });
  machine.read();
  machine.went("read-no-drive");
}

TEST_CASE("A disc without readable contents goes as its dialogue has it") {
  Dialogue machine([](Ripping& before) { before.stage().contentsReadable = false; });
  machine.read();
  machine.went("read-no-contents");
}

TEST_CASE("A read that fails in the engine goes as its dialogue has it") {
  Dialogue machine;
  machine.stage().broken.insert("CDRipperX1.TrackCount");
  machine.desk.expectBox("Error", BoxAnswer::Ok);
  machine.read();
  machine.went("read-error");
}

TEST_CASE("Two tracks are ripped to WAV as their dialogue has it") {
  Dialogue machine(knowTwo);
  machine.rip({1, 3}, [&] { machine.complete(); });
  machine.went("rip-wav");
}

TEST_CASE("A track is ripped to MP3 under a custom name as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.rip(
      {2}, [&] { machine.complete(); },
      [](frmRipOptions& options) {
        options.optNameCustom.click();
        options.chkMP3.click();
        options.Combo1.choose(3);
      });
  machine.went("rip-mp3");
}

TEST_CASE("A rip with read trouble and a lost track goes as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.stage().trouble = {{1, {5, 6, 2, 3}}, {2, {4, 8}}};
  machine.rip({1, 2}, [&] { machine.complete(); });
  machine.went("rip-trouble");
}

TEST_CASE("A rip that is cancelled in its second track goes as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.rip({1, 2}, [&] {
    for (int event = 0; event < 8; ++event) machine.engine().step();
    machine.forms().frmRipStatus->cmdCancel.click();
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.engine().finish();
  });
  machine.went("rip-cancelled");
}

TEST_CASE("A rip that is left before it has begun goes as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.rip({1}, [&] {
    machine.forms().frmRipStatus->cmdCancel.click();
    machine.engine().finish();
  });
  machine.went("rip-left");
}

TEST_CASE("A rip whose dialog goes in its first pump goes as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.rip(
      {1}, [&] { machine.engine().finish(); },
      [&](frmRipOptions&) {
        machine.pump.onPump = [&] {
          machine.hearing.hear("pump");
          machine.forms().frmRipStatus->cmdCancel.click();
        };
      });
  machine.went("rip-left-in-pump");
}

TEST_CASE("A rip that cannot start goes as its dialogue has it") {
  Dialogue machine(knowTwo);
  machine.rip(
      {1}, [] {},
      [&](frmRipOptions&) {
        machine.stage().disc.reset();
        machine.desk.expectBox("Error", BoxAnswer::Ok);
      });
  machine.went("rip-not-started");
}

TEST_CASE("An extraction that is given up, and one without a folder, go as their dialogue has it") {
  Dialogue machine(knowTwo);
  machine.read();
  machine.check({1});
  machine.hearing.heard();
  machine.desk.expectForm<frmRipOptions>(
      "frmRipOptions",
      [&](frmRipOptions& options) {
        machine.desk.expectBox("No Folder", BoxAnswer::Ok);
        options.cmdOK.click();
        options.cmdCancel.click();
      },
      "frmRipMain");
  machine.form().cmdExtract.click();
  machine.went("rip-given-up");
}

}  // namespace trackloom
