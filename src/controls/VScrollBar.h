#pragma once

#include "controls/Control.h"

namespace trackloom {

/// A vertical scroll bar whose arrow down counts up.
class VScrollBar final : public Control {
 public:
  VScrollBar(Form& form, std::string name, int min, int max);
  void accept(ControlVisitor& visitor) override;

  int min() const { return min_; }
  int max() const { return max_; }
  Property<int> Value;

  std::function<void()> Change;
  void scrollTo(int value);

 private:
  int min_;
  int max_;
};

}  // namespace trackloom
