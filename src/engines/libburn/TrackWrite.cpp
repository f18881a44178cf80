#include "engines/libburn/TrackWrite.h"

#include <algorithm>

namespace trackloom::engines::libburn {

namespace {

/// What one command of the bus carries; short enough for a stop to be felt at once.
constexpr std::int32_t blocksAtOnce = 16;

}  // namespace

TrackWrite::TrackWrite(Drive& drive, bool guarded, const WriteOrder& order, SectorSource& source,
                       OperationObserver& observer, const std::stop_token& stop)
    : drive_(drive), guarded_(guarded), order_(order), source_(source), observer_(observer), stop_(stop) {}

WriteParameters TrackWrite::parameters() const {
  return {order_.kind, order_.pause, order_.test, guarded_, !order_.closeDisc};
}

void TrackWrite::run() {
  const auto tracks = static_cast<std::int16_t>(order_.trackBlocks.size());
  beginTrack(1);
  drive_.prepare(parameters());
  drive_.setSpeed(order_.speed);
  if (!order_.test) drive_.calibrate();
  for (std::int16_t track = 1; track <= tracks; ++track) {
    if (track > 1) beginTrack(track);
    writeTrack(track);
  }
  closeSessionAndDisc();
}

void TrackWrite::requireNotStopped() const {
  if (stop_.stop_requested()) throw Stopped();
}

void TrackWrite::beginTrack(std::int16_t track) {
  source_.beginTrack(track);
  requireNotStopped();
}

void TrackWrite::writeTrack(std::int16_t track) {
  const std::int32_t length = order_.trackBlocks[static_cast<std::size_t>(track) - 1];
  const std::int32_t piece = std::clamp(length / 4, 1, blocksAtOnce);
  const std::int32_t start = drive_.nextWritable();
  touched_ = !order_.test;
  observer_.trackStarted(track, length);
  for (std::int32_t position = 0; position < length;) {
    requireNotStopped();
    const std::int32_t step = position == 0 ? 1 : std::min(piece, length - position);
    sectors_.resize(static_cast<std::size_t>(step) * bytesOfSector(order_.kind));
    source_.read(sectors_);
    drive_.write(start + position, step, sectors_, [this] { return !stop_.stop_requested(); });
    requireNotStopped();
    position += step;
    observer_.progress(track, position, drive_.bufferPercent());
  }
  observer_.trackClosing(track);
  drive_.closeTrack();
}

/// A disc is closed with its session; a test closes nothing, since nothing was written.
void TrackWrite::closeSessionAndDisc() {
  requireNotStopped();
  if (order_.closeSession) observer_.sessionClosing();
  if (order_.closeDisc) observer_.discClosing();
  if (!order_.test && (order_.closeSession || order_.closeDisc)) drive_.closeSession();
  requireNotStopped();
}

}  // namespace trackloom::engines::libburn
