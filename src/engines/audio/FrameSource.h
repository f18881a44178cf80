#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace trackloom::engines::audio {

inline constexpr std::size_t ChannelCount = 2;

/// A sound file as a stream of stereo frames at 44,100 Hz, the left sample of each frame before the right one.
class FrameSource {
 public:
  virtual ~FrameSource() = default;

  /// Fills `samples`, whose length is even, from its start on; the samples filled, 0 when the sound is over. Throws
  /// RuntimeError when the file can no longer be read.
  virtual std::size_t read(std::span<std::int16_t> samples) = 0;
};

}  // namespace trackloom::engines::audio
