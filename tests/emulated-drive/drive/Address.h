#pragma once

#include <cstdint>

#include "Bytes.h"

namespace emulated {

inline constexpr std::int32_t blocksPerSecond = 75;
/// Silence or empty blocks before the first block of each track.
inline constexpr std::int32_t pregapBlocks = 150;
/// Addresses from here on stand for the lead-in of the first session, which lies before block -150.
inline constexpr std::int32_t firstLeadInMinute = 90;

/// A position on the disc in minutes, seconds and frames; block 0 is 00:02:00 (MMC-3, 4.2.3).
struct Msf {
  std::uint32_t minute = 0;
  std::uint32_t second = 0;
  std::uint32_t frame = 0;

  std::uint32_t packed() const { return minute << 16U | second << 8U | frame; }
};

inline std::int32_t blockOf(const Msf& at) {
  const auto frames = static_cast<std::int32_t>((at.minute * 60 + at.second) * blocksPerSecond + at.frame);
  const bool leadIn = at.minute >= static_cast<std::uint32_t>(firstLeadInMinute);
  return frames - pregapBlocks - (leadIn ? 450000 : 0);
}

inline Msf msfOf(std::int32_t block) {
  const auto frames = static_cast<std::uint32_t>(block + pregapBlocks + (block < -pregapBlocks ? 450000 : 0));
  return {frames / 4500, frames / 75 % 60, frames % 75};
}

inline Msf msfAt(View bytes, std::size_t at) {
  return {bytes[at], bytes[at + 1], bytes[at + 2]};
}

}  // namespace emulated
