#pragma once

#include <string>

#include "runtime/Paths.h"

namespace trackloom::engines::audio {

/// What a file says of its music, in UTF-8, with whatever stands there; empty: nothing.
struct SoundTags {
  std::string title;
  std::string artist;
  std::string album;
};

/// The tags of an MP3 file (ID3v2, else ID3v1). All else, and what cannot be read, has none.
SoundTags tagsOf(const HostPath& path);

}  // namespace trackloom::engines::audio
