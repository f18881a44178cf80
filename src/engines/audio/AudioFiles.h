#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "engines/ground/Source.h"
#include "runtime/Paths.h"

namespace trackloom::engines::audio {

/// One audio file as the sectors of a disc: 16-bit little-endian stereo at 44,100 Hz, 588 frames to a block, the last
/// block filled up with silence.
class AudioStream {
 public:
  virtual ~AudioStream() = default;

  virtual std::int32_t blocks() const = 0;
  /// Fills as many whole sectors of 2352 bytes as `sectors` holds and the stream still has; the bytes filled, 0 at the
  /// end. Throws EngineError when the file can no longer be read, ends before its measured length, or may not have been
  /// one content from the first sector to the last; the last sector is not given out then.
  virtual std::size_t read(std::span<std::byte> sectors) = 0;
};

/// A file as it was found, and its length then. That may rest on the file's own header.
struct FoundSound {
  std::shared_ptr<Source> source;
  std::int32_t blocks = 0;
};

/// The audio files of the machine, measured once each and shared by all engine instances. Safe from any thread. A file
/// that was changed since, as what the system notes of it tells, is measured anew. Kinds are told by contents, never by
/// name: MPEG-1 layer III, and RIFF/WAVE as PCM of 16, 24 or 32 bits or 32-bit float, both at 44,100 Hz in two
/// channels.
class AudioFiles {
 public:
  AudioFiles();
  ~AudioFiles();
  AudioFiles(const AudioFiles&) = delete;
  AudioFiles& operator=(const AudioFiles&) = delete;

  /// Nothing: not a 44.1 kHz stereo MP3 or WAV file, or not readable.
  std::optional<FoundSound> find(const HostPath& path);
  /// The length of find().
  std::optional<std::int32_t> blocks(const HostPath& path);

  /// Opens the file and proves its length by every frame of it, where that was not done before: what decoding it will
  /// give. blocks() tells it too from then on. Throws EngineError when the file is refused, or is not what was found.
  std::int32_t provenBlocks(const std::shared_ptr<Source>& source);
  /// The sound, of proven length. Throws like provenBlocks().
  std::unique_ptr<AudioStream> open(const std::shared_ptr<Source>& source);
  /// A file that nobody queued, as it is now.
  std::unique_ptr<AudioStream> open(const HostPath& path);

 private:
  class Cache;
  std::unique_ptr<Cache> cache_;
};

}  // namespace trackloom::engines::audio
