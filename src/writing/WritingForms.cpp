#include "writing/WritingForms.h"

namespace trackloom {

WritingForms::WritingForms(Session& shared)
    : session(shared),
      frmOptions(session, *this),
      frmStatus(session, *this),
      frmDone(session, *this),
      frmError(session, *this),
      frmISO(session, *this),
      frmDiskInfo(session, *this),
      frmErase(session, *this) {}

WritingForms::~WritingForms() = default;

}  // namespace trackloom
