#include "desktop/QtEvents.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <utility>

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
  const std::lock_guard lock(mutex_);
  events_.push_back(std::move(event));
  if (std::exchange(due_, true)) return;
  QMetaObject::invokeMethod(
      &receiver_, [this] { run(); }, Qt::QueuedConnection);
}

void QtEventQueue::run() {
  constexpr std::chrono::milliseconds Turn{5};
  const auto end = std::chrono::steady_clock::now() + Turn;
  {
    const std::lock_guard lock(mutex_);
    due_ = false;
  }
  do {
    const auto event = next();
    if (!event) return;
    desk_.perform(event);
  } while (std::chrono::steady_clock::now() < end);
}

// The event may run a loop of its own, in which the others must not wait. A timer comes behind what the window system
// has to say, a posted event before it.
std::function<void()> QtEventQueue::next() {
  const std::lock_guard lock(mutex_);
  if (events_.empty()) return nullptr;
  auto event = std::move(events_.front());
  events_.pop_front();
  if (!events_.empty() && !std::exchange(due_, true)) QTimer::singleShot(0, &receiver_, [this] { run(); });
  return event;
}

}  // namespace trackloom
