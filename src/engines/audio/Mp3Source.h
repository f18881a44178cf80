#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "engines/audio/FrameSource.h"
#include "engines/audio/OpenedFile.h"

namespace trackloom::engines::audio {

/// The exact count of stereo frames that an MP3 file plays: the one its header announces where that fits the file, else
/// one counted frame by frame. Nothing: not an MP3 file for a disc. Throws RuntimeError when the file can't be read.
std::optional<std::int64_t> mp3Frames(const OpenedFile& file);

/// The decoded MP3 file, without the encoder's silence at either end where its header tells how long that is. A damaged
/// stretch that the decoder can't cross ends the sound. Throws RuntimeError.
std::unique_ptr<FrameSource> openMp3(OpenedFile file);

}  // namespace trackloom::engines::audio
