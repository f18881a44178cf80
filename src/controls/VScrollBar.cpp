#include "controls/VScrollBar.h"

#include <algorithm>

#include "controls/ControlVisitor.h"

namespace trackloom {

VScrollBar::VScrollBar(Form& form, std::string name, int min, int max)
    : Control(form, std::move(name)), Value(changed, min), min_(min), max_(max) {}

void VScrollBar::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void VScrollBar::scrollTo(int value) {
  value = std::clamp(value, min_, max_);
  if (!usable() || Value == value) return;
  Value = value;
  raise(Change);
}

}  // namespace trackloom
