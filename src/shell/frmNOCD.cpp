#include "shell/frmNOCD.h"

#include "model/Session.h"

namespace trackloom {

frmNOCD::frmNOCD(Session& session) : Form(session.host, "frmNOCD", "No CD Writer Found"), session_(session) {
  Image1.Picture = "NoDrive";
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdOK.Click = [this] { unload(); };
}

void frmNOCD::Unload() {
  session_.ports.process.end(0);
}

}  // namespace trackloom
