#pragma once

#include <QWidget>

namespace trackloom {

/// Whoever turns the wheel over a window wants to move in it, not to change what happens to lie under the pointer: the
/// widget takes the wheel only while it has the focus, which the wheel does not bring.
void keepStrayWheelFrom(QWidget& widget);

}  // namespace trackloom
