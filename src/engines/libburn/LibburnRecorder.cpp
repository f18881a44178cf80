#include "engines/libburn/LibburnRecorder.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "engines/disc/NodeFailure.h"
#include "engines/disc/Sense.h"
#include "engines/libburn/SenseWords.h"
#include "engines/libburn/SessionWrite.h"
#include "engines/libburn/TrackWrite.h"

namespace trackloom::engines::libburn {

namespace {

/// Most blocks that a drive adds to a track by itself: those that make it 300 long, and the run-out.
constexpr std::int32_t mostAdded = 302;
/// How long a look and an operation wait for a drive that becomes ready.
constexpr std::chrono::milliseconds patienceOfALook{800};
constexpr std::chrono::milliseconds patienceOfWork{30'000};

bool isSameTrack(const DiscTrack& told, const DiscTrack& written) {
  return told.start == written.start && told.kind == written.kind && told.length >= written.length &&
         told.length - written.length <= mostAdded;
}

/// As the disc is to the program once a write onto it has failed.
DiscState closedFor(DiscState disc) {
  disc.status = DiscClosed;
  disc.freeAudioBlocks = disc.freeDataBlocks = 0;
  return disc;
}

}  // namespace

/// Looks answer from the last one for as long as this lives.
class LibburnRecorder::Work {
 public:
  explicit Work(LibburnRecorder& recorder) : recorder_(recorder) { set(true); }
  ~Work() { set(false); }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;

 private:
  void set(bool working) {
    const std::lock_guard lock(recorder_.mutex_);
    recorder_.working_ = working;
    if (!working) recorder_.looked_.reset();
  }

  LibburnRecorder& recorder_;
};

/// The drive with a disc in it, alone and with its tray locked.
class LibburnRecorder::HeldDrive {
 public:
  explicit HeldDrive(const LibburnRecorder& recorder) : drive(recorder.alone()) {
    if (!drive.hasDisc(patienceOfWork)) throw deviceError(sense::noMedium, "no disc is in the drive");
    drive.lockTray(true);
  }
  /// A drive that was unplugged has no tray to free.
  ~HeldDrive() {
    try {
      drive.lockTray(false);
    } catch (const EngineError&) {
      return;
    }
  }
  HeldDrive(const HeldDrive&) = delete;
  HeldDrive& operator=(const HeldDrive&) = delete;

  Drive drive;
};

struct LibburnRecorder::Operation {
  explicit Operation(LibburnRecorder& recorder) : held(recorder), work(recorder) {}

