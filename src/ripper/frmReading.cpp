#include "ripper/frmReading.h"

#include "model/Session.h"
#include "model/frmImages.h"
#include "ripper/RipperForms.h"

namespace trackloom {

frmReading::frmReading(Session& session, RipperForms& forms)
    : Form(session.host, "frmReading", "Reading CD"), session_(session), forms_(forms) {}

void frmReading::Load() {
  takePicture(session_, &frmImages::imgReading, Image1);
  Topmost = true;
  allowUse(false);
  forms_.frmRipMain->cmdExtract.Enabled = false;
}

void frmReading::Unload() {
  Topmost = false;
  // Nothing is checked yet of what has been read, so there is nothing to extract.
  allowUse(true);
}

void frmReading::allowUse(bool allowed) {
  frmRipMain& window = forms_.frmRipMain.get();
  window.cboSpeeds.Enabled = allowed;
  window.ImageCombo1.Enabled = allowed;
  window.chkCDDB.Enabled = allowed;
  window.cmdExit.Enabled = allowed;
  window.cmdHelp.Enabled = allowed;
  window.cmdRead.Enabled = allowed;
  window.cmdSelectAll.Enabled = allowed;
  window.cmdSelectNone.Enabled = allowed;
}

}  // namespace trackloom
