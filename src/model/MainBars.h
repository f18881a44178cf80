#pragma once

#include <vector>

#include "controls/DockStudio.h"

namespace trackloom {

/// The five bars of the main window, in order.
std::vector<BarDesign> mainBars();

/// Every tool of the main window: menus, commands, status panels, the meter and the drive list.
std::vector<ToolDesign> mainTools();

}  // namespace trackloom
