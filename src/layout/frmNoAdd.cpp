#include "layout/frmNoAdd.h"

#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmNoAdd::frmNoAdd(Session& session, LayoutForms&)
    : Form(session.host, "frmNoAdd", "Tracks Missing"), session_(session) {
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdOK.Click = [this] { unload(); };
}

void frmNoAdd::Load() {
  takePicture(session_, &frmImages::imgMissing, Image1);
}

}  // namespace trackloom
