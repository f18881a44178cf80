#include "controls/PictureBox.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

PictureBox::PictureBox(Form& form, std::string name, std::string picture)
    : Control(form, std::move(name)), Picture(changed, std::move(picture)) {}

void PictureBox::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

}  // namespace trackloom
