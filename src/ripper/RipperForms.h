#pragma once

#include "controls/FormSlot.h"
#include "ripper/frmRipMain.h"

namespace trackloom {

struct Session;

/// The windows of the ripper.
struct RipperForms {
  Session& session;
  FormSlot<class frmRipMain> frmRipMain{session, *this};
};

}  // namespace trackloom
