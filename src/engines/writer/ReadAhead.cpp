#include "engines/writer/ReadAhead.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <thread>
#include <utility>

#include "engines/ground/Blocks.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t chunkBytes = 256 * audioSectorBytes;
constexpr int threads = 2;

std::size_t bytesOf(const ReadAhead::Track& track) {
  return static_cast<std::size_t>(track.blocks) * audioSectorBytes;
}

std::vector<std::size_t> lengthsOf(const std::vector<ReadAhead::Track>& tracks) {
  std::vector<std::size_t> lengths;
  lengths.reserve(tracks.size());
  std::ranges::transform(tracks, std::back_inserter(lengths), bytesOf);
  return lengths;
}

}  // namespace

/// What the decoding threads share with the reader, and keep when they are let go.
struct ReadAhead::Work {
  std::vector<Track> tracks;
  Opener open;
  std::shared_ptr<SourcesInUse> inUse;
  DecodedTracks decoded{lengthsOf(tracks)};
  std::shared_ptr<PieceMemory> memory = std::make_shared<PieceMemory>(chunkBytes);

  void decodeTracks(const std::stop_token& stop);
  void decode(std::size_t track, const std::stop_token& stop);
};

void ReadAhead::Work::decodeTracks(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    const auto track = decoded.claim();
    if (!track) return;
    try {
      decode(*track, stop);
      decoded.finish(*track, nullptr);
    } catch (const Stopped&) {
      return;
    } catch (...) {
      decoded.finish(*track, std::current_exception());
    }
  }
}

void ReadAhead::Work::decode(std::size_t track, const std::stop_token& stop) {
  const SourcesInUse::Use use(inUse, tracks[track].file);
  const auto stream = open(track);
  for (std::size_t left = bytesOf(tracks[track]); left != 0;) {
    if (stop.stop_requested()) throw Stopped();
    DecodedTracks::Chunk chunk(std::min(left, chunkBytes), memory);
    chunk.cutTo(stream->read(chunk.bytes()));
    if (chunk.empty()) throw EngineError(ErrorKind::File, 0, "a track ends before its last block");
    left -= chunk.size();
    decoded.keep(track, std::move(chunk), stop);
  }
}

ReadAhead::ReadAhead(std::vector<Track> tracks, Opener open, std::shared_ptr<SourcesInUse> inUse, std::stop_token stop)
    : stop_(std::move(stop)), work_(new Work{std::move(tracks), std::move(open), std::move(inUse)}) {
  for (int thread = 0; thread < threads; ++thread)
    std::thread([work = work_, ended = letGo_.source.get_token()] { work->decodeTracks(ended); }).detach();
}

ReadAhead::~ReadAhead() = default;

void ReadAhead::read(std::span<std::byte> sectors) {
  while (!sectors.empty()) {
    if (stop_.stop_requested()) throw Stopped();
    if (handedOut_ == chunk_.size()) {
      chunk_ = work_->decoded.take(stop_);
      handedOut_ = 0;
    }
    const std::size_t count = std::min(sectors.size(), chunk_.size() - handedOut_);
    std::memcpy(sectors.data(), chunk_.data() + handedOut_, count);
    handedOut_ += count;
    sectors = sectors.subspan(count);
  }
}

Piece ReadAhead::take(std::size_t most) {
  if (handedOut_ != chunk_.size() || most < chunkBytes) return PieceSource::take(most);
  if (stop_.stop_requested()) throw Stopped();
  return work_->decoded.take(stop_);
}

std::int16_t ReadAhead::bufferPercent() {
  return work_->decoded.percent();
}

}  // namespace trackloom::engines::writer
