#pragma once

#include <functional>

namespace trackloom {

/// Carries events from engine threads to the UI thread, in the order they were posted.
class EventQueue {
 public:
  virtual ~EventQueue() = default;

  /// May be called from any thread; `event` runs later on the UI thread, never inside this call.
  virtual void post(std::function<void()> event) = 0;
};

}  // namespace trackloom
