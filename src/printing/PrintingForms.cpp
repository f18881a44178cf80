#include "printing/PrintingForms.h"

namespace trackloom {

PrintingForms::PrintingForms(Session& shared)
    : session(shared),
      frmReadStatus(session, *this),
      frmPrintList(session, *this),
      frmEdit(session, *this),
      frmPrint(session, *this) {}

PrintingForms::~PrintingForms() = default;

}  // namespace trackloom
