#include "controls/ComboBox.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

ComboBox::ComboBox(Form& form, std::string name) : Control(form, std::move(name)) {}

void ComboBox::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void ComboBox::AddItem(std::string text, std::int32_t data, int image) {
  items_.push_back({std::move(text), data, image});
  changed();
}

void ComboBox::InsertItem(std::size_t row, std::string text, int image) {
  items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(row), {std::move(text), 0, image});
  if (index_ >= static_cast<int>(row)) ++index_;
  changed();
}

void ComboBox::Clear() {
  items_.clear();
  index_ = -1;
  changed();
}

void ComboBox::SetListIndex(int index) {
  if (index < 0 || index >= static_cast<int>(items_.size())) index = -1;
  if (index == index_) return;
  index_ = index;
  changed();
  raise(Click);
}

std::string ComboBox::Text() const {
  return index_ < 0 ? "" : items_[static_cast<std::size_t>(index_)].text;
}

std::int32_t ComboBox::ItemData() const {
  return index_ < 0 ? 0 : items_[static_cast<std::size_t>(index_)].data;
}

void ComboBox::choose(int index) {
  if (!usable()) return;
  const bool again = index == index_ && index >= 0;
  SetListIndex(index);
  if (again) raise(Click);
}

}  // namespace trackloom
