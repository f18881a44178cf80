#pragma once

#include "layout/LayoutForms.h"
#include "shell/ShellForms.h"
#include "writing/WritingForms.h"

namespace trackloom {

/// Every window of the program but the main one.
struct ProgramForms {
  explicit ProgramForms(Session& session) : shell(session), layout(session), writing(session) {}

  ShellForms shell;
  LayoutForms layout;
  WritingForms writing;
};

}  // namespace trackloom
