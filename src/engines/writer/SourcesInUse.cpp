#include "engines/writer/SourcesInUse.h"

#include <algorithm>
#include <utility>

#include "engines/disc/SectorSource.h"

namespace trackloom::engines::writer {

SourcesInUse::Use::Use(std::shared_ptr<SourcesInUse> all, const HostPath& file) : all_(std::move(all)) {
  const std::lock_guard lock(all_->mutex_);
  place_ = all_->files_.insert(file.text);
}

SourcesInUse::Use::~Use() {
  const std::lock_guard lock(all_->mutex_);
  all_->files_.erase(place_);
  all_->changed_.notify_all();
}

std::optional<HostPath> SourcesInUse::awaitFree(std::span<const HostPath> files, std::chrono::milliseconds limit,
                                                const std::stop_token& stop) {
  const auto firstUsed = [&] {
    return std::ranges::find_if(files, [this](const HostPath& file) { return files_.contains(file.text); });
  };
  std::unique_lock lock(mutex_);
  if (changed_.wait_for(lock, stop, limit, [&] { return firstUsed() == files.end(); })) return std::nullopt;
  if (stop.stop_requested()) throw Stopped();
  return *firstUsed();
}

}  // namespace trackloom::engines::writer
