#pragma once

#include "controls/Control.h"

namespace trackloom {

/// Shows a picture by its name in the program's own set, or, without one, is a panel that holds other controls.
class PictureBox final : public Control {
 public:
  PictureBox(Form& form, std::string name, std::string picture = "");
  void accept(ControlVisitor& visitor) override;

  Property<std::string> Picture;
};

}  // namespace trackloom
