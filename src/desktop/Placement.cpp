#include "desktop/Placement.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>
#include <memory>
#include <optional>
#include <vector>

#include "desktop/EventTap.h"
#include "desktop/Face.h"
#include "desktop/Make.h"
#include "desktop/ScreenFit.h"
#include "desktop/ScreenPlace.h"
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

std::vector<QRect> screens() {
  std::vector<QRect> places;
  for (const QScreen* screen : QGuiApplication::screens()) places.push_back(screen->availableGeometry());
  return places;
}

QPoint placeOf(const Placement& placement) {
  return {placement.left / TwipsPerPixel, placement.top / TwipsPerPixel};
}

/// What the two directions share, so that neither takes the other's work for news.
struct PlacementTie {
  Form& form;
  QWidget& window;
  Placement known;
  bool applying = false;
  /// Where the window stands for a place on a screen that is gone.
  struct StandIn {
    QPoint shown;
    Placement meant;
  };
  std::optional<StandIn> standIn = std::nullopt;

  void follow() {
    if (applying || form.placement == known) return;
    known = form.placement;
    const QScopedValueRollback<bool> guard(applying, true);
    applyPlacement(window, known);
    standIn.reset();
    if (known.state == WindowState::Normal) bringOntoScreen();
  }

  void bringOntoScreen() {
    const QPoint own = placeOf(known);
    const QSize frame = frameOf(window);
    const QPoint place = graspablePlace(QRect(own, window.size() + frame), frame.height(), screens());
    if (place == own) return;
    standIn = {place, known};
    window.move(place);
  }

  void report() {
    if (applying) return;
    Placement now = placementOf(window);
    if (standIn && standIn->shown == window.pos()) {
      now.left = standIn->meant.left;
      now.top = standIn->meant.top;
    }
    known = now;
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
      window.move(placeOf(placement));
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
