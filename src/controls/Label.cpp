#include "controls/Label.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

Label::Label(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name)), Caption(changed, std::move(caption)) {}

void Label::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

}  // namespace trackloom
