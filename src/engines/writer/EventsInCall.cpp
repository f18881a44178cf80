#include "engines/writer/EventsInCall.h"

#include <utility>

namespace trackloom::engines::writer {

void EventsInCall::raise(Event event) {
  const std::lock_guard lock(mutex_);
  events_.push_back(std::move(event));
  changed_.notify_all();
}

void EventsInCall::end(Outcome outcome) {
  const std::lock_guard lock(mutex_);
  outcome_ = std::move(outcome);
  ended_ = true;
  changed_.notify_all();
}

bool EventsInCall::tell(CDWriterEvents& listener, std::chrono::milliseconds atMost) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, atMost, [this] { return ended_ || !events_.empty(); });
  const auto come = std::exchange(events_, {});
  const bool ended = ended_;
  lock.unlock();
  for (const Event& event : come) event(listener);
  return ended;
}

}  // namespace trackloom::engines::writer
