#include "writing/frmError.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmError::frmError(Session& session, WritingForms&) : Form(session.host, "frmError", "Write Error"), session_(session) {
  cmdClose.Default = true;
  cmdClose.Cancel = true;
  cmdClose.Click = [this] {
    session_.frmListing().CDR1->EjectDisc();
    unload();
  };
  cmdHelp.Click = [this] { showHelpTopic(session_, ErrorTopic); };
}

void frmError::Load() {
  takePicture(session_, &frmImages::imgError, Image1);
}

}  // namespace trackloom
