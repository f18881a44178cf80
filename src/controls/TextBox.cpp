#include "controls/TextBox.h"

#include "controls/ControlVisitor.h"
#include "runtime/Text.h"

namespace trackloom {

TextBox::TextBox(Form& form, std::string name, std::string text, std::size_t maxLength)
    : Control(form, std::move(name)), Text(changed, std::move(text)), maxLength_(maxLength) {}

void TextBox::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void TextBox::type(const std::string& text) {
  edit(maxLength_ == 0 ? text : Left(text, maxLength_));
}

void TextBox::edit(const std::string& text) {
  if (!usable() || Locked || Text == text) return;
  Text = text;
  raise(Change);
}

void TextBox::focus() {
  if (usable()) raise(GotFocus);
}

}  // namespace trackloom
