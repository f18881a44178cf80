#include "engines/libburn/CdText.h"

#include <algorithm>
#include <string>

#include "runtime/Text.h"

namespace trackloom::engines::libburn {

namespace {

constexpr int onlyBlock = 0;
constexpr int titlePack = 0x80;
constexpr int performerPack = 0x81;
constexpr char unknownSign = '?';

/// Quotes and dashes of print have no place in the character set, but simpler likes; what has none becomes "?".
char inLatin1(char sign) {
  switch (static_cast<unsigned char>(sign)) {
    case 0x91:
    case 0x92:
      return '\'';
    case 0x93:
    case 0x94:
      return '"';
    case 0x96:
    case 0x97:
      return '-';
    default:
      return static_cast<unsigned char>(sign) >= 0x80 && static_cast<unsigned char>(sign) < 0xA0 ? unknownSign : sign;
  }
}

std::string latin1(const std::string& name) {
  std::string signs = toWindows1252(name);
  std::ranges::transform(signs, signs.begin(), inLatin1);
  return signs;
}

/// The names of one kind: of the disc, and of each of its tracks.
struct Names {
  int pack;
  std::string disc;
  std::vector<std::string> tracks;

  bool any() const {
    return !disc.empty() || std::ranges::any_of(tracks, [](const std::string& name) { return !name.empty(); });
  }
};

Names titlesOf(const DiscText& text) {
  Names names{titlePack, latin1(text.disc.title), {}};
  for (const DiscName& track : text.tracks) names.tracks.push_back(latin1(track.title));
  return names;
}

/// A track without a performer of its own has the disc's, since players show no other.
Names performersOf(const DiscText& text) {
  Names names{performerPack, latin1(text.disc.performer), {}};
  for (const DiscName& track : text.tracks)
    names.tracks.push_back(latin1(track.performer.empty() ? text.disc.performer : track.performer));
  return names;
}

/// The library takes a name with the zero that ends it, and copies it.
unsigned char* bytesOf(std::string& name) {
  return reinterpret_cast<unsigned char*>(name.data());
}

int lengthOf(const std::string& name) {
  return static_cast<int>(name.size()) + 1;
}

/// Where one has a name all have, if only a blank: names are told by their order, and some readers lose count at an
/// empty one.
void set(burn::burn_session* session, const std::vector<OwnedTrack>& tracks, Names names) {
  if (!names.any()) return;
  names.tracks.resize(tracks.size());
  std::ranges::replace(names.tracks, std::string(), std::string(" "));
  if (names.disc.empty()) names.disc = " ";
  burn::burn_session_set_cdtext(session, onlyBlock, names.pack, nullptr, bytesOf(names.disc), lengthOf(names.disc), 0);
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    std::string& name = names.tracks[i];
    burn::burn_track_set_cdtext(tracks[i].get(), onlyBlock, names.pack, nullptr, bytesOf(name), lengthOf(name), 0);
  }
}

}  // namespace

void nameSession(burn::burn_session* session, const std::vector<OwnedTrack>& tracks, const DiscText& text) {
  set(session, tracks, titlesOf(text));
  set(session, tracks, performersOf(text));
}

}  // namespace trackloom::engines::libburn
