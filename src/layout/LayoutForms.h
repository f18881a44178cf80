#pragma once

#include "controls/FormSlot.h"
#include "layout/frmChooseSort.h"
#include "layout/frmFiles.h"
#include "layout/frmFolder.h"
#include "layout/frmNewOption.h"
#include "layout/frmNoAdd.h"
#include "layout/frmOpenLayout.h"
#include "layout/frmSave.h"

namespace trackloom {

struct Session;

/// The dialogs that change a layout.
struct LayoutForms {
  Session& session;
  FormSlot<class frmNewOption> frmNewOption{session, *this};
  FormSlot<class frmFiles> frmFiles{session, *this};
  FormSlot<class frmSave> frmSave{session, *this};
  FormSlot<class frmOpenLayout> frmOpenLayout{session, *this};
  FormSlot<class frmNoAdd> frmNoAdd{session, *this};
  FormSlot<class frmFolder> frmFolder{session, *this};
  FormSlot<class frmChooseSort> frmChooseSort{session, *this};
};

}  // namespace trackloom
