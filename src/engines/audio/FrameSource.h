#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace trackloom::engines::audio {

inline constexpr std::size_t ChannelCount = 2;

/// How many stereo frames a file plays.
struct SoundLength {
  std::int64_t frames = 0;
  /// Decoding gives just as many; else it is what the file's header says.
  bool proven = false;
};

/// What a length may rest on: a header is quick, and may lie.
enum class Proof : std::uint8_t { Header, EveryFrame };

/// The sound of a file as stereo frames at 44,100 Hz, the left sample of each frame before the right one. It is as long
/// as it was measured to be, or an error.
class FrameSource {
 public:
  FrameSource() = default;
  FrameSource(const FrameSource&) = delete;
  FrameSource& operator=(const FrameSource&) = delete;
  virtual ~FrameSource() = default;

  /// Fills all of `samples`, whose length is even and within what is left. Throws EngineError when the file can no
  /// longer be read or holds less than it should.
  virtual void read(std::span<std::int16_t> samples) = 0;
  /// To be called behind the last frame: throws EngineError when there is more, or when what was read may not be one
  /// content.
  virtual void finish() = 0;
};

}  // namespace trackloom::engines::audio
