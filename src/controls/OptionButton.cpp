#include "controls/OptionButton.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

OptionButton::OptionButton(Form& form, OptionGroup& group, std::string name, std::string caption)
    : Control(form, std::move(name)), Caption(changed, std::move(caption)), group_(group) {
  group.push_back(this);
}

void OptionButton::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void OptionButton::select() {
  for (OptionButton* other : group_) other->value_ = other == this;
}

void OptionButton::click() {
  if (!usable()) return;
  select();
  raise(Click);
}

}  // namespace trackloom
