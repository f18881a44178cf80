#include "controls/PictureBox.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

PictureBox::PictureBox(Form& form, std::string name) : Control(form, std::move(name)) {}

void PictureBox::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

}  // namespace trackloom
