#pragma once

#include <cstdint>

#include "controls/Control.h"

namespace trackloom {

/// A bar from 0 to a maximum; values outside are clamped, and a maximum of 0 shows an empty bar.
class ProgressBarEx final : public Control {
 public:
  ProgressBarEx(Form& form, std::string name);
  void accept(ControlVisitor& visitor) override;

  std::int32_t Value() const { return value_; }
  void SetValue(std::int32_t value);
  std::int32_t Max() const { return max_; }
  void SetMax(std::int32_t max);

 private:
  Property<std::int32_t> max_{changed, 100};
  Property<std::int32_t> value_{changed, 0};
};

}  // namespace trackloom
