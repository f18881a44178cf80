#pragma once

#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct PrintingForms;

/// Stands while the tracks are read for printing, and goes by itself when nothing is left to read.
class frmReadStatus final : public Form {
 public:
  frmReadStatus(Session& session, PrintingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", ""};

 private:
  void Load() override;
  void Activate() override { unload(); }

  Session& session_;
};

}  // namespace trackloom
