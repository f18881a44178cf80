#include "writing/frmStatus.h"

#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Text.h"

namespace trackloom {

frmStatus::frmStatus(Session& session, WritingForms&)
    : Form(session.host, "frmStatus", "CD Creation Status"), session_(session) {
  cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmStatus::Load() {
  takePicture(session_, &frmImages::imgStatus, Image1);
  lblSpeed.Caption = session_.mod.WriteSpeedText;
}

void frmStatus::say(Label& label, const std::string& text) {
  label.Caption = text;
  label.Refresh();
}

bool frmStatus::isToBeCancelled() {
  ListingWindow& window = session_.frmListing();
  for (Timer* timer : {&window.Timer1, &window.Timer2}) timer->hold();
  const bool cancelled = session_.ask({"Cancel", "Cancel the current record operation?", BoxButtons::OkCancel,
                                       BoxIcon::Question}) == BoxAnswer::Ok;
  for (Timer* timer : {&window.Timer1, &window.Timer2}) {
    if (cancelled) timer->Enabled = false;
    timer->release();
  }
  return cancelled;
}

void frmStatus::cmdCancel_Click() {
  // The write may have ended while the question stood, and then there is nothing left to cancel.
  if (!isToBeCancelled() || closed()) return;
  CDWriterXP& writer = *session_.frmListing().CDR1;
  writer.AbortWrite();
  hide();
  session_.frmListing().show();
  session_.ask({"Operation Cancelled",
                std::string("The current write operation has been cancelled.") + ParagraphBreak +
                    "The inserted disc may be unusable now.",
                BoxButtons::Ok, BoxIcon::Information});
  writer.EjectDisc();
  unload();
}

}  // namespace trackloom
