#include "engines/writer/ReadAhead.h"

#include <algorithm>
#include <cstring>
#include <thread>
#include <utility>

#include "engines/ground/Blocks.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t chunkBytes = 64 * audioSectorBytes;
constexpr int threads = 2;

std::vector<std::size_t> bytesOf(const std::vector<std::int32_t>& blocks) {
  std::vector<std::size_t> bytes;
  bytes.reserve(blocks.size());
  for (const std::int32_t count : blocks) bytes.push_back(static_cast<std::size_t>(count) * audioSectorBytes);
  return bytes;
}

}  // namespace

/// What the decoding threads share with the reader, and keep when they are let go.
struct ReadAhead::Work {
  std::vector<std::size_t> lengths;
  Opener open;
  DecodedTracks tracks{lengths};

  void decodeTracks(const std::stop_token& stop);
  void decode(std::size_t track, const std::stop_token& stop);
};

void ReadAhead::Work::decodeTracks(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    const auto track = tracks.claim();
    if (!track) return;
    try {
      decode(*track, stop);
      tracks.finish(*track, nullptr);
    } catch (const Stopped&) {
      return;
    } catch (...) {
      tracks.finish(*track, std::current_exception());
    }
  }
}

void ReadAhead::Work::decode(std::size_t track, const std::stop_token& stop) {
  const auto stream = open(track);
  for (std::size_t left = lengths[track]; left != 0;) {
    if (stop.stop_requested()) throw Stopped();
    DecodedTracks::Chunk chunk(std::min(left, chunkBytes));
    chunk.resize(stream->read(chunk));
    if (chunk.empty()) throw EngineError(ErrorKind::File, 0, "a track ends before its last block");
    left -= chunk.size();
    tracks.keep(track, std::move(chunk), stop);
  }
}

ReadAhead::ReadAhead(const std::vector<std::int32_t>& blocks, Opener open, std::stop_token stop)
    : stop_(std::move(stop)), work_(new Work{bytesOf(blocks), std::move(open)}) {
  for (int thread = 0; thread < threads; ++thread)
    std::thread([work = work_, ended = letGo_.source.get_token()] { work->decodeTracks(ended); }).detach();
}

ReadAhead::~ReadAhead() = default;

void ReadAhead::read(std::span<std::byte> sectors) {
  while (!sectors.empty()) {
    if (stop_.stop_requested()) throw Stopped();
    if (handedOut_ == chunk_.size()) {
      chunk_ = work_->tracks.take(stop_);
      handedOut_ = 0;
    }
    const std::size_t count = std::min(sectors.size(), chunk_.size() - handedOut_);
    std::memcpy(sectors.data(), chunk_.data() + handedOut_, count);
    handedOut_ += count;
    sectors = sectors.subspan(count);
  }
}

std::int16_t ReadAhead::bufferPercent() {
  return work_->tracks.percent();
}

}  // namespace trackloom::engines::writer
