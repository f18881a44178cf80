#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "engines/ground/SourceFile.h"

namespace trackloom::engines::audio {

/// Where the sound of an MP3 file lies between the tags at its start and at its end, and what of it is the encoder's.
struct Mp3Extent {
  std::int64_t begin = 0;    ///< bytes from the file's start to the first frame of sound
  std::int64_t end = 0;      ///< bytes from the file's start to what follows the last frame
  std::size_t freeSize = 0;  ///< bytes of a free-format frame without padding, 0 for the usual kind
  /// Samples of each channel that the encoder put before and behind the sound, with the decoder's own delay.
  std::int64_t before = 0;
  std::int64_t behind = 0;
  /// Frames of MPEG, where the stream opens with a header that tells them and fits the size of the file.
  std::optional<std::int64_t> announced;

  /// Stereo frames of sound in so many frames of MPEG; at most 0 where nothing is left.
  std::int64_t soundIn(std::int64_t frames) const;
};

/// Looks for MPEG-1 layer III at 44,100 Hz in two channels (ISO/IEC 11172-3, 2.4.1.3), behind any ID3v2 tag and up to
/// 64 KiB of anything else. Nothing: there is no such stream. Reads a few KiB, however large the tags are. Throws
/// EngineError.
std::optional<Mp3Extent> findMp3(const SourceFile& file);

}  // namespace trackloom::engines::audio
