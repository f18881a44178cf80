#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace trackloom::engines::writer {

/// Thrown out of a running operation that nobody waits for any more.
struct Stopped {};

/// The sectors of a disc's tracks in the order they are written. Used by one thread.
class SectorSource {
 public:
  virtual ~SectorSource() = default;

  /// Fills all of `sectors`, which the caller keeps within what is left, waiting where it must. Throws RuntimeError
  /// when the content can no longer be read, Stopped when the operation was stopped meanwhile.
  virtual void read(std::span<std::byte> sectors) = 0;
  /// How full the buffer is that this source reads ahead into.
  virtual std::int16_t bufferPercent() = 0;
};

}  // namespace trackloom::engines::writer
