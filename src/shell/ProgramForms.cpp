#include "shell/ProgramForms.h"

namespace trackloom {

ProgramForms::ProgramForms(Session& shared)
    : session(shared),
      shell(session),
      layout(session),
      writing(session),
      search(session),
      printing(session),
      ripper(session) {}

ProgramForms::~ProgramForms() = default;

}  // namespace trackloom
