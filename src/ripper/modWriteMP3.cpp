#include "ripper/modWriteMP3.h"

#include <array>

#include "runtime/Files.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr std::array<const char*, 149> Genres{"Blues",
                                              "Classic Rock",
                                              "Country",
                                              "Dance",
                                              "Disco",
                                              "Funk",
                                              "Grunge",
                                              "Hip-Hop",
                                              "Jazz",
                                              "Metal",
                                              "New Age",
                                              "Oldies",
                                              "Other",
                                              "Pop",
                                              "R&B",
                                              "Rap",
                                              "Reggae",
                                              "Rock",
                                              "Techno",
                                              "Industrial",
                                              "Alternative",
                                              "Ska",
                                              "Death Metal",
                                              "Pranks",
                                              "Soundtrack",
                                              "Euro-Techno",
                                              "Ambient",
                                              "Trip-Hop",
                                              "Vocal",
                                              "Jazz+Funk",
                                              "Fusion",
                                              "Trance",
                                              "Classical",
                                              "Instrumental",
                                              "Acid",
                                              "House",
                                              "Game",
                                              "Sound Clip",
                                              "Gospel",
                                              "Noise",
                                              "Rock",
                                              "Alt",
                                              "Bass",
                                              "Soul",
                                              "Punk",
                                              "Space",
                                              "Meditative",
                                              "Instrumental Pop",
                                              "Instrumental Rock",
                                              "Ethnic",
                                              "Gothic",
                                              "Darkwave",
                                              "Techno-Industrial",
                                              "Electronic",
                                              "Pop-Folk",
                                              "Eurodance",
                                              "Dream",
                                              "Southern Rock",
                                              "Comedy",
                                              "Cult",
                                              "Gangsta Rap",
                                              "Top 40",
                                              "Christian Rap",
                                              "Pop/Funk",
                                              "Jungle",
                                              "Native American",
                                              "Cabaret",
                                              "New Wave",
                                              "Psychedelic",
                                              "Rave",
                                              "Showtunes",
                                              "Trailer",
                                              "Lo-Fi",
                                              "Tribal",
                                              "Acid Punk",
                                              "Acid Jazz",
                                              "Polka",
                                              "Retro",
                                              "Musical",
                                              "Rock & Roll",
                                              "Hard Rock",
                                              "Folk",
                                              "Folk/Rock",
                                              "National Folk",
                                              "Swing",
                                              "Fast-Fusion",
                                              "Bebob",
                                              "Latin",
                                              "Revival",
                                              "Celtic",
                                              "Bluegrass",
                                              "Avantgarde",
                                              "Gothic Rock",
                                              "Progressive Rock",
                                              "Psychedelic Rock",
                                              "Symphonic Rock",
                                              "Slow Rock",
                                              "Big Band",
                                              "Chorus",
                                              "Easy Listening",
                                              "Acoustic",
                                              "Humour",
                                              "Speech",
                                              "Chanson",
                                              "Opera",
                                              "Chamber Music",
                                              "Sonata",
                                              "Symphony",
                                              "Booty Bass",
                                              "Primus",
                                              "Porn Groove",
                                              "Satire",
                                              "Slow Jam",
                                              "Club",
                                              "Tango",
                                              "Samba",
                                              "Folklore",
                                              "Ballad",
                                              "Power Ballad",
                                              "Rhythmic Soul",
                                              "Freestyle",
                                              "Duet",
                                              "Punk Rock",
                                              "Drum Solo",
                                              "A Cappella",
                                              "Euro-House",
                                              "Dance Hall",
                                              "Goa",
                                              "Drum & Bass",
                                              "Club-House",
                                              "Hardcore",
                                              "Terror",
                                              "Indie",
                                              "BritPop",
                                              "Negerpunk",
                                              "Polsk Punk",
                                              "Beat",
                                              "Christian Gangsta Rap",
                                              "Heavy Metal",
                                              "Black Metal",
                                              "Crossover",
                                              "Contemporary Christian",
                                              "Christian Rock",
                                              "Merengue",
                                              "Salsa",
                                              "Thrash Metal",
                                              "Anime",
                                              "JPop",
                                              "Synthpop"};

std::string bytesOf(const ID3Tag& tag) {
  std::string bytes = "TAG";
  for (const std::string& text :
       {tag.Title.get(), tag.Artist.get(), tag.Album.get(), tag.Year.get(), tag.Comment.get()})
    bytes += toWindows1252(text);
  return bytes + static_cast<char>(tag.Genre);
}

}  // namespace

std::string GenreName(std::uint8_t index) {
  return index < Genres.size() ? Genres[index] : "";
}

std::uint8_t GenreIndexFromName(std::string_view name) {
  const std::string wanted = UCase(Trim(name));
  // One step behind the table, where an empty name finds its like.
  for (std::uint8_t index = 0; index <= Genres.size(); ++index)
    if (UCase(GenreName(index)) == wanted) return index;
  return NoGenre;
}

void WriteID3Tag(const ID3Tag& tag, const HostPath& path) {
  try {
    WriteEnd(path, bytesOf(tag));
  } catch (const RuntimeError&) {
    // The rip goes on with the next track, and nobody is told.
    return;
  }
}

}  // namespace trackloom
