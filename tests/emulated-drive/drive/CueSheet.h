#pragma once

#include <cstdint>
#include <vector>

#include "Bytes.h"
#include "Disc.h"

namespace emulated {

/// A stretch of a session laid out by a cue sheet; `end` is the first block behind it.
struct CueSegment {
  std::int32_t begin = 0;
  std::int32_t end = 0;
  std::int32_t track = 0;
  std::int32_t index = 0;
  std::uint8_t control = 0;
  Kind kind = Kind::Audio;
  /// The host sends its blocks; else the drive makes empty ones.
  bool fromHost = true;
};

/// The layout of a session written at once (MMC-3, 6.33).
struct CueSheet {
  std::vector<CueSegment> segments;
  std::int32_t leadOut = 0;
  /// The host sends the R to W sub-channels of the lead-in.
  bool textInLeadIn = false;

  std::int32_t begin() const { return segments.front().begin; }
  /// nullptr: the block is none of the session's.
  const CueSegment* segmentAt(std::int32_t block) const;
  std::vector<Track> tracks() const;
};

/// Throws CheckCondition where the sheet makes no sense, does not go on where this disc ends, does not fit on it, or
/// has a track of fewer than `shortest` blocks.
CueSheet cueSheetFrom(View sent, const Disc& disc, std::int32_t shortest);

}  // namespace emulated
