#include "controls/Frame.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

Frame::Frame(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name)), Caption(changed, std::move(caption)) {}

void Frame::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

}  // namespace trackloom
