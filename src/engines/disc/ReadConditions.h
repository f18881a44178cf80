#pragma once

#include <cstdint>
#include <optional>

#include "engines/ground/EngineError.h"

namespace trackloom::engines {

/// What a recorder, where it can be told so for a trial, lets happen while the sound of a disc is read. Sectors are
/// addresses on the disc.
struct ReadConditions {
  /// As fast as a real drive would; 0: as fast as it can.
  double sectorsPerSecond = 0;
  /// A sector that cannot be read, however often it is tried.
  std::optional<std::int32_t> unreadable;
  /// A sector that is read at the second try.
  std::optional<std::int32_t> retried;
  /// A sector whose place is not certain, and one for which the drive slows down; both are read all the same.
  std::optional<std::int32_t> jitter;
  std::optional<std::int32_t> slowed;
  /// A sector at which the drive hangs for as long as the recorder says so.
  std::optional<std::int32_t> hanging;
  /// The table of contents lists nothing, or cannot be had.
  bool noContents = false;
  std::optional<EngineError> contentsFailure;
};

}  // namespace trackloom::engines
