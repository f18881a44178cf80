#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "engines/disc/DriveSnapshot.h"
#include "engines/disc/ReadConditions.h"
#include "engines/disc/SectorSource.h"
#include "engines/disc/WriteOrder.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines {

/// Hears of the phases of an operation, on the operation's thread. Tracks count from 1 within the order, positions are
/// blocks of the track.
class OperationObserver {
 public:
  OperationObserver() = default;
  OperationObserver(const OperationObserver&) = delete;
  OperationObserver& operator=(const OperationObserver&) = delete;
  virtual ~OperationObserver() = default;

  virtual void trackStarted(std::int16_t /*track*/, std::int32_t /*blocks*/) {}
  /// `bufferPercent`: how full the recorder's own buffer is.
  virtual void progress(std::int16_t /*track*/, std::int32_t /*position*/, std::int16_t /*bufferPercent*/) {}
  virtual void trackClosing(std::int16_t /*track*/) {}
  virtual void sessionClosing() {}
  virtual void discClosing() {}
  /// The erase has really begun.
  virtual void erasing() {}
};

/// Hears how many blocks of a write have gone into the cache, counted over all its tracks, and throws EngineError where
/// the write is to fail at one of them. Called on a thread of the write.
using CacheWatch = std::function<void(std::int64_t blocks)>;

/// One recorder. Its operations block the calling thread, which is not the UI thread, until they are done; they throw
/// EngineError, and Stopped soon after `stop` was requested. Once an operation has returned or thrown, nothing of the
/// disc changes any more, and the recorder is free for the next one. All else answers within about a second, on any
/// thread.
class Recorder {
 public:
  Recorder() = default;
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  virtual ~Recorder() = default;

  /// By what this recorder is known again at a later start; "|" stands in none.
  virtual std::string id() const = 0;
  /// Takes the drive into use; False: it could not be taken.
  virtual bool take() = 0;
  virtual void enableWriteGuard(bool on) = 0;
  /// How drive and disc are now: the last snapshot where nothing can have changed since, else a new one.
  virtual std::shared_ptr<const DriveSnapshot> look() = 0;
  /// Throws EngineError where write() would refuse the order before it touches the disc.
  virtual void check(const WriteOrder& order) = 0;
  /// A cached write has all its tracks in the cache before the first block goes out, since the drive may not bear a gap
  /// between two of them; else each track is cached when its turn comes.
  virtual bool cachesAllFirst() const { return false; }
  /// For the next write; empty: the cache is no concern of this recorder.
  virtual CacheWatch cacheWatch() { return {}; }
  /// Writes all tracks, pulling them from `source`, and closes what the order says. A write that does not end leaves
  /// the disc spoilt once it was touched; a test leaves it as it was.
  virtual void write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
                     const std::stop_token& stop) = 0;
  /// Makes a rewritable disc blank.
  virtual void erase(bool quick, OperationObserver& observer, const std::stop_token& stop) = 0;
  /// Closes the last session, which is incomplete, and with `alsoDisc` the disc.
  virtual void close(bool alsoDisc, OperationObserver& observer, const std::stop_token& stop) = 0;
  /// `count` sectors of the disc from `block` on, 2352 or 2048 bytes each as its tracks are audio or data.
  virtual std::vector<std::byte> read(std::int32_t block, std::int32_t count) = 0;
  /// Keeps the disc in the recorder, and all operations away from it, while somebody has this. Throws EngineError where
  /// something is at work with it.
  virtual std::shared_ptr<void> holdDisc() { return nullptr; }
  /// What those who read the disc's sound at this multiple of the base speed are to meet.
  virtual ReadConditions readConditions(std::int16_t /*speed*/) { return {}; }
  /// Throws EngineError where the tray cannot be opened; the disc then lies where it was.
  virtual void eject() = 0;
};

/// All recorders of the machine in the order of their drive numbers.
using RecorderList = std::vector<std::shared_ptr<Recorder>>;

}  // namespace trackloom::engines
