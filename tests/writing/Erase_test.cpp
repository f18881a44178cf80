#include "writing/WrittenDialogue.h"

namespace trackloom {

using fakes::FakeDisc;
using Lines = std::vector<std::string>;

namespace {

/// A user who erases the disc in the drive.
class Erasing : public Dialogue {
 public:
  explicit Erasing(const FakeDisc& disc) : Dialogue(AudioLayout) {
    engines.stage.disc = disc;
    heard();
  }

  void erase(const std::function<void(frmErase&)>& script) {
    desk.expectForm<frmErase>("frmErase", script);
    click("mnuToolsErase");
    CHECK(desk.finished());
  }
};

FakeDisc rewritable(std::int32_t status = DiscOpen) {
  return {.status = status, .rewritable = true, .sessions = 1, .lastSession = SessionClosed};
}

}  // namespace

TEST_CASE("A rewritable disc is erased the short way or the long way, as its dialogue has it") {
  const bool quick = GENERATE(true, false);
  Erasing machine(rewritable());
  machine.mod().WriteActive = true;
  machine.erase([&](frmErase& form) {
    if (!quick) form.optFull.click();
    machine.watch(form);
    machine.heard();
    form.cmdOK.click();
    CHECK_FALSE(machine.mod().WriteActive);
    CHECK(form.Timer1.Enabled);
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finish();
  });
  checkDialogue(machine, quick ? "erased-quickly" : "erased-fully");
}

TEST_CASE("The events of an erase that are let through at once find the dialog, and take it away") {
  Erasing machine(rewritable());
  machine.erase([&](frmErase& form) {
    machine.pump.pumped = 0;
    machine.pump.onPump = [&] {
      machine.desk.expectBox("Complete", BoxAnswer::Ok);
      machine.finish();
    };
    form.cmdOK.click();
    CHECK(machine.pump.pumped == 1);
  });
  CHECK(machine.desk.boxes.size() == 1);
}

TEST_CASE("E116: A disc that can be written once is refused, empty or not, and the dialog stays as it was") {
  Erasing machine(GENERATE(FakeDisc{}, FakeDisc::closed()));
  machine.mod().WriteActive = true;
  machine.erase([&](frmErase& form) {
    const auto refused = [&](const std::string& title) {
      machine.desk.expectBox(title, BoxAnswer::Ok);
      form.cmdOK.click();
      CHECK(form.cmdOK.Enabled);
      CHECK_FALSE(form.Timer1.Enabled);
      CHECK(form.lblStatus.Caption == std::string());
    };
    refused("CDRW Media");
    machine.engines.stage.disc.reset();
    refused("No CD");
    form.cmdCancel.click();
  });
  CHECK_FALSE(machine.mod().WriteActive);
}

TEST_CASE("E117: A closed rewritable disc is erased like an open one") {
  Erasing machine(rewritable(GENERATE(DiscEmpty, DiscOpen, DiscClosed)));
  machine.engines.stage.ejectFails = true;
  machine.erase([&](frmErase& form) {
    form.cmdOK.click();
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finish();
  });
  CHECK(machine.engines.stage.disc->status == DiscEmpty);
}

TEST_CASE("E118: While a disc is erased the dialog cannot be left, and a picture blinks") {
  Erasing machine(rewritable());
  machine.erase([&](frmErase& form) {
    form.Timer1.tick();
    CHECK_FALSE(form.imgStatus.Visible);
    form.cmdOK.click();
    for (const Button* button : {&form.cmdOK, &form.cmdCancel, &form.cmdHelp}) CHECK_FALSE(button->Enabled);
    CHECK_FALSE(form.Frame1.Enabled);
    CHECK_FALSE(form.optQuick.Enabled);
    CHECK_FALSE(form.optFull.Enabled);
    form.cmdCancel.click();
    form.closeBox();
    CHECK_FALSE(form.closed());
    for (const bool shown : {true, false, true}) {
      CHECK(form.imgStatus.Visible == shown);
      form.Timer1.tick();
    }
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finish();
  });
}

TEST_CASE("An erase that cannot begin is told, and its dialog goes") {
  Erasing machine(rewritable());
  machine.erase([&](frmErase& form) {
    machine.engines.stage.onLine = [&](const std::string& call) {
      if (call == "CDR1.EraseDisc(True)") machine.engines.stage.disc.reset();
    };
    machine.pump.pumped = 0;
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { CHECK(machine.pump.pumped == 1); };
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    form.cmdOK.click();
    CHECK(form.closed());
  });
  CHECK(machine.desk.lastBox().text == "There was an error encountered trying to erase the inserted disc.");
  CHECK(machine.desk.lastBox().ofFailure);
}

TEST_CASE("An erase that fails later is told as a disc operation, and its disc stays in the drive") {
  Erasing machine(rewritable());
  machine.erase([&](frmErase& form) {
    form.cmdOK.click();
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    machine.cdr1().events.OnWriteError(DeviceError, 7);
    CHECK(form.closed());
  });
  CHECK(machine.engines.stage.disc.has_value());
}

TEST_CASE(
    "An erase on an empty drive takes the mark of a write away, so that a later error is told without its window") {
  Erasing machine(FakeDisc{});
  machine.mod().WriteActive = true;
  machine.engines.stage.disc.reset();
  machine.erase([&](frmErase& form) {
    machine.desk.expectBox("No CD", BoxAnswer::Ok);
    form.cmdOK.click();
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    machine.cdr1().events.OnWriteError(WriteBufferError, 0);
    CHECK(form.closed());
  });
}

}  // namespace trackloom
