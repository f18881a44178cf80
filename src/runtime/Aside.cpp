#include "runtime/Aside.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace trackloom {

/// Where the work lies, shared by both threads: nobody joins a thread that a file may keep for ever.
struct Aside::Bench {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> work;
  bool closed = false;

  /// Nothing: the bench is closed.
  std::function<void()> next() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return closed || !work.empty(); });
    if (closed) return nullptr;
    auto first = std::move(work.front());
    work.pop_front();
    return first;
  }
};

Aside::Aside(Until until) : until_(std::move(until)) {}

Aside::~Aside() {
  if (!bench_) return;
  const std::lock_guard lock(bench_->mutex);
  bench_->closed = true;
  bench_->changed.notify_all();
}

void Aside::begin(std::function<void()> work) {
  if (!bench_) {
    const auto bench = std::make_shared<Bench>();
    std::thread([bench] {
      while (const auto next = bench->next()) next();
    }).detach();
    bench_ = bench;
  }
  const std::lock_guard lock(bench_->mutex);
  bench_->work.push_back(std::move(work));
  bench_->changed.notify_all();
}

}  // namespace trackloom
