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
  explicit ShellForms(Session& shared);
  ~ShellForms();

  Session& session;
  FormSlot<class frmOpen> frmOpen;
  FormSlot<class frmNOCD> frmNOCD;
  FormSlot<class frmDefaultOptions> frmDefaultOptions;
  FormSlot<class frmAbout> frmAbout;
};

}  // namespace trackloom
