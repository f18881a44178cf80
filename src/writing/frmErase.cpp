#include "writing/frmErase.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmErase::frmErase(Session& session, WritingForms&) : Form(session.host, "frmErase", "Erase CD"), session_(session) {
  imgStatus.Visible = false;
  optQuick.select();
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, EraseTopic); };
}

void frmErase::Load() {
  takePicture(session_, &frmImages::imgErase, Image1);
  // Nothing can be erased before somebody hears the engine tell that an erase has ended or failed.
  cmdOK.Enabled = false;
}

}  // namespace trackloom
