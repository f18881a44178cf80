#include "layout/frmFolder.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmFolder::frmFolder(Session& session, LayoutForms&)
    : Form(session.host, "frmFolder", "MP3 CD Folder"), session_(session) {
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  txtFolder.GotFocus = [this] { txtFolder.SelectAll(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, FolderTopic); };
}

void frmFolder::Load() {
  takePicture(session_, &frmImages::imgFolder, Image1);
  // A folder is given to tracks of the list, so an empty list leaves nothing to confirm.
  cmdOK.Enabled = false;
}

}  // namespace trackloom
