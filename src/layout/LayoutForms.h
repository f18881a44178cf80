#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "layout/frmFiles.h"
#include "layout/frmNewOption.h"
#include "layout/frmSave.h"

namespace trackloom {

/// The dialogs that change a layout.
struct LayoutForms {
  explicit LayoutForms(Session& session)
      : frmNewOption([&session] { return std::make_shared<class frmNewOption>(session); }),
        frmFiles([&session] { return std::make_shared<class frmFiles>(session); }),
        frmSave([&session] { return std::make_shared<class frmSave>(session); }) {}

  FormSlot<class frmNewOption> frmNewOption;
  FormSlot<class frmFiles> frmFiles;
  FormSlot<class frmSave> frmSave;
};

}  // namespace trackloom
