#include "engines/ripper/TrackReader.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/ripper/OffsetReading.h"

namespace trackloom::engines::ripper {

namespace {

/// A bit less than a second of sound, so that bars move and a cancel is felt.
constexpr std::int32_t sectorsAtOnce = 64;

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

  const RipRequest& request_;
  RipBoard& board_;
  std::shared_ptr<DiscReading> reading_;
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
  const auto watch = [&](ReadTrouble what, std::int32_t sector) {
    board_.met(track, {static_cast<std::int32_t>(what), sector});
  };
  for (std::int32_t at = place.start; at < place.end(); at += sectorsAtOnce) {
    const std::int32_t count = std::min(sectorsAtOnce, place.end() - at);
    try {
      if (!board_.put(track, reading_->read(at, count, watch, board_.stopToken()))) return;
    } catch (const EngineError& error) {
      if (at == place.start && isGone(error)) throw TrackFailed{status::noDrive};
      board_.met(track, {status::readFailed, at});
      throw;
    }
  }
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
