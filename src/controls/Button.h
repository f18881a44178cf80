#pragma once

#include "controls/Control.h"

namespace trackloom {

/// A push button; `&` in its caption marks the access key.
class Button final : public Control {
 public:
  Button(Form& form, std::string name, std::string caption);
  void accept(ControlVisitor& visitor) override;

  Property<std::string> Caption;
  /// Enter presses it, wherever the focus is.
  Property<bool> Default{changed, false};
  /// Esc presses it.
  Property<bool> Cancel{changed, false};

  std::function<void()> Click;
  void click();
};

}  // namespace trackloom
