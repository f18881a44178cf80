#include "engines/libburn/Supply.h"

#include <algorithm>
#include <utility>

namespace trackloom::engines::libburn {

bool Supply::take(std::int16_t track, std::byte* bytes, std::size_t size) {
  std::unique_lock lock(mutex_);
  while (size > 0) {
    if (taken_ == ready_.size()) {
      wanted_ = track;
      asked_.notify_one();
      made_.wait(lock, [&] { return ended_ || taken_ < ready_.size(); });
      if (ended_) return false;
    }
    const std::size_t step = std::min(size, ready_.size() - taken_);
    std::copy_n(ready_.begin() + static_cast<std::ptrdiff_t>(taken_), step, bytes);
    taken_ += step;
    bytes += step;
    size -= step;
  }
  return !ended_;
}

void Supply::serve(std::chrono::milliseconds patience,
                   const std::function<std::vector<std::byte>(std::int16_t track)>& make) {
  const std::int16_t track = wantedWithin(patience);
  if (track == 0) return;
  std::vector<std::byte> made = make(track);
  const std::lock_guard lock(mutex_);
  wanted_ = 0;
  ready_ = std::move(made);
  taken_ = 0;
  made_.notify_one();
}

std::int16_t Supply::wantedWithin(std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  asked_.wait_for(lock, patience, [&] { return wanted_ != 0; });
  return wanted_;
}

void Supply::end() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  made_.notify_one();
}

bool Supply::drained() const {
  const std::lock_guard lock(mutex_);
  return taken_ == ready_.size();
}

}  // namespace trackloom::engines::libburn
