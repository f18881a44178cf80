#pragma once

#include "controls/FormSlot.h"
#include "printing/frmEdit.h"
#include "printing/frmPrint.h"
#include "printing/frmPrintList.h"
#include "printing/frmReadStatus.h"

namespace trackloom {

struct Session;

/// The windows on the way from the listing to paper.
struct PrintingForms {
  Session& session;
  FormSlot<class frmReadStatus> frmReadStatus{session, *this};
  FormSlot<class frmPrintList> frmPrintList{session, *this};
  FormSlot<class frmEdit> frmEdit{session, *this};
  FormSlot<class frmPrint> frmPrint{session, *this};
};

}  // namespace trackloom
