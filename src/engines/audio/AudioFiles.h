#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "runtime/Paths.h"

namespace trackloom::engines::audio {

/// One audio file as the sectors of a disc: 16-bit little-endian stereo at 44,100 Hz, 588 frames to a block, the last
/// block padded with silence. Gives exactly blocks() sectors, whatever the file turns out to hold.
class AudioStream {
 public:
  virtual ~AudioStream() = default;

  virtual std::int32_t blocks() const = 0;
  /// Fills as many whole sectors of 2352 bytes as `sectors` holds and the stream still has; the bytes filled, 0 at the
  /// end. Throws RuntimeError when the file can no longer be read.
  virtual std::size_t read(std::span<std::byte> sectors) = 0;
};

/// The audio files of the machine, measured once each and shared by all engine instances. Safe from any thread. A file
/// that was changed since, as its size, time, or inode tells, is measured anew. Kinds are told by contents, never by
/// name: MPEG-1 layer III, and RIFF/WAVE as PCM of 16, 24 or 32 bits or 32-bit float, both at 44,100 Hz in two
/// channels.
class AudioFiles {
 public:
  AudioFiles();
  ~AudioFiles();
  AudioFiles(const AudioFiles&) = delete;
  AudioFiles& operator=(const AudioFiles&) = delete;

  /// The exact length in blocks; nothing: not a 44.1 kHz stereo MP3 or WAV file, or not readable.
  std::optional<std::int32_t> blocks(const HostPath& path);

  /// Throws RuntimeError when the file is refused or has vanished.
  std::unique_ptr<AudioStream> open(const HostPath& path);

 private:
  class Cache;
  std::unique_ptr<Cache> cache_;
};

}  // namespace trackloom::engines::audio
