#pragma once

#include <QWidget>

#include "controls/Form.h"

namespace trackloom {

class Face;

/// Where the window stands: the place that `move` takes and the size that `resize` takes, so that applying it restores
/// it.
Placement placementOf(const QWidget& window);
void applyPlacement(QWidget& window, const Placement& placement);

/// The form's placement moves the window, and the window as the user moves it renews the form's placement. A window
/// whose place lies on no screen any more stands on the nearest one, and the form's numbers stay until the user moves
/// it.
void tiePlacement(Face& face);

}  // namespace trackloom
