#pragma once

#include <string>

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Tells that a record operation has ended well, and what the disc is good for now.
class frmDone final : public Form {
 public:
  frmDone(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Operation Complete"};
  Frame Frame1{*this, "Frame1", "Details"};
  Label lblTypeInfo{*this, "lblTypeInfo", ""};
  Button cmdClose{*this, "cmdClose", "&Close"};

 private:
  void Load() override;

  Session& session_;
};

}  // namespace trackloom
