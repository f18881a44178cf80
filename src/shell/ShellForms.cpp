#include "shell/ShellForms.h"

namespace trackloom {

ShellForms::ShellForms(Session& shared)
    : session(shared),
      frmOpen(session, *this),
      frmNOCD(session, *this),
      frmDefaultOptions(session, *this),
      frmAbout(session, *this) {}

ShellForms::~ShellForms() = default;

}  // namespace trackloom
