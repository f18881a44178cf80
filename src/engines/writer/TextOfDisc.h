#pragma once

#include <vector>

#include "engines/audio/SoundTags.h"
#include "engines/disc/DiscText.h"

namespace trackloom::engines::writer {

/// The text of a disc whose tracks are tagged so: what all of them share of artist and album is the disc's own. Nothing
/// at all where no file is tagged.
DiscText textOfDisc(const std::vector<audio::SoundTags>& tracks);

}  // namespace trackloom::engines::writer
