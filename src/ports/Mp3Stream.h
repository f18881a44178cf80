#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace trackloom {

/// The encoding of one track: sound goes in, in order, and the bytes of an MP3 file come out. To be used by one thread
/// at a time.
class Mp3Track {
 public:
  virtual ~Mp3Track() = default;

  /// Bytes to append to the file. `samples` are 44.1 kHz stereo frames, left and right in turn.
  virtual std::vector<std::byte> feed(std::span<const std::int16_t> samples) = 0;
  /// The last bytes of the file; nothing may be fed afterwards.
  virtual std::vector<std::byte> finish() = 0;
  /// What takes the place of the file's first frame once all is known: the Info header with lengths and delays.
  virtual std::vector<std::byte> infoFrame() = 0;
};

/// The inner object of the encoder, which the rip engine works with: tracks may be encoded side by side on any thread.
class Mp3Stream {
 public:
  virtual ~Mp3Stream() = default;

  /// What it gives does not need this stream any more. `kbps` holds for the whole track.
  virtual std::unique_ptr<Mp3Track> begin(std::int32_t kbps) = 0;
  /// The rate in kbps that is set now.
  virtual std::int32_t BitRate() = 0;
  /// The encoder and its version, for a report; empty: it does not tell.
  virtual std::string Words() { return {}; }
};

}  // namespace trackloom
