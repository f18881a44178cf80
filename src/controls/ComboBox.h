#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "controls/Control.h"

namespace trackloom {

class ImageList;

/// A drop-down list, whose entries may have pictures. Rows count from 0, -1 is no choice; each row carries a number of
/// the program's.
class ComboBox final : public Control {
 public:
  struct Item {
    std::string text;
    std::int32_t data = 0;
    /// A number of `Images`; 0: none.
    int image = 0;
    bool operator==(const Item&) const = default;
  };

  ComboBox(Form& form, std::string name);
  void accept(ControlVisitor& visitor) override;

  const std::vector<Item>& items() const { return items_; }
  void AddItem(std::string text, std::int32_t data = 0, int image = 0);
  /// Before the row of this number. The choice stays with its row.
  void InsertItem(std::size_t row, std::string text, int image);
  /// What the numbers of the entries' pictures count in.
  const ImageList* Images = nullptr;
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
