#include "fakes/FakeEventQueue.h"

#include <utility>

namespace trackloom::fakes {

FakeEventQueue::FakeEventQueue() = default;

FakeEventQueue::~FakeEventQueue() = default;

void FakeEventQueue::post(std::function<void()> event) {
  const std::lock_guard lock(mutex_);
  events_.push_back(std::move(event));
  posted_.notify_all();
}

bool FakeEventQueue::runUntil(const std::function<bool()>& done, std::chrono::seconds limit) {
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

void FakeEventQueue::waitForPost() {
  std::unique_lock lock(mutex_);
  posted_.wait(lock, [this] { return !events_.empty(); });
}

void FakeEventQueue::runPosted() {
  std::size_t left = size();
  while (left-- > 0) runUntil([ran = false]() mutable { return std::exchange(ran, true); });
}

std::size_t FakeEventQueue::size() {
  const std::lock_guard lock(mutex_);
  return events_.size();
}

}  // namespace trackloom::fakes
