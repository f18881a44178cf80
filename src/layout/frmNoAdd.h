#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct LayoutForms;

/// Tells which tracks of a layout were not there when it was opened. Whoever shows it fills the list.
class frmNoAdd final : public Form {
 public:
  frmNoAdd(Session& session, LayoutForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Missing Tracks in the Current Layout"};
  ListView List1{*this, "List1", {{"Path", "", 8400}}};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  void Load() override;

  Session& session_;
};

}  // namespace trackloom
