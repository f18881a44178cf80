#include "search/frmSearch.h"

#include "help/HelpLaunch.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmSearch::frmSearch(Session& session, SearchForms&)
    : Form(session.host, "frmSearch", "Search for Audio Files"), session_(session) {
  cmdCheckAll.Enabled = false;
  cmdClearAll.Enabled = false;
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, SearchTopic); };
}

void frmSearch::Load() {
  takePicture(session_, &frmImages::imgSearch, Image1);
  // A search walks the hard drives of the machine, and can begin only where these are known.
  cmdStart.Enabled = false;
  Combo1.AddItem("MP3 Files");
  if (!isMp3Layout(session_)) {
    Combo1.AddItem("WAV Files");
    Combo1.AddItem("All Audio Files");
  }
  Combo1.SetListIndex(0);
}

}  // namespace trackloom
