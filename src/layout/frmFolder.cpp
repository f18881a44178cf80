#include "layout/frmFolder.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"

namespace trackloom {

frmFolder::frmFolder(Session& session) : Form(session.host, "frmFolder", "MP3 CD Folder") {
  Image1.Picture = "Folder";
  // A folder is given to tracks of the list, so an empty list leaves nothing to confirm.
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  txtFolder.GotFocus = [this] { txtFolder.SelectAll(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [&session] { showHelpTopic(session, FolderTopic); };
}

}  // namespace trackloom