  HeldDrive held;
  Drive& drive = held.drive;
  Work work;
};

/// The drive for this program alone, also where the desktop has mounted its disc.
Drive LibburnRecorder::alone() const {
  try {
    return {path_, Hold::Alone};
  } catch (const EngineError& failure) {
    if (failure.number() != sense::busy || !mounts_) throw;
  }
  const std::string said = mounts_->unmount(path_);
  try {
    return {path_, Hold::Alone};
  } catch (const EngineError& failure) {
    if (failure.number() != sense::busy) throw;
    throw driveInUse(path_, said);
  }
}

bool LibburnRecorder::take() {
  try {
    const DriveIdentity identity = Drive(path_, Hold::Shared).identity();
    const std::lock_guard lock(mutex_);
    identity_ = identity;
    taken_ = true;
    return true;
  } catch (const EngineError&) {
    return false;
  }
}

std::shared_ptr<const DriveSnapshot> LibburnRecorder::look() {
  const std::lock_guard lock(mutex_);
  if (working_ && looked_) return looked_->snapshot;
  try {
    return lookAnew();
  } catch (const EngineError&) {
    looked_.reset();
    return std::make_shared<DriveSnapshot>(DriveSnapshot{identity_, std::nullopt});
  }
}

std::shared_ptr<const DriveSnapshot> LibburnRecorder::lookAnew() {
  Drive drive(path_, Hold::Shared);
  if (identity_.vendor.empty()) identity_ = drive.identity();
  if (!drive.hasDisc(taken_ ? patienceOfALook : std::chrono::milliseconds::zero())) {
    looked_.reset();
    return std::make_shared<DriveSnapshot>(DriveSnapshot{identity_, std::nullopt});
  }
  Reply tables = drive.tables();
  if (looked_ && looked_->tables == tables) return looked_->snapshot;
  const DiscState disc = discIn(drive, tables);
  looked_ = {std::move(tables), std::make_shared<DriveSnapshot>(DriveSnapshot{identity_, disc})};
  return looked_->snapshot;
}

DiscState LibburnRecorder::discIn(Drive& drive, const Reply& tables) const {
  DiscState disc = drive.disc();
  for (DiscTrack& track : disc.tracks)
    for (const DiscTrack& written : written_)
      if (isSameTrack(track, written)) track.length = written.length;
  return spoilt_ == tables ? closedFor(disc) : disc;
}

DiscState LibburnRecorder::discOrThrow() {
  const auto disc = look()->disc;
  if (!disc) throw deviceError(sense::noMedium, "no disc is in the drive");
  return *disc;
}

void LibburnRecorder::check(const WriteOrder& order) {
  const Drive held = alone();
  requireFits(order, discOrThrow());
}

void LibburnRecorder::write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
                            const std::stop_token& stop) {
  const DiscState before = discOrThrow();
  requireFits(order, before);
  const bool openSession = before.lastSession == SessionIncomplete;
  if ((order.closeSession || order.closeDisc) && !openSession)
    writeSession(before.status == DiscEmpty, order, source, observer, stop);
  else
    writeTracks(order, source, observer, stop);
  if (!order.test) requireListed(order);
}

void LibburnRecorder::writeSession(bool blank, const WriteOrder& order, SectorSource& source,
                                   OperationObserver& observer, const std::stop_token& stop) {
  const Work work(*this);
  {
    // The disc stays in the drive while its tracks are cached.
    const HeldDrive held(*this);
    source.beginTrack(1);
  }
  SessionWrite write(blank, writeGuard_, order, source, observer, stop);
  try {
    write.run(path_);
  } catch (...) {
    if (write.touched()) spoil(order);
    throw;
  }
}

void LibburnRecorder::writeTracks(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
                                  const std::stop_token& stop) {
  Operation operation(*this);
  TrackWrite write(operation.drive, writeGuard_, order, source, observer, stop);
  try {
    write.run();
  } catch (...) {
    if (write.touched()) spoil(operation.drive, order);
    throw;
  }
}

void LibburnRecorder::spoil(const WriteOrder& order) {
  try {
    Drive drive = alone();
    if (drive.hasDisc(patienceOfWork)) spoil(drive, order);
  } catch (const EngineError&) {
    return;
  }
}

/// Closes the session for good; a drive that no longer can has a disc all the same that is not written further.
void LibburnRecorder::spoil(Drive& drive, const WriteOrder& order) {
  const auto tried = [](const auto& step) {
    try {
      step();
    } catch (const EngineError&) {
      return;
    }
  };
  tried([&] { drive.closeTrack(); });
  tried([&] { drive.prepare({order.kind, order.pause, false, false, false}); });
  tried([&] { drive.closeSession(); });
  tried([&] {
    Reply tables = drive.tables();
    const std::lock_guard lock(mutex_);
    spoilt_ = std::move(tables);
  });
}

/// What was written counts only where the drive lists it.
void LibburnRecorder::requireListed(const WriteOrder& order) {
  const DiscState disc = discOrThrow();
  const std::size_t count = order.trackBlocks.size();
  const std::string words = "the disc does not list what was written onto it";
  if (disc.tracks.size() < count) throw deviceError(sense::miscompare, words);
  std::vector<DiscTrack> last(disc.tracks.end() - static_cast<std::ptrdiff_t>(count), disc.tracks.end());
  for (std::size_t i = 0; i < count; ++i) {
    DiscTrack ordered = last[i];
    ordered.length = order.trackBlocks[i];
    ordered.kind = order.kind;
    if (!isSameTrack(last[i], ordered)) throw deviceError(sense::miscompare, words);
    last[i] = ordered;
  }
  const std::lock_guard lock(mutex_);
  written_ = std::move(last);
  looked_.reset();
}

void LibburnRecorder::erase(bool quick, OperationObserver& observer, const std::stop_token& stop) {
  Operation operation(*this);
  if (!operation.drive.disc().rewritable)
    throw deviceError(sense::cannotWriteMedium, "the disc cannot be erased: it can be written once only");
  observer.erasing();
  operation.drive.erase(quick, [] {});
  if (stop.stop_requested()) throw Stopped();
}

void LibburnRecorder::close(bool alsoDisc, OperationObserver& observer, const std::stop_token&) {
  Operation operation(*this);
  const DiscState disc = operation.drive.disc();
  if (disc.status != DiscOpen || disc.lastSession != SessionIncomplete)
    throw deviceError(sense::badSequence, "the disc has no incomplete session");
  const BlockKind kind = disc.tracks.empty() ? DataBlocks : disc.tracks.back().kind;
  observer.sessionClosing();
  if (alsoDisc) observer.discClosing();
  operation.drive.prepare({kind, standardPause, false, false, !alsoDisc});
  operation.drive.closeTrack();
  operation.drive.closeSession();
}

std::vector<std::byte> LibburnRecorder::read(std::int32_t block, std::int32_t count) {
  const DiscState disc = discOrThrow();
  const auto track = std::ranges::find_if(disc.tracks, [&](const DiscTrack& candidate) {
    return block >= candidate.start && block + count <= candidate.start + candidate.length;
  });
  if (track == disc.tracks.end())
    throw deviceError(sense::outOfRange, "the disc has no " + std::to_string(count) + " recorded blocks from block " +
                                             std::to_string(block) + " on");
  return Drive(path_, Hold::Shared).read(track->kind, block, count);
}

void LibburnRecorder::eject() {
  {
    const std::lock_guard lock(mutex_);
    if (working_) throw deviceError(sense::busy, "the drive is busy: an operation runs");
  }
  alone().openTray();
}

}  // namespace trackloom::engines::libburn
