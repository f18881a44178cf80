#pragma once

#include "controls/FormSlot.h"
#include "ripper/CDRipperMod1.h"
#include "ripper/frmReading.h"
#include "ripper/frmRipMain.h"
#include "ripper/frmRipOptions.h"
#include "ripper/frmRipStatus.h"

namespace trackloom {

struct Session;

/// The windows of the ripper, and what they share.
struct RipperForms {
  Session& session;
  CDRipperMod1 mod{};
  FormSlot<class frmRipMain> frmRipMain{session, *this};
  FormSlot<class frmReading> frmReading{session, *this};
  FormSlot<class frmRipOptions> frmRipOptions{session, *this};
  FormSlot<class frmRipStatus> frmRipStatus{session, *this};
};

}  // namespace trackloom
