#include "writing/WrittenDialogue.h"

namespace trackloom {

using fakes::FakeDisc;
using Lines = std::vector<std::string>;

namespace {

/// A user who asks for what is known about the disc in the drive.
class Information : public Dialogue {
 public:
  explicit Information(const FakeDisc& disc) : Dialogue(AudioLayout) {
    engines.stage.disc = disc;
    heard();
  }

  void ask(const std::function<void(frmDiskInfo&)>& script) {
    desk.expectForm<frmDiskInfo>("frmDiskInfo", script);
    click("mnuToolsInformation");
    CHECK(desk.finished());
  }
  /// What stands in the list; which of the close buttons are on stands behind it.
  Lines facts() {
    Lines all;
    ask([&](frmDiskInfo& form) {
      for (int row = 1; row <= form.ListView1.Count(); ++row) {
        all.push_back(form.ListView1.Item(row).Text + " " + form.ListView1.SubItem(row, 1));
        CHECK(form.ListView1.Item(row).SmallIcon == 1);
      }
      CHECK(form.ListView1.SmallIcons == &form.ImageList1);
      CHECK(form.cmdCloseSession.Enabled == form.cmdCloseDisc.Enabled);
      all.emplace_back(form.cmdCloseDisc.Enabled ? "can be closed" : "cannot be closed");
      form.cmdOK.click();
    });
    return all;
  }
  std::string fact(std::size_t row) { return facts().at(row); }
};

FakeDisc incomplete() {
  return {.status = DiscOpen, .freeAudio = 4500, .freeData = 1024, .sessions = 1, .lastSession = SessionIncomplete};
}

/// What keeps the user from leaving while the disc is being closed.
void checkLocked(frmDiskInfo& form) {
  for (const Button* button : {&form.cmdOK, &form.cmdCloseSession, &form.cmdCloseDisc, &form.cmdHelp})
    CHECK_FALSE(button->Enabled);
  form.closeBox();
  CHECK_FALSE(form.closed());
}

}  // namespace

TEST_CASE("E111: An empty disc is told as empty, and nothing of it can be closed") {
  Information machine(FakeDisc{});
  CHECK(machine.facts() == Lines{"Inserted CD Status: Empty CD", "Inserted CD Type: CD-DA/CD-ROM",
                                 "Number of CD Sessions: 0", "Last Session Status: Empty Session",
                                 "Free Space & Time on CD: 702.83 MB, 79:57:74", "cannot be closed"});
}

TEST_CASE("E112: A closed disc has no room for anything") {
  Information machine(FakeDisc::closed());
  CHECK(machine.facts() == Lines{"Inserted CD Status: CD is Closed", "Inserted CD Type: CD-DA/CD-ROM",
                                 "Number of CD Sessions: 1", "Last Session Status: Closed Session",
                                 "Free Space & Time on CD: 0 (No Writing Available)", "cannot be closed"});
}

TEST_CASE("A disc whose last session is incomplete can be closed, and its size comes before its time") {
  Information machine(incomplete());
  CHECK(machine.facts() == Lines{"Inserted CD Status: CD is Open", "Inserted CD Type: CD-DA/CD-ROM",
                                 "Number of CD Sessions: 1", "Last Session Status: Incomplete Session",
                                 "Free Space & Time on CD: 2.00 MB, 01:00:00", "can be closed"});
}

TEST_CASE("Room for audio alone counts as none") {
  FakeDisc disc = incomplete();
  disc.freeData = GENERATE(0, -1);
  Information machine(disc);
  CHECK(machine.fact(4) == "Free Space & Time on CD: 0 (No Writing Available)");
}

TEST_CASE("E113: A type of 255 is an unknown one") {
  Information machine(FakeDisc{.type = DiscTypeUnknown});
  CHECK(machine.fact(1) == "Inserted CD Type: Unknown");
}

TEST_CASE(
    "E114: A type that nobody knows leaves its cell empty, like a status, and of a session it is an unknown one") {
  Information machine(FakeDisc{.status = 4, .type = 48, .lastSession = 2});
  CHECK(machine.facts() == Lines{"Inserted CD Status: ", "Inserted CD Type: ", "Number of CD Sessions: 0",
                                 "Last Session Status: Unknown", "Free Space & Time on CD: 702.83 MB, 79:57:74",
                                 "cannot be closed"});
  const auto [type, words] = GENERATE(table<std::int32_t, std::string>({{16, "CDI"}, {32, "CD-ROM XA"}}));
  Information other(FakeDisc{.status = DiscStatusUnknown, .type = type});
  CHECK(other.fact(0) == "Inserted CD Status: Unknown");
  CHECK(other.fact(1) == "Inserted CD Type: " + words);
}

TEST_CASE("E115: Yes and No at the question of the session close the session alone, as their dialogue has it") {
  const BoxAnswer answer = GENERATE(BoxAnswer::Yes, BoxAnswer::No);
  Information machine(incomplete());
  machine.mod().WriteActive = true;
  machine.ask([&](frmDiskInfo& form) {
    machine.watch(form);
    machine.heard();
    machine.desk.expectBox("Close Disc", answer);
    machine.desk.whileBoxIsOpen = [&](const MessageBox&) { machine.heard(); };
    form.cmdCloseSession.click();
    machine.desk.whileBoxIsOpen = {};
    checkLocked(form);
    CHECK(form.Timer1.Enabled);
    CHECK(machine.mod().DiscCloseActive);
    CHECK_FALSE(machine.mod().WriteActive);
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finish();
    CHECK_FALSE(form.Timer1.Enabled);
  });
  checkDialogue(machine, "session-closed");
}

TEST_CASE("The whole disc is closed without a question, and told like a session, as its dialogue has it") {
  Information machine(incomplete());
  machine.mod().WriteActive = true;
  machine.ask([&](frmDiskInfo& form) {
    machine.watch(form);
    machine.heard();
    form.cmdCloseDisc.click();
    checkLocked(form);
    CHECK_FALSE(machine.mod().WriteActive);
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finish();
  });
  checkDialogue(machine, "disc-closed");
}

TEST_CASE("What cannot be closed is told, takes the dialog away and leaves the disc in the drive") {
  const bool session = GENERATE(true, false);
  Information machine(incomplete());
  machine.ask([&](frmDiskInfo& form) {
    machine.engines.stage.disc->lastSession = SessionClosed;
    if (session) machine.desk.expectBox("Close Disc", BoxAnswer::No);
    machine.desk.whileBoxIsOpen = [&](const MessageBox& box) {
      // Behind the disc's own button it blinks on until the dialog goes.
      if (box.title == "Error") CHECK(form.Timer1.Enabled == !session);
    };
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    (session ? form.cmdCloseSession : form.cmdCloseDisc).click();
    CHECK(form.closed());
  });
  CHECK(machine.desk.lastBox().text ==
        (session ? "There was an error encountered trying to close the last session on the inserted CD."
                 : "There was an error encountered trying to close the current disc."));
  CHECK(machine.desk.lastBox().ofFailure);
  CHECK(machine.engines.stage.disc.has_value());
  CHECK(machine.mod().DiscCloseActive);
}

TEST_CASE("A close that fails later is told as a disc operation, and its dialog goes") {
  Information machine(incomplete());
  machine.ask([&](frmDiskInfo& form) {
    form.cmdCloseDisc.click();
    machine.desk.expectBox("Error", BoxAnswer::Ok);
    machine.cdr1().events.OnWriteError(DeviceError, 7);
    CHECK(form.closed());
  });
  CHECK(machine.engines.stage.disc.has_value());
}

TEST_CASE("While the disc is closed a picture blinks, and the closing says nothing to a status window") {
  Information machine(incomplete());
  machine.ask([&](frmDiskInfo& form) {
    form.Timer1.tick();
    CHECK_FALSE(form.imgStatus.Visible);
    form.cmdCloseDisc.click();
    for (const bool shown : {true, false, true, false}) {
      CHECK(form.imgStatus.Visible == shown);
      form.Timer1.tick();
    }
    machine.step(2);
    CHECK_FALSE(machine.program().forms().writing.frmStatus.exists());
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finish();
  });
}

}  // namespace trackloom
