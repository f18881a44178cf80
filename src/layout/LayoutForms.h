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
  explicit LayoutForms(Session& shared);
  ~LayoutForms();

  Session& session;
  FormSlot<class frmNewOption> frmNewOption;
  FormSlot<class frmFiles> frmFiles;
  FormSlot<class frmSave> frmSave;
  FormSlot<class frmOpenLayout> frmOpenLayout;
  FormSlot<class frmNoAdd> frmNoAdd;
  FormSlot<class frmFolder> frmFolder;
  FormSlot<class frmChooseSort> frmChooseSort;
};

}  // namespace trackloom
