#include "writing/frmDiskInfo.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"

namespace trackloom {

frmDiskInfo::frmDiskInfo(Session& session) : Form(session.host, "frmDiskInfo", "CD Information") {
  Image1.Picture = "DiskInfo";
  imgStatus.Picture = "Status";
  imgStatus.Visible = false;
  cmdCloseSession.Enabled = false;
  cmdCloseDisc.Enabled = false;
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdOK.Click = [this] { unload(); };
  cmdHelp.Click = [&session] { showHelpTopic(session, DiskInfoTopic); };
}

}  // namespace trackloom
