#include "search/frmSearch.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"

namespace trackloom {

frmSearch::frmSearch(Session& session) : Form(session.host, "frmSearch", "Search for Audio Files"), session_(session) {
  Image1.Picture = "Search";
  // A search walks the hard drives of the machine, and can begin only where these are known.
  cmdStart.Enabled = false;
  cmdCheckAll.Enabled = false;
  cmdClearAll.Enabled = false;
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, SearchTopic); };
}

void frmSearch::Load() {
  Combo1.AddItem("MP3 Files");
  if (session_.mod.LayoutType != Mp3Layout) {
    Combo1.AddItem("WAV Files");
    Combo1.AddItem("All Audio Files");
  }
  Combo1.SetListIndex(0);
}

}  // namespace trackloom
