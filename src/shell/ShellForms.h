#pragma once

#include "controls/FormSlot.h"
#include "shell/frmAbout.h"
#include "shell/frmDefaultOptions.h"
#include "shell/frmNOCD.h"
#include "shell/frmOpen.h"

namespace trackloom {

struct Session;

/// The shell's own windows beside the main one.
struct ShellForms {
  Session& session;
  FormSlot<class frmOpen> frmOpen{session, *this};
  FormSlot<class frmNOCD> frmNOCD{session, *this};
  FormSlot<class frmDefaultOptions> frmDefaultOptions{session, *this};
  FormSlot<class frmAbout> frmAbout{session, *this};
};

}  // namespace trackloom
