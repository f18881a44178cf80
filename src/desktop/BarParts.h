#pragma once

#include <QWidget>
#include <vector>

#include "controls/DockStudio.h"

namespace trackloom {

class Face;

/// The drop-down list of a combo tool with its caption before it.
QWidget& makeComboTool(Face& face, QWidget& bar, DockStudio& dock, Tool& tool);

/// The text panels and the meter of a status bar, side by side.
QWidget& makeStatusRow(Face& face, QWidget& bar, const std::vector<Tool*>& tools);

}  // namespace trackloom
