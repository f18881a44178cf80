#include "writing/frmDiskInfo.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmDiskInfo::frmDiskInfo(Session& session, WritingForms&)
    : Form(session.host, "frmDiskInfo", "CD Information"), session_(session) {
  imgStatus.Visible = false;
  cmdCloseSession.Enabled = false;
  cmdCloseDisc.Enabled = false;
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdOK.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, DiskInfoTopic); };
}

void frmDiskInfo::Load() {
  takePicture(session_, &frmImages::imgDiskInfo, Image1);
}

}  // namespace trackloom
