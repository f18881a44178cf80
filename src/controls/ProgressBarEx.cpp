#include "controls/ProgressBarEx.h"

#include <algorithm>

#include "controls/ControlVisitor.h"

namespace trackloom {

ProgressBarEx::ProgressBarEx(Form& form, std::string name) : Control(form, std::move(name)) {}

void ProgressBarEx::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void ProgressBarEx::SetValue(std::int32_t value) {
  value_ = std::clamp(value, 0, max_.get());
}

void ProgressBarEx::SetMax(std::int32_t max) {
  max_ = std::max(max, 0);
  SetValue(value_);
}

}  // namespace trackloom
