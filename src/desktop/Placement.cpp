#include "desktop/Placement.h"

#include <QScopedValueRollback>
#include <memory>

#include "desktop/EventTap.h"
#include "desktop/Face.h"
#include "desktop/Make.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

bool tellsPlacement(QEvent::Type type) {
  return type == QEvent::Move || type == QEvent::Resize || type == QEvent::WindowStateChange || type == QEvent::Show;
}

WindowState stateOf(const QWidget& window) {
  if (window.isMinimized()) return WindowState::Minimized;
  return window.isMaximized() || window.isFullScreen() ? WindowState::Maximized : WindowState::Normal;
}

/// What the two directions share, so that neither takes the other's work for news.
struct PlacementTie {
  Form& form;
  QWidget& window;
  Placement known;
  bool applying = false;

  void follow() {
    if (applying || form.placement == known) return;
    known = form.placement;
    const QScopedValueRollback<bool> guard(applying, true);
    applyPlacement(window, known);
  }

  void report() {
    if (applying) return;
    known = placementOf(window);
    form.placement = known;
  }
};

}  // namespace

Placement placementOf(const QWidget& window) {
  return {stateOf(window), window.x() * TwipsPerPixel, window.y() * TwipsPerPixel, window.width() * TwipsPerPixel,
          window.height() * TwipsPerPixel};
}

void applyPlacement(QWidget& window, const Placement& placement) {
  const Qt::WindowStates others = window.windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  switch (placement.state) {
    case WindowState::Minimized:
      window.setWindowState(others | Qt::WindowMinimized);
      return;
    case WindowState::Maximized:
      window.setWindowState(others | Qt::WindowMaximized);
      return;
    case WindowState::Normal:
      window.setWindowState(others);
      window.resize(placement.width / TwipsPerPixel, placement.height / TwipsPerPixel);
      window.move(placement.left / TwipsPerPixel, placement.top / TwipsPerPixel);
  }
}

void tiePlacement(Face& face) {
  QWidget& window = face.window();
  const auto tie = std::make_shared<PlacementTie>(PlacementTie{*face.form(), window, {}});
  tie->follow();
  face.keep(tie->form.changed.connect([tie] { tie->follow(); }));
  make<EventTap>(window, [&window, tie, entry = face.entry()](QEvent& event) {
    if (tellsPlacement(event.type()) && window.isVisible()) entry([&tie] { tie->report(); });
    return false;
  });
}

}  // namespace trackloom
