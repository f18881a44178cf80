#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace trackloom::trial {

/// What a look at the texts of a window found.
struct TextLook {
  int texts = 0;
  /// The widgets that show only a part of a text, with the text.
  std::vector<std::string> cut;
};

/// Measures all texts that the window shows against the room that they have: labels, buttons, options, check boxes, the
/// items of combo boxes, tabs, titles of groups, heads of columns, tools, menus and bars. Cells of lists may be cut.
TextLook lookAtTexts(QWidget& window);

}  // namespace trackloom::trial
