#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "engines/audio/FrameSource.h"
#include "engines/audio/OpenedFile.h"

namespace trackloom::engines::audio {

/// The count of stereo frames that a RIFF/WAVE file really holds, also where it was cut short or its header tells no
/// true size. Nothing: not 44,100 Hz in two channels as PCM of 16, 24 or 32 bits or 32-bit float, or no frame at all.
std::optional<std::int64_t> wavFrames(const OpenedFile& file);

/// The sound of a WAV file: 16-bit samples as they are, all others rounded to the nearest 16-bit step and clipped.
/// Throws RuntimeError.
std::unique_ptr<FrameSource> openWav(OpenedFile file);

}  // namespace trackloom::engines::audio
