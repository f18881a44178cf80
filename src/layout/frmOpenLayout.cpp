#include "layout/frmOpenLayout.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"

namespace trackloom {

frmOpenLayout::frmOpenLayout(Session& session) : Form(session.host, "frmOpenLayout", "Open CD Layout") {
  Image1.Picture = "OpenLayout";
  cmdOK.Enabled = false;
  cmdDelete.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [&session] { showHelpTopic(session, OpenLayoutTopic); };
}

}  // namespace trackloom
