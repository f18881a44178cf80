#include "shell/frmOpen.h"

#include "model/Session.h"
#include "shell/modXP.h"

namespace trackloom {

namespace {

/// The splash picture of 404 by 331 pixels, in twips.
constexpr std::int32_t SplashWidth = 6060;
constexpr std::int32_t SplashHeight = 4965;

}  // namespace

frmOpen::frmOpen(Session& session, ShellForms&) : Form(session.host, "frmOpen", ""), session_(session) {
  InitXPControls(session.ports.commonControls);
  Timer1.Tick = [this] { Timer1_Tick(); };
}

void frmOpen::Load() {
  Placement place = placement;
  place.width = SplashWidth;
  place.height = SplashHeight;
  placement = place;
  Timer1.Enabled = true;
}

void frmOpen::Timer1_Tick() {
  session_.frmListing().show();
  unload();
}

}  // namespace trackloom
