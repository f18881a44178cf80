#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace trackloom::engines::audio {

using Bytes = std::span<const std::uint8_t>;

inline constexpr std::size_t HeaderSize = 4;           // bytes
inline constexpr std::size_t FreeFrameLimit = 3456;    // bytes; the longest that libmpg123 reads
inline constexpr std::int64_t SamplesPerFrame = 1152;  // of each channel

/// The header of a frame, as far as it tells the frame's length (ISO/IEC 11172-3, 2.4.1.3).
struct FrameHeader {
  std::size_t kilobits = 0;  ///< per second; 0 is free format
  std::size_t padding = 0;   ///< bytes, 0 or 1

  bool isFree() const { return kilobits == 0; }
  /// In bytes; `freeSize` is the length of a free-format frame without padding, 0 in a stream of the other kind.
  /// Nothing: the frame does not belong into the stream.
  std::optional<std::size_t> size(std::size_t freeSize) const;
};

/// Only what the disc can take counts as a frame, MPEG-1 layer III at 44,100 Hz in two channels, so that a stream of
/// another kind is no stream at all.
std::optional<FrameHeader> headerAt(Bytes bytes, std::size_t at);

/// Four headers in a row, each where the one before says, are proof of a first frame; two are enough where `bytes` end
/// behind them. The free-format size of the stream, 0 for the usual kind; nothing: no stream begins at `at`.
std::optional<std::size_t> streamBeginsAt(Bytes bytes, std::size_t at);

}  // namespace trackloom::engines::audio
