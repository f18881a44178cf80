#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "printing/frmPrintList.h"
#include "printing/frmReadStatus.h"

namespace trackloom {

/// The windows on the way from the listing to paper.
struct PrintingForms {
  explicit PrintingForms(Session& session)
      : frmReadStatus([&session] { return std::make_shared<class frmReadStatus>(session); }),
        frmPrintList([&session] { return std::make_shared<class frmPrintList>(session); }) {}

  FormSlot<class frmReadStatus> frmReadStatus;
  FormSlot<class frmPrintList> frmPrintList;
};

}  // namespace trackloom
