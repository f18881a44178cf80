#include "layout/frmOpenLayout.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmOpenLayout::frmOpenLayout(Session& session, LayoutForms&)
    : Form(session.host, "frmOpenLayout", "Open CD Layout"), session_(session) {
  cmdOK.Enabled = false;
  cmdDelete.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, OpenLayoutTopic); };
}

void frmOpenLayout::Load() {
  takePicture(session_, &frmImages::imgOpenLayout, Image1);
}

}  // namespace trackloom
