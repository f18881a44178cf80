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
  explicit WritingForms(Session& shared);
  ~WritingForms();

  Session& session;
  FormSlot<class frmOptions> frmOptions;
  FormSlot<class frmStatus> frmStatus;
  FormSlot<class frmDone> frmDone;
  FormSlot<class frmError> frmError;
  FormSlot<class frmISO> frmISO;
  FormSlot<class frmDiskInfo> frmDiskInfo;
  FormSlot<class frmErase> frmErase;
};

}  // namespace trackloom
