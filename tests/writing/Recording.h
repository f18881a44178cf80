#pragma once

#include <catch2/catch.hpp>
#include <functional>
#include <string>
#include <vector>

#include "fakes/Machine.h"
#include "writing/WritingForms.h"

namespace trackloom::fakes {

/// A machine with a layout of two tracks, ready to record.
class Recording : public Machine {
 public:
  explicit Recording(std::int16_t kind = AudioLayout) {
    startQuietly();
    newLayout(kind);
    addTrack("a.mp3", 1000);
    addTrack("b.mp3", 500);
    engines.stage.take();
    desk.transcript.clear();
  }

  void record(const std::function<void(frmOptions&)>& choose = {}) {
    desk.expectForm<frmOptions>("frmOptions", [choose](frmOptions& form) {
      if (choose) choose(form);
      form.cmdOK.click();
    });
    click("Record");
  }
  void refused(const std::string& title) {
    desk.expectBox(title, BoxAnswer::Ok);
    click("mnuActionsRecord");
    CHECK(desk.finished());
    CHECK_FALSE(mod().RecordConfirmed);
    CHECK(window().visible());
  }
  /// The write of one track goes through and ends well.
  void complete() {
    CDWriterEvents& events = cdr1().events;
    events.OnWriteStarting();
    events.OnTrackWriteStart(1, 1000);
    events.OnWriteProgress(1, 1000, 80);
    events.OnTrackClosing(1);
    events.OnOperationComplete();
  }
  void expectDone(std::string& text) {
    desk.expectForm<frmDone>("frmDone", [&text](frmDone& form) {
      text = form.lblTypeInfo.Caption;
      form.cmdClose.click();
    });
  }
  /// What the window of errors says once `fail` has failed the write.
  std::string errorAfter(const std::function<void()>& fail) {
    std::string text;
    desk.expectForm<frmError>("frmError", [&](frmError& form) {
      text = form.lblError.Caption;
      form.cmdClose.click();
    });
    fail();
    CHECK(desk.finished());
    return text;
  }
  frmStatus& status() { return program().forms().writing.frmStatus.get(); }
};

}  // namespace trackloom::fakes
