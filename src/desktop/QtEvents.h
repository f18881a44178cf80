#pragma once

#include <QObject>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

#include "ports/EventPump.h"
#include "ports/EventQueue.h"
#include "ports/Patience.h"

namespace trackloom {

class QtDesk;

/// Paints and answers the window system between two looks; what comes by itself meanwhile is held back.
class QtPatience final : public Patience {
 public:
  explicit QtPatience(QtDesk& desk) : desk_(desk) {}

  void until(const Wait& wait) override;

 private:
  QtDesk& desk_;
};

/// Runs what waits in the toolkit's event loop. Many small steps may each call it: what came within the few
/// milliseconds since it last looked waits for the next look, so that the steps do not paint the window each.
class QtEventPump final : public EventPump {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  explicit QtEventPump(Clock clock = std::chrono::steady_clock::now) : clock_(std::move(clock)) {}

  void pumpEvents() override;

 private:
  Clock clock_;
  std::optional<std::chrono::steady_clock::time_point> looked_;
};

/// Queues events in the loop of the thread that made it, where they run like any event of the desk, in their order. A
/// flood of them leaves the window system its turn every few milliseconds. Outlives whoever posts.
class QtEventQueue final : public EventQueue {
 public:
  explicit QtEventQueue(QtDesk& desk) : desk_(desk) {}

  void post(std::function<void()> event) override;

 private:
  void run();
  std::function<void()> next();

  QtDesk& desk_;
  std::mutex mutex_;
  std::deque<std::function<void()>> events_;
  /// A run has been asked for that has not begun.
  bool due_ = false;
  QObject receiver_;
};

}  // namespace trackloom
