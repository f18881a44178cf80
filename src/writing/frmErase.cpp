#include "writing/frmErase.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"

namespace trackloom {

frmErase::frmErase(Session& session) : Form(session.host, "frmErase", "Erase CD") {
  Image1.Picture = "Erase";
  imgStatus.Picture = "Status";
  imgStatus.Visible = false;
  optQuick.select();
  // Nothing can be erased before somebody hears the engine tell that an erase has ended or failed.
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [&session] { showHelpTopic(session, EraseTopic); };
}

}  // namespace trackloom
