#include "controls/Button.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

Button::Button(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name)), Caption(changed, std::move(caption)) {}

void Button::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void Button::click() {
  if (usable()) raise(Click);
}

}  // namespace trackloom
