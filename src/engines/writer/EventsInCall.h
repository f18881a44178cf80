#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "engines/writer/Job.h"
#include "ports/CDWriterEvents.h"

namespace trackloom::engines::writer {

/// The way of the events that a call raises inside of itself, from the thread that does the work to the one that
/// called.
class EventsInCall {
 public:
  using Event = std::function<void(CDWriterEvents&)>;

  // The working side.
  void raise(Event event);
  void end(Outcome outcome);

  // The calling side.

  /// Tells all that comes within that time, and returns with the first of it; true: that was the end.
  bool tell(CDWriterEvents& listener, std::chrono::milliseconds atMost);
  /// How it ended; to be asked when tell() has told the end.
  const Outcome& outcome() const { return outcome_; }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Event> events_;
  Outcome outcome_;
  bool ended_ = false;
};

}  // namespace trackloom::engines::writer
