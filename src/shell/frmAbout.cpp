#include "shell/frmAbout.h"

#include "model/Session.h"
#include "shell/frmImages.h"

namespace trackloom {

frmAbout::frmAbout(Session& session, FormSlot<frmImages>& images)
    : Form(session.host, "frmAbout", "About Trackloom"), images_(images) {
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdOK.Click = [this] { unload(); };
}

void frmAbout::Load() {
  Image1.Picture = images_->imgAbout.Picture.get();
  images_.unload();
}

}  // namespace trackloom
