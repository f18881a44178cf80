#include "engines/writer/ReadAhead.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "engines/ground/Blocks.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t chunkBytes = 64 * audioSectorBytes;
constexpr std::size_t capacity = std::size_t{32} << 20;
/// What later tracks leave to the one being read: 47 seconds of music, more than a second of writing at 40x.
constexpr std::size_t currentTrackShare = std::size_t{8} << 20;

std::size_t bytesOf(const MeasuredTrack& track) {
  return static_cast<std::size_t>(track.blocks) * audioSectorBytes;
}

}  // namespace

ReadAhead::ReadAhead(audio::AudioFiles& files, const std::vector<MeasuredTrack>& tracks, std::stop_token stop)
    : files_(files), stop_(std::move(stop)) {
  for (const MeasuredTrack& track : tracks) {
    tracks_.push_back({track, {}, false, nullptr});
    unread_ += bytesOf(track);
  }
  for (std::jthread& decoder : decoders_)
    decoder = std::jthread([this](const std::stop_token& ended) { decodeTracks(ended); });
}

ReadAhead::~ReadAhead() {
  for (std::jthread& decoder : decoders_) decoder.request_stop();
}

void ReadAhead::decodeTracks(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    const auto track = claimTrack();
    if (!track) return;
    try {
      decode(*track, stop);
      finish(*track, nullptr);
    } catch (const Stopped&) {
      return;
    } catch (...) {
      finish(*track, std::current_exception());
    }
  }
}

std::optional<std::size_t> ReadAhead::claimTrack() {
  const std::lock_guard lock(mutex_);
  if (claimed_ == tracks_.size()) return std::nullopt;
  return claimed_++;
}

void ReadAhead::decode(std::size_t track, const std::stop_token& stop) {
  const MeasuredTrack& source = tracks_[track].source;
  const auto stream = files_.open(source.path);
  if (stream->blocks() != source.blocks)
    throw RuntimeError(RuntimeError::DeviceIoError, source.path.text + " has changed since it was measured");
  for (std::size_t left = bytesOf(source); left != 0;) {
    std::vector<std::byte> chunk(std::min(left, chunkBytes));
    chunk.resize(stream->read(chunk));
    if (chunk.empty()) throw RuntimeError(RuntimeError::InputPastEnd, source.path.text + " ends before its last block");
    left -= chunk.size();
    keep(track, std::move(chunk), stop);
  }
}

bool ReadAhead::hasRoom(std::size_t track) const {
  return buffered_ < (track == current_ ? capacity : capacity - currentTrackShare);
}

void ReadAhead::keep(std::size_t track, std::vector<std::byte> chunk, const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait(lock, stop, [&] { return hasRoom(track); })) throw Stopped();
  buffered_ += chunk.size();
  tracks_[track].decoded.push_back(std::move(chunk));
  changed_.notify_all();
}

void ReadAhead::finish(std::size_t track, std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  tracks_[track].failure = std::move(failure);
  tracks_[track].finished = true;
  changed_.notify_all();
}

void ReadAhead::fetchChunk() {
  std::unique_lock lock(mutex_);
  for (;; ++current_) {
    Track& track = tracks_.at(current_);
    if (!changed_.wait(lock, stop_, [&] { return track.finished || !track.decoded.empty(); })) throw Stopped();
    if (!track.decoded.empty()) break;
    if (track.failure) std::rethrow_exception(track.failure);
  }
  chunk_ = std::move(tracks_[current_].decoded.front());
  tracks_[current_].decoded.pop_front();
  handedOut_ = 0;
  buffered_ -= chunk_.size();
  unread_ -= chunk_.size();
  changed_.notify_all();
}

void ReadAhead::read(std::span<std::byte> sectors) {
  while (!sectors.empty()) {
    if (stop_.stop_requested()) throw Stopped();
    if (handedOut_ == chunk_.size()) fetchChunk();
    const std::size_t count = std::min(sectors.size(), chunk_.size() - handedOut_);
    std::memcpy(sectors.data(), chunk_.data() + handedOut_, count);
    handedOut_ += count;
    sectors = sectors.subspan(count);
  }
}

std::int16_t ReadAhead::bufferPercent() {
  const std::lock_guard lock(mutex_);
  const std::size_t whole = std::min(capacity, unread_);
  return static_cast<std::int16_t>(whole == 0 ? 100 : std::min<std::size_t>(100, buffered_ * 100 / whole));
}

}  // namespace trackloom::engines::writer
