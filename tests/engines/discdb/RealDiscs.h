#pragma once

#include <vector>

#include "engines/discdb/DiscContents.h"

namespace trackloom::engines::discdb {

/// Discs that were sold, by their tables of contents: the places of their tracks and of the lead-out as the CDDB counts
/// them, from the lead-in's last two seconds on.
inline DiscContents discAt(std::vector<std::int32_t> offsets, std::int32_t leadOut) {
  for (std::int32_t& offset : offsets) offset -= 150;
  return {std::move(offsets), leadOut - 150, {}};
}

/// An audio disc of 13 tracks, 2734 seconds long, filed as 940aac0d.
inline DiscContents audioDisc() {
  return discAt({150, 15239, 29625, 45763, 61420, 75862, 91642, 108918, 123698, 139895, 153589, 169239, 188495},
                2734 * 75);
}

/// A disc of two sessions, ten audio tracks and one of data, filed as 9e11600b.
inline DiscContents enhancedDisc() {
  return discAt({150, 12767, 40487, 63225, 93410, 118115, 151865, 184340, 215260, 247455, 281735}, 333801);
}

/// A game with a data track in front of 28 audio tracks, filed as af0da31d.
inline DiscContents mixedDisc() {
  return discAt({150,    66728,  76502,  85963,  93760,  104048, 116066, 124743, 134206, 142916,
                 151852, 160720, 169425, 178731, 188459, 196711, 206354, 214845, 223686, 225746,
                 226384, 232668, 239447, 239931, 244989, 254264, 260066, 261222, 261674},
                261976);
}

}  // namespace trackloom::engines::discdb
