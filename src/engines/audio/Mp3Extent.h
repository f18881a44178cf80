#pragma once

#include <cstdint>
#include <optional>

#include "engines/audio/OpenedFile.h"

namespace trackloom::engines::audio {

/// Where the sound of an MP3 file lies between the tags at its start and at its end.
struct Mp3Extent {
  std::int64_t begin = 0;  ///< bytes from the file's start to the first frame
  std::int64_t end = 0;    ///< bytes from the file's start to what follows the last frame
  /// Stereo frames of sound, where the stream opens with a header that tells them and fits the size of the file.
  std::optional<std::int64_t> announcedFrames;
};

/// Looks for MPEG-1 layer III at 44,100 Hz in two channels (ISO/IEC 11172-3, 2.4.1.3), behind any ID3v2 tag and up to
/// 64 KiB of anything else. Nothing: there is no such stream. Reads a few KiB, however large the tags are. Throws
/// RuntimeError.
std::optional<Mp3Extent> findMp3(const OpenedFile& file);

}  // namespace trackloom::engines::audio
