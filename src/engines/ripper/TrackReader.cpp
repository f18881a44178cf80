#include "engines/ripper/TrackReader.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/ripper/OffsetReading.h"

namespace trackloom::engines::ripper {

namespace {

/// As many sectors at once as a drive reads in a moment, so that bars move and a quick one is not kept by small pieces.
class PieceSize {
 public:
  std::int32_t sectors() const { return sectors_; }
  void learn(std::chrono::steady_clock::duration taken) {
    if (taken < std::chrono::milliseconds(20)) sectors_ = std::min(2 * sectors_, most);
    if (taken > std::chrono::milliseconds(100)) sectors_ = std::max(sectors_ / 2, fewest);
  }

 private:
  static constexpr std::int32_t fewest = 15;
  static constexpr std::int32_t most = 240;
  std::int32_t sectors_ = 30;
};

std::shared_ptr<DiscReading> beginReading(const RipRequest& request) {
  std::shared_ptr<DiscReading> reading = request.drive->begin(request.speed);
  if (request.readOffset == 0) return reading;
  return std::make_shared<OffsetReading>(std::move(reading), request.contents, request.readOffset);
}

bool isGone(const EngineError& error) {
  return error.number() == sense::noMedium || error.number() == sense::notReady;
}

/// The tracks of one rip, read through one reading.
class TracksInOrder {
 public:
  TracksInOrder(const RipRequest& request, RipBoard& board) : request_(request), board_(board) {}

  void read(std::size_t track);

 private:
  void readSound(std::size_t track);
  std::vector<std::byte> readPiece(std::size_t track, std::int32_t at, std::int32_t count);

  const RipRequest& request_;
  RipBoard& board_;
  std::shared_ptr<DiscReading> reading_;
  PieceSize pieceSize_;
};

void TracksInOrder::read(std::size_t track) {
  std::int32_t code = status::noDrive;
  try {
    // A drive that failed at a track may have recovered by the next.
    if (!reading_) reading_ = beginReading(request_);
    code = status::aborted;
    readSound(track);
    code = status::whole;
  } catch (const EngineError&) {
    reading_.reset();
  } catch (const TrackFailed& failed) {
    code = failed.code;
    reading_.reset();
  } catch (const std::bad_alloc&) {
    code = status::noBuffer;
  }
  board_.endReading(track, code);
}

void TracksInOrder::readSound(std::size_t track) {
  const ContentsTrack& place = request_.tracks[track].place;
  std::int32_t at = place.start;
  while (at < place.end()) {
    const std::int32_t count = std::min(pieceSize_.sectors(), place.end() - at);
    try {
      if (!board_.put(track, readPiece(track, at, count))) return;
    } catch (const EngineError& error) {
      if (at == place.start && isGone(error)) throw TrackFailed{status::noDrive};
      board_.met(track, {status::readFailed, 0});
      throw;
    }
    at += count;
  }
}

std::vector<std::byte> TracksInOrder::readPiece(std::size_t track, std::int32_t at, std::int32_t count) {
  const auto begun = std::chrono::steady_clock::now();
  const auto watch = [&](ReadTrouble what, std::int32_t sector) {
    board_.met(track, {static_cast<std::int32_t>(what), sector});
  };
  auto sound = reading_->read(at, count, watch, board_.stopToken());
  pieceSize_.learn(std::chrono::steady_clock::now() - begun);
  return sound;
}

}  // namespace

void readTracks(const RipRequest& request, RipBoard& board) {
  try {
    TracksInOrder tracks(request, board);
    for (std::size_t track = 0; track < request.tracks.size(); ++track) tracks.read(track);
    // The disc stays in the drive until the last file is made.
    board.awaitRelease();
  } catch (const Stopped&) {
    return;
  }
}

}  // namespace trackloom::engines::ripper
