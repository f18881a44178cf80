#include "desktop/QtEvents.h"

#include <QCoreApplication>

#include "desktop/QtDesk.h"

namespace trackloom {

void QtEventPump::pumpEvents() {
  QCoreApplication::processEvents();
}

void QtEventQueue::post(std::function<void()> event) {
  QMetaObject::invokeMethod(
      &receiver_, [this, event = std::move(event)] { desk_.enter(event); }, Qt::QueuedConnection);
}

}  // namespace trackloom
