#include "shell/frmNOCD.h"

#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmNOCD::frmNOCD(Session& session, ShellForms&)
    : Form(session.host, "frmNOCD", "No CD Writer Found"), session_(session) {
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdOK.Click = [this] { unload(); };
}

void frmNOCD::Load() {
  takePicture(session_, &frmImages::imgNoDrive, Image1);
}

void frmNOCD::Unload() {
  session_.ports.process.end(0);
}

}  // namespace trackloom
