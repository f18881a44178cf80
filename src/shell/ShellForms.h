#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "shell/frmNOCD.h"
#include "shell/frmOpen.h"

namespace trackloom {

/// The shell's own windows beside the main one.
struct ShellForms {
  explicit ShellForms(Session& session)
      : frmOpen([&session] { return std::make_shared<class frmOpen>(session); }),
        frmNOCD([&session] { return std::make_shared<class frmNOCD>(session); }) {}

  FormSlot<class frmOpen> frmOpen;
  FormSlot<class frmNOCD> frmNOCD;
};

}  // namespace trackloom
