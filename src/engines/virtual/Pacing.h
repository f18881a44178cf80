#pragma once

#include <chrono>
#include <cstdint>
#include <stop_token>

namespace trackloom::engines::virtualrecorder {

/// Lets blocks pass no faster than a real drive would write them.
class Pacing {
 public:
  /// 0: as fast as they come.
  explicit Pacing(double blocksPerSecond) : blocksPerSecond_(blocksPerSecond) {}

  /// Waits until these blocks may have passed. Throws Stopped.
  void pass(std::int64_t blocks, const std::stop_token& stop);

 private:
  double blocksPerSecond_;
  std::int64_t passed_ = 0;
  std::chrono::steady_clock::time_point begun_;
};

}  // namespace trackloom::engines::virtualrecorder
