#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ports/CDWriterXP.h"

namespace trackloom::engines {

/// Bytes of one audio sector (IEC 60908, 98 frames of 24 bytes) and of the user data of one data sector (ECMA-130, mode
/// 1).
inline constexpr std::size_t audioSectorBytes = 2352;
inline constexpr std::size_t dataSectorBytes = 2048;

/// Blocks that pass in a second at the base speed.
inline constexpr std::int32_t blocksASecond = 75;
/// Kilobytes of sound that pass in a second at it, as drives count their speeds (MMC-3, 5.5.10).
inline constexpr std::int32_t kilobytesAtBaseSpeed = 176;
/// Silence before a track (IEC 60908: two seconds), and what a look at a disc reckons with.
inline constexpr std::int32_t standardPause = 150;
/// A disc has at most 99 tracks (IEC 60908, track numbers 01 to 99).
inline constexpr std::size_t mostTracks = 99;
/// No address behind 99:59:74 can be written down in minutes, seconds and frames, the lead-in's two seconds included.
inline constexpr std::int32_t mostBlocks = 449849;

inline constexpr std::size_t bytesOfSector(BlockKind kind) {
  return kind == AudioBlocks ? audioSectorBytes : dataSectorBytes;
}

/// The nearest value that 32 bits can hold.
std::int32_t saturated(std::int64_t value);

/// A count below 0 is 0 bytes, and what 32 bits cannot hold is 2,147,483,647. Every kind but audio counts as data.
std::int32_t bytesOfBlocks(std::int32_t blocks, std::int32_t kind);

/// `MM:SS:FF` with FF in frames of 1/75 second; a count below 0 is "00:00:00".
std::string timeOfBlocks(std::int32_t blocks);

}  // namespace trackloom::engines
