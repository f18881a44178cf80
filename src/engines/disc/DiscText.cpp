#include "engines/disc/DiscText.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "runtime/Text.h"

namespace trackloom::engines {

namespace {

/// A block of CD-TEXT has 256 packs of 12 characters, of which a few tell of the block itself.
constexpr std::size_t Room = 3000;

template <class Deed>
void forEachText(DiscText& text, const Deed& deed) {
  deed(text.disc.title);
  deed(text.disc.performer);
  for (DiscName& track : text.tracks) {
    deed(track.title);
    deed(track.performer);
  }
}

/// With the sign that ends each text, which also one that is empty has.
std::size_t sizeOf(DiscText text) {
  std::size_t size = 0;
  forEachText(text, [&](const std::string& name) { size += Len(name) + 1; });
  return size;
}

std::string withoutControls(std::string name) {
  std::erase_if(name, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
  return Trim(name);
}

}  // namespace

DiscText fitted(DiscText text) {
  forEachText(text, [](std::string& name) { name = withoutControls(displayText(name)); });
  for (DiscName& track : text.tracks)
    if (track.performer == text.disc.performer) track.performer.clear();
  for (const std::size_t units : std::array<std::size_t, 5>{160, 80, 40, 20, 10}) {
    forEachText(text, [&](std::string& name) { name = Trim(Left(name, units)); });
    if (sizeOf(text) <= Room) break;
  }
  return text;
}

}  // namespace trackloom::engines
