#include "writing/frmISO.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmISO::frmISO(Session& session, WritingForms&)
    : Form(session.host, "frmISO", "Create MP3 CD ISO Image"), session_(session) {
  txtImage.Locked = true;
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { cmdCancel_Click(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, IsoTopic); };
}

void frmISO::Load() {
  takePicture(session_, &frmImages::imgISO, Image1);
  // Nothing can be browsed for without a file dialog.
  cmdBrowse.Enabled = false;
}

void frmISO::cmdCancel_Click() {
  session_.mod.RecordConfirmed = false;
  unload();
}

}  // namespace trackloom
