#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Tells why a write has failed; closing it ejects the disc.
class frmError final : public Form {
 public:
  frmError(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Operation Error Details"};
  Frame Frame1{*this, "Frame1", "Error Details"};
  Label lblError{*this, "lblError", ""};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;

  Session& session_;
};

}  // namespace trackloom
