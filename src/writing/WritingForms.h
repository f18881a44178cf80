#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "writing/frmDiskInfo.h"
#include "writing/frmDone.h"
#include "writing/frmErase.h"
#include "writing/frmError.h"
#include "writing/frmISO.h"
#include "writing/frmOptions.h"
#include "writing/frmStatus.h"

namespace trackloom {

/// The windows of a recording and of the other disc operations.
struct WritingForms {
  explicit WritingForms(Session& session)
      : frmOptions([&session] { return std::make_shared<class frmOptions>(session); }),
        frmStatus([&session] { return std::make_shared<class frmStatus>(session); }),
        frmDone([&session] { return std::make_shared<class frmDone>(session); }),
        frmError([&session] { return std::make_shared<class frmError>(session); }),
        frmISO([&session] { return std::make_shared<class frmISO>(session); }),
        frmDiskInfo([&session] { return std::make_shared<class frmDiskInfo>(session); }),
        frmErase([&session] { return std::make_shared<class frmErase>(session); }) {}

  FormSlot<class frmOptions> frmOptions;
  FormSlot<class frmStatus> frmStatus;
  FormSlot<class frmDone> frmDone;
  FormSlot<class frmError> frmError;
  FormSlot<class frmISO> frmISO;
  FormSlot<class frmDiskInfo> frmDiskInfo;
  FormSlot<class frmErase> frmErase;
};

}  // namespace trackloom
