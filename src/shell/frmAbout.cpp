#include "shell/frmAbout.h"

#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmAbout::frmAbout(Session& session, ShellForms&)
    : Form(session.host, "frmAbout", "About Trackloom"), session_(session) {
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdOK.Click = [this] { unload(); };
}

void frmAbout::Load() {
  takePicture(session_, &frmImages::imgAbout, Image1);
}

}  // namespace trackloom
