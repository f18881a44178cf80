#include "engines/libburn/SessionWrite.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/libburn/CdText.h"

namespace trackloom::engines::libburn {

namespace {

constexpr std::int32_t blocksAtOnce = 16;
constexpr std::chrono::milliseconds patience{20};

/// What the library asks for the sectors of one track, on its thread, and frees on ours; the lock stands between the
/// two.
struct TrackSource {
  TrackSource(std::shared_ptr<Supply> from, std::int16_t number, off_t bytes)
      : supply(std::move(from)), track(number), left(bytes), size(bytes) {}

  std::mutex mutex;
  std::shared_ptr<Supply> supply;
  std::int16_t track;
  /// The bytes that there are still to be had.
  off_t left;
  /// As the library has it, which sets it higher where it fills the track up.
  off_t size;
};

TrackSource& sourceOf(burn::burn_source* source) {
  return *static_cast<TrackSource*>(source->data);
}

extern "C" {

/// The library asks beyond the end of a track that it fills up.
static int readTrack(burn::burn_source* source, unsigned char* buffer, int size) {
  TrackSource& track = sourceOf(source);
  const std::lock_guard lock(track.mutex);
  const auto step = static_cast<int>(std::min<off_t>(size, track.left));
  track.left -= step;
  const bool more =
      track.supply->take(track.track, reinterpret_cast<std::byte*>(buffer), static_cast<std::size_t>(step));
  return more ? step : -1;
}

static off_t sizeOfTrack(burn::burn_source* source) {
  const std::lock_guard lock(sourceOf(source).mutex);
  return sourceOf(source).size;
}

static int setSizeOfTrack(burn::burn_source* source, off_t size) {
  const std::lock_guard lock(sourceOf(source).mutex);
  sourceOf(source).size = size;
  return 1;
}

static void freeTrackSource(burn::burn_source* source) {
  const std::unique_ptr<TrackSource> owned(&sourceOf(source));
  const std::lock_guard lock(owned->mutex);
}

}  // extern "C"

/// The library counts who uses a source, and frees it with free().
burn::burn_source* newSource(std::shared_ptr<Supply> supply, std::int16_t track, off_t size) {
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  auto* source = static_cast<burn::burn_source*>(std::calloc(1, sizeof(burn::burn_source)));
  if (source == nullptr) throw std::bad_alloc();
  source->refcount = 1;
  source->read = readTrack;
  source->get_size = sizeOfTrack;
  source->set_size = setSizeOfTrack;
  source->free_data = freeTrackSource;
  source->data = std::make_unique<TrackSource>(std::move(supply), track, size).release();
  return source;
}

}  // namespace

SessionWrite::SessionWrite(bool blankDisc, bool guarded, const WriteOrder& order, SectorSource& source,
                           OperationObserver& observer, const std::stop_token& stop)
    : blankDisc_(blankDisc), guarded_(guarded), order_(order), source_(source), observer_(observer), stop_(stop) {}

void SessionWrite::run(const std::string& path) {
  if (stop_.stop_requested()) throw Stopped();
  const GrabbedDrive drive(path);
  burnTracks(drive.get());
}

OwnedTrack SessionWrite::trackOf(std::int16_t number) {
  OwnedTrack track(burn::burn_track_create());
  const bool audio = order_.kind == AudioBlocks;
  burn::burn_track_define_data(track.get(), 0, 0, 1, audio ? BURN_AUDIO : BURN_MODE1);
  if (atOnce() && number > 1) burn::burn_track_set_pregap_size(track.get(), order_.pause, 0);
  const std::int32_t blocks = order_.trackBlocks[static_cast<std::size_t>(number) - 1];
  const auto size = static_cast<off_t>(blocks) * static_cast<off_t>(bytesOfSector(order_.kind));
  burn::burn_source* source = newSource(supply_, number, size);
  burn::burn_track_set_source(track.get(), source);
  burn::burn_source_free(source);
  return track;
}

OwnedOptions SessionWrite::optionsFor(burn::burn_drive* drive) const {
  OwnedOptions options(burn::burn_write_opts_new(drive));
  const bool audio = order_.kind == AudioBlocks;
  burn::burn_write_opts_set_write_type(options.get(), atOnce() ? burn::BURN_WRITE_SAO : burn::BURN_WRITE_TAO,
                                       atOnce() ? burn::BURN_BLOCK_SAO
                                       : audio  ? burn::BURN_BLOCK_RAW0
                                                : burn::BURN_BLOCK_MODE1);
  burn::burn_write_opts_set_simulate(options.get(), order_.test);
  burn::burn_write_opts_set_underrun_proof(options.get(), guarded_);
  burn::burn_write_opts_set_multi(options.get(), !order_.closeDisc);
  return options;
}

void SessionWrite::burnTracks(burn::burn_drive* drive) {
  const OwnedDisc disc(burn::burn_disc_create());
  const OwnedSession session(burn::burn_session_create());
  burn::burn_disc_add_session(disc.get(), session.get(), BURN_POS_END);
  std::vector<OwnedTrack> tracks;
  const auto count = static_cast<std::int16_t>(order_.trackBlocks.size());
  for (std::int16_t number = 1; number <= count; ++number) {
    tracks.push_back(trackOf(number));
    burn::burn_session_add_track(session.get(), tracks.back().get(), BURN_POS_END);
  }
  if (atOnce()) nameSession(session.get(), tracks, order_.text);
  const OwnedOptions options = optionsFor(drive);
  start(drive, options, disc);
  attend(drive);
  requireWell(drive);
}

void SessionWrite::start(burn::burn_drive* drive, const OwnedOptions& options, const OwnedDisc& disc) {
  std::array<char, BURN_REASONS_LEN> reasons{};
  if (burn::burn_precheck_write(options.get(), disc.get(), reasons.data(), 0) <= 0)
    throw deviceError(sense::cannotWriteMedium, std::string("the drive cannot write this: ") + reasons.data());
  burn::burn_drive_set_speed(drive, 0, std::max<std::int16_t>(order_.speed, 0) * kilobytesAtBaseSpeed);
  forgetMessages();
  touched_ = !order_.test;
  burn::burn_disc_write(options.get(), disc.get());
}

/// Until the library is done, also with a write that is given up.
void SessionWrite::attend(burn::burn_drive* drive) {
  burn::burn_progress progress{};
  while (burn::burn_drive_get_status(drive, &progress) != burn::BURN_DRIVE_IDLE) {
    hearOfBuffer(progress);
    if (failure_) {
      std::this_thread::sleep_for(patience);
      continue;
    }
    attendOnce();
    if (!failure_) continue;
    supply_->end();
    burn::burn_drive_cancel(drive);
  }
}

/// Before the drive was asked for the first time its buffer counts as full.
void SessionWrite::hearOfBuffer(const burn::burn_progress& progress) {
  const std::uint64_t size = std::max(progress.buffer_capacity, 1U);
  const std::uint64_t left = std::min<std::uint64_t>(progress.buffer_available, size);
  bufferPercent_ = static_cast<std::int16_t>((size - left) * 100 / size);
}

void SessionWrite::attendOnce() {
  try {
    if (stop_.stop_requested()) throw Stopped();
    supply_->serve(patience, [this](std::int16_t track) { return make(track); });
    const bool last = track_ == std::ssize(order_.trackBlocks) && position_ == order_.trackBlocks.back();
    if (last && supply_->drained()) tellClosings();
  } catch (...) {
    failure_ = std::current_exception();
  }
}

std::vector<std::byte> SessionWrite::make(std::int16_t track) {
  if (track_ > 0) tellTaken();
  if (track != track_) begin(track);
  const std::int32_t length = order_.trackBlocks[static_cast<std::size_t>(track) - 1];
  const std::int32_t piece = std::clamp(length / 4, 1, blocksAtOnce);
  const std::int32_t step = position_ == 0 ? 1 : std::min(piece, length - position_);
  std::vector<std::byte> sectors(static_cast<std::size_t>(step) * bytesOfSector(order_.kind));
  source_.read(sectors);
  position_ += step;
  return sectors;
}

void SessionWrite::begin(std::int16_t track) {
  if (track_ > 0) observer_.trackClosing(track_);
  if (track > 1) source_.beginTrack(track);
  track_ = track;
  position_ = 0;
  observer_.trackStarted(track, order_.trackBlocks[static_cast<std::size_t>(track) - 1]);
}

/// What was made last has gone to the drive.
void SessionWrite::tellTaken() {
  observer_.progress(track_, position_, bufferPercent_);
}

void SessionWrite::tellClosings() {
  if (std::exchange(closingsTold_, true)) return;
  tellTaken();
  observer_.trackClosing(track_);
  if (order_.closeSession) observer_.sessionClosing();
  if (order_.closeDisc) observer_.discClosing();
}

void SessionWrite::requireWell(burn::burn_drive* drive) const {
  if (failure_) std::rethrow_exception(failure_);
  if (!closingsTold_ || burn::burn_drive_wrote_well(drive) == 0)
    throw lastFailure("the disc could not be written", sense::writeError);
}

}  // namespace trackloom::engines::libburn
