#include "engines/writer/DecodedTracks.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "engines/disc/SectorSource.h"

namespace trackloom::engines::writer {

DecodedTracks::DecodedTracks(const std::vector<std::size_t>& lengths)
    : tracks_(lengths.size()), unread_(std::accumulate(lengths.begin(), lengths.end(), std::size_t{0})) {}

std::optional<std::size_t> DecodedTracks::claim() {
  const std::lock_guard lock(mutex_);
  if (claimed_ == tracks_.size()) return std::nullopt;
  return claimed_++;
}

bool DecodedTracks::hasRoom(std::size_t track) const {
  return buffered_ < (track == current_ ? capacity : capacity - currentTrackShare);
}

void DecodedTracks::keep(std::size_t track, Chunk chunk, const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait(lock, stop, [&] { return hasRoom(track); })) throw Stopped();
  buffered_ += chunk.size();
  tracks_[track].chunks.push_back(std::move(chunk));
  changed_.notify_all();
}

void DecodedTracks::finish(std::size_t track, std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  tracks_[track].failure = std::move(failure);
  tracks_[track].finished = true;
  changed_.notify_all();
}

// The decoder of the next track may wait for the very room that it has from becoming the current one.
DecodedTracks::Track& DecodedTracks::trackWithChunk(std::unique_lock<std::mutex>& lock, const std::stop_token& stop) {
  for (;; ++current_, changed_.notify_all()) {
    Track& track = tracks_.at(current_);
    if (!changed_.wait(lock, stop, [&] { return track.finished || !track.chunks.empty(); })) throw Stopped();
    if (!track.chunks.empty()) return track;
    if (track.failure) std::rethrow_exception(track.failure);
  }
}

DecodedTracks::Chunk DecodedTracks::take(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  Track& track = trackWithChunk(lock, stop);
  Chunk chunk = std::move(track.chunks.front());
  track.chunks.pop_front();
  buffered_ -= chunk.size();
  unread_ -= chunk.size();
  changed_.notify_all();
  return chunk;
}

std::int16_t DecodedTracks::percent() const {
  const std::lock_guard lock(mutex_);
  const std::size_t whole = std::min(capacity, unread_);
  return static_cast<std::int16_t>(whole == 0 ? 100 : std::min<std::size_t>(100, buffered_ * 100 / whole));
}

}  // namespace trackloom::engines::writer
