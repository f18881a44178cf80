#pragma once

#include "controls/Control.h"

namespace trackloom {

class CheckBox final : public Control {
 public:
  CheckBox(Form& form, std::string name, std::string caption);
  void accept(ControlVisitor& visitor) override;

  Property<std::string> Caption;
  Property<bool> Value{changed, false};

  std::function<void()> Click;
  /// Turns the tick over.
  void click();
};

}  // namespace trackloom
