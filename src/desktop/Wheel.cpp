#include "desktop/Wheel.h"

#include "desktop/EventTap.h"
#include "desktop/Make.h"

namespace trackloom {

void keepStrayWheelFrom(QWidget& widget) {
  if (widget.focusPolicy() == Qt::WheelFocus) widget.setFocusPolicy(Qt::StrongFocus);
  make<EventTap>(widget, [&widget](QEvent& event) {
    const bool stray = event.type() == QEvent::Wheel && !widget.hasFocus();
    if (stray) event.ignore();
    return stray;
  });
}

}  // namespace trackloom
