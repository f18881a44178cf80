#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "ports/EventQueue.h"

namespace trackloom::fakes {

/// Collects what engine threads post; the thread of the test runs it, as the UI thread would.
class FakeEventQueue : public EventQueue {
 public:
  FakeEventQueue();
  ~FakeEventQueue() override;

  void post(std::function<void()> event) override;

  /// Runs events as they come until `done` holds, which is asked before each; False: it did not hold in time.
  bool runUntil(const std::function<bool()>& done, std::chrono::seconds limit = std::chrono::seconds(60));

  /// Waits for the next post without running anything.
  void waitForPost();

  /// Runs what has been posted so far.
  void runPosted();

  std::size_t size();

 private:
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> events_;
};

}  // namespace trackloom::fakes
