#pragma once

#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct RipperForms;

/// Covers the ripper's main window while a disc is read, and keeps its controls off.
class frmReading final : public Form {
 public:
  frmReading(Session& session, RipperForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Reading Selected CD Information...Please Wait..."};

 private:
  void Load() override;
  void Unload() override;
  void allowUse(bool allowed);

  Session& session_;
  RipperForms& forms_;
};

}  // namespace trackloom
