#pragma once

#include <QObject>

#include "ports/EventPump.h"
#include "ports/EventQueue.h"

namespace trackloom {

class QtDesk;

/// Runs what waits in the toolkit's event loop.
class QtEventPump final : public EventPump {
 public:
  void pumpEvents() override;
};

/// Queues events in the loop of the thread that made it, where they run like any event of the desk. Outlives whoever
/// posts.
class QtEventQueue final : public EventQueue {
 public:
  explicit QtEventQueue(const QtDesk& desk) : desk_(desk) {}

  void post(std::function<void()> event) override;

 private:
  const QtDesk& desk_;
  QObject receiver_;
};

}  // namespace trackloom
