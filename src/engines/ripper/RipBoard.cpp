#include "engines/ripper/RipBoard.h"

#include <utility>

#include "engines/ripper/RipRequest.h"

namespace trackloom::engines::ripper {

namespace {

/// Sound that waits for the workers, in bytes: a song of four minutes, so that the next one can be worked at too.
constexpr std::size_t mostBuffered = std::size_t{36} << 20;

}  // namespace

void RipBoard::cancel() {
  stop_.request_stop();
  const Lock lock(mutex_);
  for (Track& track : tracks_) drop(track);
  changed_.notify_all();
}

void RipBoard::drop(Track& track) {
  for (const auto& piece : track.sound) buffered_ -= piece.size();
  track.sound.clear();
}

void RipBoard::unlessCancelled(const std::function<void()>& action) {
  const Lock lock(mutex_);
  if (cancelled()) throw Stopped();
  action();
}

bool RipBoard::put(std::size_t track, std::vector<std::byte> sound) {
  Lock lock(mutex_);
  Track& mine = tracks_[track];
  wait(lock, [&] { return mine.end || buffered_ < mostBuffered; });
  if (mine.end) return false;
  buffered_ += sound.size();
  mine.sound.push_back(std::move(sound));
  changed_.notify_all();
  return true;
}

void RipBoard::met(std::size_t track, Trouble trouble) {
  const Lock lock(mutex_);
  tracks_[track].troubles.push_back(trouble);
  ++tracks_[track].troubleCounts[trouble.code];
  changed_.notify_all();
}

void RipBoard::endReading(std::size_t track, std::int32_t code) {
  const Lock lock(mutex_);
  tracks_[track].readingEnded = true;
  tracks_[track].readingCode = code;
  changed_.notify_all();
}

std::optional<std::size_t> RipBoard::claim() {
  const Lock lock(mutex_);
  if (cancelled() || claimed_ == tracks_.size()) return std::nullopt;
  return claimed_++;
}

void RipBoard::opened(std::size_t track, const HostPath& path) {
  const Lock lock(mutex_);
  tracks_[track].path = path;
  changed_.notify_all();
}

std::optional<std::vector<std::byte>> RipBoard::take(std::size_t track) {
  Lock lock(mutex_);
  Track& mine = tracks_[track];
  wait(lock, [&] { return mine.readingEnded || !mine.sound.empty(); });
  if (mine.readingEnded && mine.readingCode != status::whole) throw TrackFailed{mine.readingCode};
  if (mine.sound.empty()) return std::nullopt;
  auto piece = std::move(mine.sound.front());
  mine.sound.pop_front();
  buffered_ -= piece.size();
  changed_.notify_all();
  return piece;
}

void RipBoard::advance(std::size_t track, std::int32_t sectors) {
  const Lock lock(mutex_);
  tracks_[track].done += sectors;
}

void RipBoard::end(std::size_t track, TrackEnd end) {
  const Lock lock(mutex_);
  if (!tracks_[track].path) tracks_[track].path.emplace();
  drop(tracks_[track]);
  tracks_[track].end = std::move(end);
  changed_.notify_all();
}

void RipBoard::threadComes() {
  const Lock lock(mutex_);
  ++threads_;
}

void RipBoard::threadGoes() {
  const Lock lock(mutex_);
  --threads_;
  changed_.notify_all();
}

void RipBoard::release() {
  const Lock lock(mutex_);
  released_ = true;
  changed_.notify_all();
}

void RipBoard::awaitRelease() {
  Lock lock(mutex_);
  wait(lock, [this] { return released_; });
}

HostPath RipBoard::awaitOpened(std::size_t track) {
  Lock lock(mutex_);
  wait(lock, [&] { return tracks_[track].path.has_value(); });
  return *tracks_[track].path;
}

TrackNews RipBoard::await(std::size_t track, std::chrono::milliseconds atMost) {
  Lock lock(mutex_);
  Track& mine = tracks_[track];
  changed_.wait_for(lock, atMost, [&] { return cancelled() || mine.end || !mine.troubles.empty(); });
  if (cancelled()) throw Stopped();
  return {std::exchange(mine.troubles, {}), mine.done, mine.end.has_value()};
}

TrackEnd RipBoard::takeEnd(std::size_t track) {
  const Lock lock(mutex_);
  TrackEnd end = std::move(*tracks_[track].end);
  // The reader still learns from it that the track has ended.
  tracks_[track].end.emplace();
  tracks_[track].endTaken = true;
  return end;
}

std::vector<HostPath> RipBoard::filesLeft() const {
  const Lock lock(mutex_);
  std::vector<HostPath> files;
  for (const Track& track : tracks_)
    if (track.path && !track.path->text.empty() && !track.endTaken) files.push_back(*track.path);
  return files;
}

std::map<std::int32_t, int> RipBoard::troublesOf(std::size_t track) const {
  const Lock lock(mutex_);
  return tracks_[track].troubleCounts;
}

void RipBoard::pause(std::chrono::milliseconds time) {
  Lock lock(mutex_);
  changed_.wait_for(lock, time, [this] { return cancelled(); });
  if (cancelled()) throw Stopped();
}

void RipBoard::awaitThreads(std::chrono::milliseconds atMost) {
  Lock lock(mutex_);
  changed_.wait_for(lock, atMost, [this] { return threads_ == 0; });
}

void RipBoard::endTelling() {
  const Lock lock(mutex_);
  told_ = true;
  changed_.notify_all();
}

void RipBoard::awaitEndOfTelling(std::chrono::milliseconds atMost) {
  Lock lock(mutex_);
  changed_.wait_for(lock, atMost, [this] { return told_; });
}

}  // namespace trackloom::engines::ripper
