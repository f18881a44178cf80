#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "writing/frmDone.h"
#include "writing/frmError.h"
#include "writing/frmOptions.h"
#include "writing/frmStatus.h"

namespace trackloom {

/// The windows of a recording.
struct WritingForms {
  explicit WritingForms(Session& session)
      : frmOptions([&session] { return std::make_shared<class frmOptions>(session); }),
        frmStatus([&session] { return std::make_shared<class frmStatus>(session); }),
        frmDone([&session] { return std::make_shared<class frmDone>(session); }),
        frmError([&session] { return std::make_shared<class frmError>(session); }) {}

  FormSlot<class frmOptions> frmOptions;
  FormSlot<class frmStatus> frmStatus;
  FormSlot<class frmDone> frmDone;
  FormSlot<class frmError> frmError;
};

}  // namespace trackloom
