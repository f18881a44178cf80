#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engines/disc/ReadingDrive.h"
#include "engines/ripper/Checksums.h"
#include "ports/Mp3Stream.h"
#include "runtime/Paths.h"

namespace trackloom::engines::ripper {

/// The codes of RipStatus that end a track, beside those of ReadTrouble.
namespace status {
inline constexpr std::int32_t whole = 0;
inline constexpr std::int32_t readFailed = 4;
inline constexpr std::int32_t progress = 7;
inline constexpr std::int32_t aborted = 8;
inline constexpr std::int32_t noBuffer = 9;
inline constexpr std::int32_t cannotCreate = 10;
inline constexpr std::int32_t cannotWrite = 11;
inline constexpr std::int32_t cannotClose = 12;
inline constexpr std::int32_t noDrive = 13;
inline constexpr std::int32_t cancelled = 14;
}  // namespace status

/// Thrown by whatever keeps a track from becoming a whole file.
struct TrackFailed {
  std::int32_t code = status::aborted;
};

/// One track of a rip and the file it is to become.
struct RipTrack {
  std::int16_t number = 0;
  HostPath target;
  std::int32_t callerNumber = 0;
  ContentsTrack place;
  TrackPlace among;
};

/// All that a rip is, copied when it starts.
struct RipRequest {
  std::shared_ptr<ReadingDrive> drive;
  std::int16_t speed = 0;
  DiscContents contents;
  std::vector<RipTrack> tracks;
  /// Null: WAV files. To be used under the board's lock alone, since it may go when the rip is cancelled.
  Mp3Stream* encoder = nullptr;
  std::int32_t kbps = 0;
  /// In samples.
  std::int32_t readOffset = 0;
  bool log = false;
  /// Workers at most.
  unsigned cores = 1;
};

}  // namespace trackloom::engines::ripper
