#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace trackloom::engines {

/// Thrown out of a running operation that nobody waits for any more.
struct Stopped {};

/// The sectors of a write's tracks in the order in which they are written. Used by one thread at a time.
class SectorSource {
 public:
  SectorSource() = default;
  SectorSource(const SectorSource&) = delete;
  SectorSource& operator=(const SectorSource&) = delete;
  virtual ~SectorSource() = default;

  /// Makes ready for the sectors of a track, from 1: comes before the first of them is asked for, and for track 1
  /// before the disc is touched. Throws like read().
  virtual void beginTrack(std::int16_t /*track*/) {}
  /// Fills all of `sectors`, which the caller keeps within what is left of the track, waiting where it must. Throws
  /// EngineError when the content can no longer be read, and before the last sectors of a file are handed out that has
  /// changed since; Stopped when the operation was stopped meanwhile.
  virtual void read(std::span<std::byte> sectors) = 0;
  /// How full the buffer is that this source reads ahead into.
  virtual std::int16_t bufferPercent() = 0;
};

}  // namespace trackloom::engines
