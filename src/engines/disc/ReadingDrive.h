#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "engines/disc/DiscText.h"
#include "engines/disc/SectorSource.h"
#include "engines/ground/Blocks.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines {

/// A track of a disc's table of contents, in sectors from the start of the disc (logical block addresses).
struct ContentsTrack {
  BlockKind kind = AudioBlocks;
  std::int32_t start = 0;
  std::int32_t length = 0;
  /// From 1.
  std::int16_t session = 1;
  /// The sound was recorded with raised heights, which a player lowers again (IEC 60908, control field).
  bool preEmphasis = false;

  std::int32_t end() const { return start + length; }
  bool operator==(const ContentsTrack&) const = default;
};

/// What a disc's table of contents tells, data tracks and all sessions included.
struct DiscContents {
  std::vector<ContentsTrack> tracks;
  /// The first sector behind the last track.
  std::int32_t leadOut = 0;
  /// The names that the disc bears.
  DiscText text = {};

  bool operator==(const DiscContents&) const = default;
};

/// The names of a drive as it tells them, untrimmed.
struct DriveNames {
  std::string vendor;
  std::string product;
};

/// What befalls a drive while it reads, in the numbers of RipStatus.
enum class ReadTrouble : std::int32_t { Jitter = 2, SlowedDown = 3, ReadFailed = 4, Retrying = 5, RetryFailed = 6 };
/// Hears of each, and of the sector at which it was met.
using TroubleWatch = std::function<void(ReadTrouble what, std::int32_t sector)>;

/// The disc while it is read: it stays in the drive for as long as this lives. Used by one thread.
class DiscReading {
 public:
  DiscReading() = default;
  DiscReading(const DiscReading&) = delete;
  DiscReading& operator=(const DiscReading&) = delete;
  virtual ~DiscReading() = default;

  /// `count` audio sectors of 2352 bytes. Throws EngineError where one of them cannot be had, and Stopped soon after
  /// `stop` was requested, unless the drive hangs.
  virtual std::vector<std::byte> read(std::int32_t sector, std::int32_t count, const TroubleWatch& watch,
                                      const std::stop_token& stop) = 0;
};

/// A drive that reads audio discs. All calls may take as long as the drive does, on any thread, one at a time.
class ReadingDrive {
 public:
  ReadingDrive() = default;
  ReadingDrive(const ReadingDrive&) = delete;
  ReadingDrive& operator=(const ReadingDrive&) = delete;
  virtual ~ReadingDrive() = default;

  /// By what this drive is known again at a later start.
  virtual std::string id() const = 0;
  virtual DriveNames names() = 0;
  /// Takes the drive into use. Throws EngineError.
  virtual void take() = 0;
  virtual bool discPresent() = 0;
  /// Nothing: there is no disc, or nothing to list on it. Throws EngineError.
  virtual std::optional<DiscContents> contents() = 0;
  /// A multiple of the base speed of 75 sectors a second; 0: not told.
  virtual std::int16_t maxSpeed() = 0;
  /// Begins to read the disc at this multiple of the base speed, 0 standing for the drive's own choice. Throws
  /// EngineError.
  virtual std::unique_ptr<DiscReading> begin(std::int16_t speed) = 0;
};

/// All drives of the machine that read discs, in the order of their numbers and letters.
using ReadingDrives = std::vector<std::shared_ptr<ReadingDrive>>;

}  // namespace trackloom::engines
