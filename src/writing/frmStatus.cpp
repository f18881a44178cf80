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

void frmStatus::cmdCancel_Click() {
  const BoxAnswer answer =
      session_.ask({"Cancel", "Cancel the current record operation?", BoxButtons::OkCancel, BoxIcon::Question});
  // The write may have ended while the question stood, and then there is nothing left to cancel.
  if (answer == BoxAnswer::Cancel || closed()) return;
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
