#pragma once

#include "controls/FormSlot.h"
#include "writing/frmDiskInfo.h"
#include "writing/frmDone.h"
#include "writing/frmErase.h"
#include "writing/frmError.h"
#include "writing/frmISO.h"
#include "writing/frmOptions.h"
#include "writing/frmStatus.h"

namespace trackloom {

struct Session;

/// The windows of a recording and of the other disc operations.
struct WritingForms {
  Session& session;
  FormSlot<class frmOptions> frmOptions{session, *this};
  FormSlot<class frmStatus> frmStatus{session, *this};
  FormSlot<class frmDone> frmDone{session, *this};
  FormSlot<class frmError> frmError{session, *this};
  FormSlot<class frmISO> frmISO{session, *this};
  FormSlot<class frmDiskInfo> frmDiskInfo{session, *this};
  FormSlot<class frmErase> frmErase{session, *this};
};

}  // namespace trackloom
