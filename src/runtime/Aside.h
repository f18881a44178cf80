#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <type_traits>
#include <utility>

namespace trackloom {

/// The thread on which calls of the window's thread do what a file or a drive may keep waiting, while that thread waits
/// with patience. Used by the window's thread alone.
class Aside {
 public:
  /// Waits at most that long; true: what was waited for has come.
  using Wait = std::function<bool(std::chrono::milliseconds atMost)>;
  /// Calls `wait` until it answers true; what it throws comes out.
  using Until = std::function<void(const Wait& wait)>;

  explicit Aside(Until until);
  ~Aside();
  Aside(const Aside&) = delete;
  Aside& operator=(const Aside&) = delete;

  /// What the work gives or throws; std::system_error where the system has no thread to spare. The work may outlive the
  /// call, where the wait for it throws, so it holds what it needs.
  template <class Work>
  std::invoke_result_t<Work&> operator()(Work work) {
    const auto task = std::make_shared<std::packaged_task<std::invoke_result_t<Work&>()>>(std::move(work));
    auto result = task->get_future();
    begin([task] { (*task)(); });
    until_([&](std::chrono::milliseconds atMost) { return result.wait_for(atMost) == std::future_status::ready; });
    return result.get();
  }

 private:
  struct Bench;

  void begin(std::function<void()> work);

  Until until_;
  std::shared_ptr<Bench> bench_;
};

}  // namespace trackloom
