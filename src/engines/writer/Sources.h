#pragma once

#include <memory>
#include <vector>

#include "engines/audio/AudioFiles.h"
#include "engines/writer/DataImage.h"
#include "engines/writer/Reader.h"

namespace trackloom::engines::writer {

/// What is wrong with a file that can be opened and is no track of an audio disc.
inline constexpr const char* noAudio = "not 44.1 kHz stereo sound, MP3 or WAV";

/// The files of an audio disc, in the order of its tracks.
SourceOpener audioSource(std::shared_ptr<audio::AudioFiles> files, std::vector<std::shared_ptr<Source>> tracks);

/// The image of a data disc; its padding gives way where the room is short.
SourceOpener dataSource(std::vector<DataEntry> entries, ImageTerms terms);

/// A finished image as it was noted.
SourceOpener finishedImage(std::shared_ptr<Source> image);

}  // namespace trackloom::engines::writer
