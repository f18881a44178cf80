#pragma once

#include <cstdint>
#include <vector>

#include "controls/Control.h"

namespace trackloom {

/// A drop-down list. Rows count from 0, -1 is no choice; each row carries a number of the program's.
class ComboBox final : public Control {
 public:
  struct Item {
    std::string text;
    std::int32_t data = 0;
    bool operator==(const Item&) const = default;
  };

  ComboBox(Form& form, std::string name);
  void accept(ControlVisitor& visitor) override;

  const std::vector<Item>& items() const { return items_; }
  void AddItem(std::string text, std::int32_t data = 0);
  void Clear();

  int ListIndex() const { return index_; }
  /// Raises Click when the choice changes.
  void SetListIndex(int index);
  std::string Text() const;
  std::int32_t ItemData() const;

  std::function<void()> Click;
  /// Raises Click also for the row that is chosen already.
  void choose(int index);

 private:
  std::vector<Item> items_;
  int index_ = -1;
};

}  // namespace trackloom
