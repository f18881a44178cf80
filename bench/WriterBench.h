#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <utility>

#include "ports/CDWriterEvents.h"
#include "ports/EventQueue.h"

namespace trackloom::bench {

inline double secondsOf(const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

inline void row(const std::string& name, double figure, const char* unit) {
  std::printf("%s\t%.2f\t%s\n", name.c_str(), figure, unit);
}

inline void run(const std::string& command) {
  if (std::system(("{ " + command + "; } > /dev/null 2>&1").c_str()) == 0) return;
  std::fprintf(stderr, "the writer bench: this failed: %s\n", command.c_str());
  std::exit(1);
}

/// Runs events on the thread that waits for the end of the write.
class Loop : public EventQueue, public CDWriterEvents {
 public:
  void post(std::function<void()> event) override {
    const std::lock_guard lock(mutex_);
    events_.push_back(std::move(event));
    posted_.notify_one();
  }
  void runToTheEnd() {
    for (ended_ = false; !ended_;) {
      std::unique_lock lock(mutex_);
      posted_.wait(lock, [this] { return !events_.empty(); });
      const auto event = std::move(events_.front());
      events_.pop_front();
      lock.unlock();
      event();
    }
  }
  void OnOperationComplete() override { ended_ = true; }
  void OnWriteError(std::int32_t code, std::int32_t number) override {
    std::fprintf(stderr, "the writer bench: the write failed: %d %d\n", code, number);
    std::exit(1);
  }

 private:
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> events_;
  bool ended_ = false;
};

}  // namespace trackloom::bench
