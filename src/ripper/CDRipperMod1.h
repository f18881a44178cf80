#pragma once

#include <cstdint>
#include <string>

#include "runtime/FixedText.h"

namespace trackloom {

/// How the files of a rip are named; any other number names them like Custom.
enum RipNaming : std::int16_t { NameOfList = 1, ArtistAndName = 2, AlbumAndName = 3, CustomName = 4 };

/// What the ripper's windows share, for as long as the program runs.
struct CDRipperMod1 {
  /// With its trailing separator; empty: no rip is to be.
  std::string RipFolder;
  std::string RipCustomName;
  bool RipToMP3 = false;
  /// In kbps.
  std::int16_t RipBitRate = 0;
  std::int16_t RipNameMethod = 0;

  // Of the disc that the database knew last; a disc that it does not know clears the artist alone.
  FixedText<30> DiscArtist;
  FixedText<30> DiscAlbum;
  FixedText<4> DiscYear;
  /// A row of the table of genres.
  std::uint8_t DiscGenre = 0;
};

}  // namespace trackloom
