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
  explicit PrintingForms(Session& shared);
  ~PrintingForms();

  Session& session;
  FormSlot<class frmReadStatus> frmReadStatus;
  FormSlot<class frmPrintList> frmPrintList;
  FormSlot<class frmEdit> frmEdit;
  FormSlot<class frmPrint> frmPrint;
};

}  // namespace trackloom
