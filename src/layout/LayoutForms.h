#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "layout/frmChooseSort.h"
#include "layout/frmFiles.h"
#include "layout/frmFolder.h"
#include "layout/frmNewOption.h"
#include "layout/frmOpenLayout.h"
#include "layout/frmSave.h"

namespace trackloom {

/// The dialogs that change a layout.
struct LayoutForms {
  explicit LayoutForms(Session& session)
      : frmNewOption([&session] { return std::make_shared<class frmNewOption>(session); }),
        frmFiles([&session] { return std::make_shared<class frmFiles>(session); }),
        frmSave([&session] { return std::make_shared<class frmSave>(session); }),
        frmOpenLayout([&session] { return std::make_shared<class frmOpenLayout>(session); }),
        frmFolder([&session] { return std::make_shared<class frmFolder>(session); }),
        frmChooseSort([&session] { return std::make_shared<class frmChooseSort>(session); }) {}

  FormSlot<class frmNewOption> frmNewOption;
  FormSlot<class frmFiles> frmFiles;
  FormSlot<class frmSave> frmSave;
  FormSlot<class frmOpenLayout> frmOpenLayout;
  FormSlot<class frmFolder> frmFolder;
  FormSlot<class frmChooseSort> frmChooseSort;
};

}  // namespace trackloom
