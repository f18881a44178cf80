#include "writing/frmError.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"

namespace trackloom {

frmError::frmError(Session& session) : Form(session.host, "frmError", "Write Error") {
  Image1.Picture = "Error";
  cmdClose.Default = true;
  cmdClose.Cancel = true;
  cmdClose.Click = [this, &session] {
    session.frmListing().CDR1->EjectDisc();
    unload();
  };
  cmdHelp.Click = [&session] { showHelpTopic(session, ErrorTopic); };
}

}  // namespace trackloom
