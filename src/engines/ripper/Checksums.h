#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace trackloom::engines::ripper {

/// Where a track stands among the audio tracks of its disc.
struct TrackPlace {
  bool first = false;
  bool last = false;
};

/// Sums of a track's sound, by which a rip is compared with others' rips of the same disc: CRC-32 (ITU-T V.42) over all
/// bytes, and both published sums of AccurateRip, which leave out the first 2,939 samples of a disc's first track and
/// the last 2,940 of its last one.
class Checksums {
 public:
  /// `sectors`: the track's length.
  Checksums(TrackPlace place, std::int32_t sectors);

  /// Whole samples, in order.
  void add(std::span<const std::byte> sound);

  std::uint32_t crc32() const { return crc_; }
  std::uint32_t accurateRip1() const { return low_; }
  std::uint32_t accurateRip2() const { return low_ + high_; }

 private:
  std::uint64_t firstCounted_ = 1;
  std::uint64_t lastCounted_;
  std::uint64_t position_ = 0;
  std::uint32_t crc_ = 0;
  std::uint32_t low_ = 0;
  std::uint32_t high_ = 0;
};

}  // namespace trackloom::engines::ripper
