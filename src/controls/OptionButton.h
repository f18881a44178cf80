#pragma once

#include <vector>

#include "controls/Control.h"

namespace trackloom {

class OptionButton;

/// The option buttons of which one at most is selected. Lives as long as they do.
using OptionGroup = std::vector<OptionButton*>;

class OptionButton final : public Control {
 public:
  OptionButton(Form& form, OptionGroup& group, std::string name, std::string caption);
  void accept(ControlVisitor& visitor) override;

  Property<std::string> Caption;

  bool selected() const { return value_; }
  /// Selecting one clears the others of its group.
  void select();

  std::function<void()> Click;
  void click();

 private:
  OptionGroup& group_;
  Property<bool> value_{changed, false};
};

}  // namespace trackloom
