#pragma once

#include <chrono>
#include <cstdint>
#include <utility>

namespace trackloom::engines::writer {

/// Tells when progress is worth an event: at the first block, at each quarter of the way, at the end, and every 50 ms.
class Progress {
 public:
  explicit Progress(std::int64_t length) : length_(length) {}

  bool due(std::int64_t position) {
    const auto now = std::chrono::steady_clock::now();
    const std::int64_t quarter = position * 4 / length_;
    if (told_ && quarter == quarter_ && now - last_ < std::chrono::milliseconds(50)) return false;
    told_ = true;
    quarter_ = quarter;
    last_ = now;
    return true;
  }

 private:
  std::int64_t length_;
  bool told_ = false;
  std::int64_t quarter_ = 0;
  std::chrono::steady_clock::time_point last_;
};

}  // namespace trackloom::engines::writer
