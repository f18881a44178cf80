#include "writing/Recording.h"

#include <catch2/catch.hpp>

namespace trackloom::fakes {

Recording::Recording(std::int16_t kind) {
  startQuietly();
  newLayout(kind);
  addTrack("a.mp3", 1000);
  addTrack("b.mp3", 500);
  engines.stage.take();
  desk.transcript.clear();
}

Recording::~Recording() = default;

void Recording::record(const std::function<void(frmOptions&)>& choose) {
  desk.expectForm<frmOptions>("frmOptions", [choose](frmOptions& form) {
    if (choose) choose(form);
    form.cmdOK.click();
  });
  click("Record");
}

void Recording::refused(const std::string& title) {
  desk.expectBox(title, BoxAnswer::Ok);
  click("mnuActionsRecord");
  CHECK(desk.finished());
  CHECK_FALSE(mod().RecordConfirmed);
  CHECK(window().visible());
}

void Recording::complete() {
  CDWriterEvents& events = cdr1().events;
  events.OnWriteStarting();
  events.OnTrackWriteStart(1, 1000);
  events.OnWriteProgress(1, 1000, 80);
  events.OnTrackClosing(1);
  events.OnOperationComplete();
}

void Recording::expectDone(std::string& text) {
  desk.expectForm<frmDone>("frmDone", [&text](frmDone& form) {
    text = form.lblTypeInfo.Caption;
    form.cmdClose.click();
  });
}

std::string Recording::errorAfter(const std::function<void()>& fail) {
  std::string text;
  desk.expectForm<frmError>("frmError", [&](frmError& form) {
    text = form.lblError.Caption;
    form.cmdClose.click();
  });
  fail();
  CHECK(desk.finished());
  return text;
}

frmStatus& Recording::status() {
  return program().forms().writing.frmStatus.get();
}

}  // namespace trackloom::fakes
