#include "layout/LayoutForms.h"

namespace trackloom {

LayoutForms::LayoutForms(Session& shared)
    : session(shared),
      frmNewOption(session, *this),
      frmFiles(session, *this),
      frmSave(session, *this),
      frmOpenLayout(session, *this),
      frmNoAdd(session, *this),
      frmFolder(session, *this),
      frmChooseSort(session, *this) {}

LayoutForms::~LayoutForms() = default;

}  // namespace trackloom
