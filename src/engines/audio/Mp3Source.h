#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "engines/audio/FrameSource.h"
#include "engines/ground/Source.h"

namespace trackloom::engines::audio {

/// Nothing: not an MP3 file for a disc. Throws EngineError when the file can't be read.
std::optional<SoundLength> mp3Length(SourceReading& reading, Proof proof);

/// The decoded MP3 file without the encoder's silence at either end, where its header tells how long that is. Throws
/// EngineError.
std::unique_ptr<FrameSource> openMp3(std::unique_ptr<SourceReading> reading);

}  // namespace trackloom::engines::audio
