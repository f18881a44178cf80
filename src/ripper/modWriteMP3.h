#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/FixedText.h"
#include "runtime/Paths.h"

namespace trackloom {

/// The tag of a file: ID3v1 with blanks for fill and no number of the track.
struct ID3Tag {
  FixedText<30> Title;
  FixedText<30> Artist;
  FixedText<30> Album;
  FixedText<4> Year;
  FixedText<30> Comment;
  std::uint8_t Genre = 0;
};

/// The table's own: no row has it.
inline constexpr std::uint8_t NoGenre = 255;

/// A row of the table of genres, empty behind the last. "Alt" stands between "Noise" and "Bass", so the rows from
/// "Bass" on have numbers one above those of other programs.
std::string GenreName(std::uint8_t index);
/// The first row of this name in any case, NoGenre where there is none.
std::uint8_t GenreIndexFromName(std::string_view name);

/// Writes the tag over the last 128 bytes of the file, whatever they are, in Windows-1252. What fails fails silently: a
/// shorter file stays as it is, a missing one comes into being empty.
void WriteID3Tag(const ID3Tag& tag, const HostPath& path);

}  // namespace trackloom
