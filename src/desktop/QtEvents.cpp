#include "desktop/QtEvents.h"

#include <QCoreApplication>
#include <QEventLoop>

#include "desktop/QtDesk.h"

namespace trackloom {

void QtEventPump::pumpEvents() {
  constexpr std::chrono::milliseconds Rest{5};
  if (looked_ && clock_() - *looked_ < Rest) return;
  QCoreApplication::processEvents();
  looked_ = clock_();
}

void QtPatience::until(const Wait& wait) {
  constexpr std::chrono::milliseconds Glance{20};
  if (wait(Glance)) return;
  const QtDesk::Standstill standstill(desk_);
  do {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  } while (!wait(Glance));
}

void QtEventQueue::post(std::function<void()> event) {
  QMetaObject::invokeMethod(
      &receiver_, [this, event = std::move(event)] { desk_.perform(event); }, Qt::QueuedConnection);
}

}  // namespace trackloom
