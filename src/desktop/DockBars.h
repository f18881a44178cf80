#pragma once

#include <QMainWindow>

#include "controls/DockStudio.h"

namespace trackloom {

class Face;

/// Builds the bars that the control designs into the main window: a menu bar, tool bars at the top, status bars at the
/// foot. A tool is one action wherever it stands. Tells the control of clicks, opened menus, chosen entries, and of the
/// area that the bars leave free.
void tieBars(Face& face, QMainWindow& window, DockStudio& dock);

}  // namespace trackloom
