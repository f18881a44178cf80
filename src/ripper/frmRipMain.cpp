#include "ripper/frmRipMain.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmRipMain::frmRipMain(Session& session, RipperForms&)
    : Form(session.host, "frmRipMain", "CD Ripper"), session_(session) {
  chkCDDB.Value = true;
  cmdSelectAll.Enabled = false;
  cmdSelectNone.Enabled = false;
  cmdExtract.Enabled = false;
  cmdExit.Cancel = true;
  cmdExit.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, RipMainTopic); };
}

void frmRipMain::Load() {
  takePicture(session_, &frmImages::imgRipper, Image1);
  // A disc is read in a drive of the list, and the list is empty.
  cmdRead.Enabled = false;
}

void frmRipMain::Unload() {
  session_.frmListing().show();
}

}  // namespace trackloom
