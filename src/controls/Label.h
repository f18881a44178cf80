#pragma once

#include "controls/Control.h"

namespace trackloom {

/// A text on the form; `&&` shows one ampersand.
class Label final : public Control {
 public:
  Label(Form& form, std::string name, std::string caption);
  void accept(ControlVisitor& visitor) override;

  Property<std::string> Caption;
};

}  // namespace trackloom
