#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "engines/audio/FrameSource.h"
#include "engines/ground/Source.h"

namespace trackloom::engines::audio {

/// The count of stereo frames that a RIFF/WAVE file really holds, also where it was cut short or its header tells no
/// true size. Nothing: not 44,100 Hz in two channels as PCM of 16, 24 or 32 bits or 32-bit float, or no frame at all.
/// Throws EngineError when the file can't be read.
std::optional<SoundLength> wavLength(SourceReading& reading);

/// The sound of a WAV file: 16-bit samples as they are, all others rounded to the nearest 16-bit step and clipped.
/// Throws EngineError.
std::unique_ptr<FrameSource> openWav(std::unique_ptr<SourceReading> reading);

}  // namespace trackloom::engines::audio
