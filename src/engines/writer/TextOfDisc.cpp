#include "engines/writer/TextOfDisc.h"

#include <algorithm>
#include <string>

namespace trackloom::engines::writer {

namespace {

using audio::SoundTags;

/// Empty: they differ.
std::string shared(const std::vector<SoundTags>& tracks, std::string SoundTags::*field) {
  const std::string& first = tracks.front().*field;
  return std::ranges::all_of(tracks, [&](const SoundTags& track) { return track.*field == first; }) ? first : "";
}

bool saysAnything(const SoundTags& track) {
  return !track.title.empty() || !track.artist.empty();
}

}  // namespace

DiscText textOfDisc(const std::vector<SoundTags>& tracks) {
  DiscText text;
  if (std::ranges::none_of(tracks, saysAnything)) return text;
  text.disc = {shared(tracks, &SoundTags::album), shared(tracks, &SoundTags::artist)};
  for (const SoundTags& track : tracks) text.tracks.push_back({track.title, track.artist});
  return fitted(text);
}

}  // namespace trackloom::engines::writer
