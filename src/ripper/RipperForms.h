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
  explicit RipperForms(Session& shared);
  ~RipperForms();

  Session& session;
  CDRipperMod1 mod{};
  FormSlot<class frmRipMain> frmRipMain;
  FormSlot<class frmReading> frmReading;
  FormSlot<class frmRipOptions> frmRipOptions;
  FormSlot<class frmRipStatus> frmRipStatus;
};

}  // namespace trackloom
