#pragma once

#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;

/// Stands while the tracks are read for printing, and goes by itself when nothing is left to read.
class frmReadStatus final : public Form {
 public:
  explicit frmReadStatus(Session& session);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", ""};

 private:
  void Activate() override { unload(); }
};

}  // namespace trackloom
