#include "engines/virtual/Pacing.h"

#include <condition_variable>
#include <mutex>

#include "engines/disc/SectorSource.h"

namespace trackloom::engines::virtualrecorder {

void Pacing::pass(std::int64_t blocks, const std::stop_token& stop) {
  if (blocksPerSecond_ <= 0) return;
  using Clock = std::chrono::steady_clock;
  if (passed_ == 0) begun_ = Clock::now();
  passed_ += blocks;
  const std::chrono::duration<double> due(static_cast<double>(passed_) / blocksPerSecond_);
  std::mutex mutex;
  std::unique_lock lock(mutex);
  std::condition_variable_any never;
  never.wait_until(lock, stop, begun_ + std::chrono::duration_cast<Clock::duration>(due), [] { return false; });
  if (stop.stop_requested()) throw Stopped();
}

}  // namespace trackloom::engines::virtualrecorder
