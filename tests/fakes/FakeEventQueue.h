#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

#include "ports/EventQueue.h"

namespace trackloom::fakes {

/// Collects what engine threads post; the thread of the test runs it, as the UI thread would.
class FakeEventQueue : public EventQueue {
 public:
  void post(std::function<void()> event) override {
    const std::lock_guard lock(mutex_);
    events_.push_back(std::move(event));
    posted_.notify_all();
  }

  /// Runs events as they come until `done` holds, which is asked before each; False: it did not hold in time.
  bool runUntil(const std::function<bool()>& done, std::chrono::seconds limit = std::chrono::seconds(60)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
      std::unique_lock lock(mutex_);
      if (!posted_.wait_until(lock, deadline, [this] { return !events_.empty(); })) return false;
      const auto event = std::move(events_.front());
      events_.pop_front();
      lock.unlock();
      event();
    }
    return true;
  }

  /// Waits for the next post without running anything.
  void waitForPost() {
    std::unique_lock lock(mutex_);
    posted_.wait(lock, [this] { return !events_.empty(); });
  }

  /// Runs what has been posted so far.
  void runPosted() {
    std::size_t left = size();
    while (left-- > 0) runUntil([ran = false]() mutable { return std::exchange(ran, true); });
  }

  std::size_t size() {
    const std::lock_guard lock(mutex_);
    return events_.size();
  }

 private:
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> events_;
};

}  // namespace trackloom::fakes
