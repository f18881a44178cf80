#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace trackloom::trial {

/// All that is set on the widgets of a window: a line for each with its kind, its name and what differs from a fresh
/// one of its kind, followed by the lines of what lies in it, two blanks deeper, in the order of its layout; what has
/// no place in a layout comes behind. Places, sizes and colours, which hang on screen and style, are left out.
std::vector<std::string> wholeState(QWidget& window);

}  // namespace trackloom::trial
