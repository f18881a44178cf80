#include <map>

#include "program/RealMachine.h"

namespace trackloom {

using Catch::Contains;
using fakes::contentOf;
using test::RealMachine;
using Lines = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

/// A machine with an audio layout of one track and a recorder that keeps its disc.
class DiscTools : public RealMachine {
 public:
  DiscTools() {
    startQuietly();
    newLayout(AudioLayout);
    drop({wavFile("a.wav", 40)});
    keepDisc();
    describe("[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 1000\n");
  }

  void keepDisc(const std::string& faults = "") { configure("refuseEject = yes\n[faults]\n" + faults); }
  /// A recording, which asks about the rewritable disc first.
  void recordDisc(const std::function<void(frmOptions&)>& choose = {}) {
    desk.expectBox("CDRW Disc Inserted", BoxAnswer::Ok);
    record(choose);
    expectDone();
    REQUIRE(finishes());
  }
  void leaveOpen() {
    recordDisc([](frmOptions& form) { form.optTrack.click(); });
  }
  std::string stored() const { return contentOf(disc() / "disc.ini"); }

  /// The values that the dialog shows, and whether it offers to close anything.
  Lines information() {
    Lines values;
    desk.expectForm<frmDiskInfo>("frmDiskInfo", [&](frmDiskInfo& form) {
      for (int row = 1; row <= form.ListView1.Count(); ++row) values.push_back(form.ListView1.SubItem(row, 1));
      values.emplace_back(form.cmdCloseDisc.Enabled ? "to be closed" : "");
      form.cmdOK.click();
    });
    click("mnuToolsInformation");
    return values;
  }
  /// Does something in a dialog that ends by itself, with that box last.
  template <class T>
  void work(const std::string& form, const std::string& tool, Button T::*button, const std::string& box) {
    desk.expectForm<T>(form, [&](T& shown) {
      const auto alive = shown.keepAlive();
      (shown.*button).click();
      desk.expectBox(box, BoxAnswer::Ok);
      CHECK(finishes());
      CHECK(shown.closed());
    });
    click(tool);
  }
  void closeDisc(const std::string& box) {
    work("frmDiskInfo", "mnuToolsInformation", &frmDiskInfo::cmdCloseDisc, box);
  }
  void erase(const std::string& box) { work("frmErase", "mnuToolsErase", &frmErase::cmdOK, box); }
};

}  // namespace

TEST_CASE("The information of a disc is true at each step from blank to closed and erased") {
  DiscTools machine;
  CHECK(machine.information() == Lines{"Empty CD", "CD-DA/CD-ROM", "0", "Empty Session", "1.95 MB, 00:13:25", ""});
  machine.leaveOpen();
  const Lines open = machine.information();
  CHECK(Lines(open.begin(), open.begin() + 4) == Lines{"CD is Open", "CD-DA/CD-ROM", "1", "Incomplete Session"});
  CHECK(open.back() == "to be closed");
  machine.closeDisc("Complete");
  CHECK(machine.information() ==
        Lines{"CD is Closed", "CD-DA/CD-ROM", "1", "Closed Session", "0 (No Writing Available)", ""});
  machine.erase("Complete");
  CHECK(machine.information() == Lines{"Empty CD", "CD-DA/CD-ROM", "0", "Empty Session", "1.95 MB, 00:13:25", ""});
}

TEST_CASE("Only the session is closed by its button, and the disc takes further sessions") {
  DiscTools machine;
  machine.describe("[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 300000\n");
  machine.leaveOpen();
  machine.desk.expectForm<frmDiskInfo>("frmDiskInfo", [&](frmDiskInfo& form) {
    machine.desk.expectBox("Close Disc", BoxAnswer::Yes);
    form.cmdCloseSession.click();
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    CHECK(machine.finishes());
  });
  machine.click("mnuToolsInformation");
  const Lines closed = machine.information();
  CHECK(Lines(closed.begin(), closed.begin() + 4) == Lines{"CD is Open", "CD-DA/CD-ROM", "1", "Closed Session"});
  CHECK(closed.back().empty());
  machine.recordDisc();
  CHECK(machine.information().at(2) == "2");
}

TEST_CASE("A disc of which nothing can be made, or that was cut off, is a closed one without room") {
  DiscTools machine;
  const std::string ini = GENERATE("nonsense", "[disc]\nmedium = CD-R\nstatus = writing\nblocks = 1000\n");
  machine.describe(ini);
  const Lines values = machine.information();
  CHECK(values.at(0) == "CD is Closed");
  CHECK(values.at(4) == "0 (No Writing Available)");
  CHECK(values.back().empty());
}

TEST_CASE("A close that fails is told in its dialog's words, and the disc stays in the drive") {
  DiscTools machine;
  machine.leaveOpen();
  machine.keepDisc("failClosing = session\n");
  machine.closeDisc("Error");
  CHECK(machine.desk.lastBox().text ==
        "There was an error encountered trying to perform the requested disc operation.");
  CHECK(fs::exists(machine.disc()));
}

TEST_CASE("An erase that fails is told, and the disc can be erased again and written") {
  DiscTools machine;
  machine.recordDisc();
  machine.keepDisc("failErasing = yes\n");
  machine.erase("Error");
  CHECK(machine.information().at(0) == "CD is Closed");
  machine.keepDisc();
  machine.erase("Complete");
  machine.recordDisc();
  CHECK((contentOf(machine.disc() / "disc.bin") == RealMachine::samplesOf("a.wav", 40)));
}

TEST_CASE("A close and an erase behind a test alone are real") {
  DiscTools machine;
  machine.leaveOpen();
  machine.recordDisc([](frmOptions& form) { form.optTestOnly.click(); });
  machine.closeDisc("Complete");
  CHECK_THAT(machine.stored(), Contains("status = closed"));
  machine.erase("Complete");
  CHECK_THAT(machine.stored(), Contains("status = blank"));
}

}  // namespace trackloom
