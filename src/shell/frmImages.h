#pragma once

#include "controls/Form.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;

/// Holds the pictures of dialogs and is never shown: a dialog copies its picture in its Load, and unloads this form at
/// once.
class frmImages final : public Form {
 public:
  explicit frmImages(Session& session);

  PictureBox imgAbout{*this, "imgAbout"};
  PictureBox imgDefaultOptions{*this, "imgDefaultOptions"};
};

}  // namespace trackloom
