#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace trackloom {

/// A colour: below 0 an entry of the system's palette, else 0xBBGGRR.
using Colour = std::int32_t;
inline constexpr Colour WindowTextColour = -2147483640;

/// One row of a list view; SubItems[0] is the second column.
struct ListItem {
  std::string Text;
  std::vector<std::string> SubItems;
  int SmallIcon = 1;
  std::int32_t Tag = 0;
  bool Checked = false;
  Colour ForeColor = WindowTextColour;
};

/// A column of a list view; the width in twips.
struct ListColumn {
  std::string key;
  std::string text;
  double width = 1440;
  bool rightAligned = false;
};

/// What a list can do besides showing rows.
struct ListStyle {
  bool checkBoxes = false;
  /// Any number of rows can be selected, instead of one at most.
  bool multiSelect = false;
  /// The user can change the Text of rows.
  bool editable = false;
};

enum class MouseButton { Left, Middle, Right };

/// What becomes of a list's rows and columns, for whoever mirrors them. Rows count from 1.
struct ListChange {
  enum class Kind { Inserted, Removed, RowChanged, Sorted, Reset, Columns, Width, Selection };
  Kind kind = Kind::Reset;
  int row = 0;
};

}  // namespace trackloom
