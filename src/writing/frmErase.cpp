#include "writing/frmErase.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmErase::frmErase(Session& session, WritingForms&) : Form(session.host, "frmErase", "Erase CD"), session_(session) {
  imgStatus.Visible = false;
  optQuick.select();
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, EraseTopic); };
  Timer1.Tick = [this] { blink(imgStatus); };
}

void frmErase::Load() {
  takePicture(session_, &frmImages::imgErase, Image1);
}

void frmErase::cmdOK_Click() {
  // From here on an error of the engine is none of a write.
  session_.mod.WriteActive = false;
  if (!discCanBeErased()) return;
  beginErasing();
  const bool begun = session_.frmListing().CDR1->EraseDisc(optQuick.selected());
  session_.ports.pump.pumpEvents();
  if (begun) return;
  session_.ask({.title = "Error",
                .text = "There was an error encountered trying to erase the inserted disc.",
                .ofFailure = true});
  unload();
}

bool frmErase::discCanBeErased() {
  CDWriterXP& writer = *session_.frmListing().CDR1;
  if (!writer.MediaLoaded()) {
    session_.ask({"No CD", "There is no CD in the selected CD drive."});
    return false;
  }
  if (writer.DiscRewritable()) return true;
  session_.ask({"CDRW Media",
                "The inserted media does not appear to be a CDRW media disc.  The erase option can only erase CDRW "
                "media discs."});
  return false;
}

void frmErase::beginErasing() {
  erasing_ = true;
  Frame1.Enabled = false;
  for (OptionButton* option : {&optQuick, &optFull}) option->Enabled = false;
  for (Button* button : {&cmdOK, &cmdCancel, &cmdHelp}) button->Enabled = false;
  imgStatus.Visible = true;
  say("Preparing for Erase Operation...Please wait...");
  Timer1.Enabled = true;
}

void frmErase::showErasing() {
  say("Erasing CDRW Media Disc...This operation can take up to 15 minutes for a Full Erase Operation on some CD "
      "Recording Drives and the system may appear to stop responding...Please wait...");
}

void frmErase::say(const std::string& words) {
  lblStatus.Caption = words;
  lblStatus.Refresh();
}

}  // namespace trackloom
