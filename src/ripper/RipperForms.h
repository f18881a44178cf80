#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "ripper/frmRipMain.h"

namespace trackloom {

/// The windows of the ripper.
struct RipperForms {
  explicit RipperForms(Session& session)
      : frmRipMain([&session] { return std::make_shared<class frmRipMain>(session); }) {}

  FormSlot<class frmRipMain> frmRipMain;
};

}  // namespace trackloom
