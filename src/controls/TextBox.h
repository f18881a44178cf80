#pragma once

#include <cstddef>

#include "controls/Control.h"

namespace trackloom {

/// One line of text. `maxLength` (UTF-16 units, 0 for none) limits typing and pasting, not what the program sets.
class TextBox final : public Control {
 public:
  TextBox(Form& form, std::string name, std::string text = "", std::size_t maxLength = 0);
  void accept(ControlVisitor& visitor) override;

  Property<std::string> Text;
  Property<bool> Locked{changed, false};
  std::size_t maxLength() const { return maxLength_; }

  Signal<> selectAllRequested;
  void SelectAll() { selectAllRequested(); }

  std::function<void()> Change;
  std::function<void()> GotFocus;
  /// Replaces the whole text, as far as the length allows.
  void type(const std::string& text);
  /// What stands in the box after the user has edited it, for a face that minds the length itself.
  void edit(const std::string& text);
  void focus();

 private:
  std::size_t maxLength_;
};

}  // namespace trackloom
