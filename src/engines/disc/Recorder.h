#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "engines/ground/EngineError.h"
#include "ports/CDWriterXP.h"

namespace trackloom::engines {

/// What a recorder tells of itself; the texts as the device gives them, untrimmed.
struct DriveIdentity {
  std::string vendor;
  std::string product;
  std::int16_t maxWriteSpeed = 0;
  bool hasWriteGuard = false;
};

/// What lies in a recorder at the moment of the look; all sizes and addresses in blocks.
struct DiscState {
  DiscStatusCode status = DiscEmpty;
  DiscTypeCode type = DiscTypeCdRom;
  bool rewritable = false;
  std::int16_t sessions = 0;
  SessionStatusCode lastSession = SessionEmpty;
  std::int32_t freeAudioBlocks = 0;
  std::int32_t freeDataBlocks = 0;
  /// Address of the first block that the next track's content would take.
  std::int32_t nextWritable = 0;
};

/// The order of one write: every track's length is known before the first block goes out.
struct WriteOrder {
  BlockKind kind = AudioBlocks;
  std::vector<std::int32_t> trackBlocks;
  /// Silent blocks before each audio track but the first of the disc.
  std::int32_t pause = 150;
  bool test = false;
  bool closeSession = true;
  bool closeDisc = true;
  /// A multiple of the base speed; 0: the recorder's own choice.
  std::int16_t speed = 0;
};

/// One running write. The calls come in order, track by track: startTrack, write until the track is full, closeTrack;
/// then closeSession and closeDisc as ordered, and finish. A write that is destroyed before finish() leaves the disc
/// spoilt, unless it was a test. Every call may throw EngineError. Used by one thread at a time, not the UI thread.
class DiscWrite {
 public:
  virtual ~DiscWrite() = default;

  virtual void startTrack() = 0;
  /// Whole sectors, 2352 bytes for audio (16-bit little-endian stereo), 2048 for data.
  virtual void write(std::span<const std::byte> sectors) = 0;
  /// How full the recorder's own buffer is.
  virtual std::int16_t bufferPercent() { return 100; }
  virtual void closeTrack() = 0;
  virtual void closeSession() = 0;
  virtual void closeDisc() = 0;
  /// Makes the disc's new state stand.
  virtual void finish() = 0;
};

/// One recorder. Looks answer within about a second; they are taken on the UI thread, and on the writing thread before
/// begin(), which runs there.
class Recorder {
 public:
  virtual ~Recorder() = default;

  virtual DriveIdentity identity() const = 0;
  /// Takes the drive into use; False: it could not be taken.
  virtual bool take() = 0;
  virtual void enableWriteGuard(bool on) = 0;
  /// Nothing: no disc is loaded and ready.
  virtual std::optional<DiscState> look() = 0;
  /// False: the tray could not be opened, and the disc lies where it was.
  virtual bool eject() = 0;
  /// Throws EngineError when the disc is missing, closed or too small; the disc is then as it was.
  virtual std::unique_ptr<DiscWrite> begin(const WriteOrder& order) = 0;
};

/// All recorders of the machine in the order of their drive numbers.
using RecorderList = std::vector<std::shared_ptr<Recorder>>;

}  // namespace trackloom::engines
