#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <type_traits>
#include <utility>

#include "ports/Patience.h"

namespace trackloom::engines::discdb {

/// Runs on a thread of its own, for which nobody waits. Throws RuntimeError where the system has no thread to spare.
void runAside(std::function<void()> work);

/// Waits with patience until it is ready; throws RuntimeError at the deadline.
void awaitUntil(std::chrono::steady_clock::time_point deadline, Patience& patience, const Patience::Wait& ready);

/// What the work gives or throws, done on a thread of its own, while the window's thread waits with patience. At the
/// deadline RuntimeError is thrown and the work let go: it holds what it needs, and ends by itself.
template <class Work>
std::invoke_result_t<Work&> byDeadline(std::chrono::steady_clock::time_point deadline, Patience& patience, Work work) {
  const auto task = std::make_shared<std::packaged_task<std::invoke_result_t<Work&>()>>(std::move(work));
  auto result = task->get_future();
  runAside([task] { (*task)(); });
  awaitUntil(deadline, patience,
             [&](std::chrono::milliseconds atMost) { return result.wait_for(atMost) == std::future_status::ready; });
  return result.get();
}

}  // namespace trackloom::engines::discdb
