#include <catch2/catch.hpp>

#include "writing/Recording.h"

namespace trackloom {

using fakes::Recording;
using Lines = std::vector<std::string>;

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

TEST_CASE("E101: The status window stays when its user closes it, and the write goes on") {
  Recording machine;
  machine.record();
  frmStatus& status = machine.status();
  machine.engines.stage.take();
  status.closeBox();
  CHECK(status.visible());
  CHECK(machine.engines.stage.take().empty());
  std::string text;
  machine.expectDone(text);
  machine.cdr1().finish();
  CHECK(text.starts_with("The created audio disc is ready"));
}

TEST_CASE("E102: While a track is cached the write cannot be cancelled, and can again when it is written") {
  Recording machine;
  machine.record([](frmOptions& form) { form.chkCache.click(); });
  frmStatus& status = machine.status();
  const auto cancelIsOn = [&] {
    machine.engines.stage.take();
    status.cmdCancel.click();
    return status.cmdCancel.Enabled.get();
  };
  machine.cdr1().step();  // it begins
  for (const std::int32_t blocks : {1000, 500}) {
    machine.cdr1().events.OnTrackCacheStart(1, blocks);
    CHECK_FALSE(cancelIsOn());
    machine.cdr1().events.OnCacheProgress(blocks);
    CHECK_FALSE(cancelIsOn());
    machine.cdr1().events.OnTrackWriteStart(1, blocks);
    CHECK(status.cmdCancel.Enabled);
  }
  CHECK(machine.desk.boxes.empty());
}

}  // namespace trackloom
