#include "controls/CheckBox.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

CheckBox::CheckBox(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name)), Caption(changed, std::move(caption)) {}

void CheckBox::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void CheckBox::click() {
  if (!usable()) return;
  Value = !Value;
  raise(Click);
}

}  // namespace trackloom
