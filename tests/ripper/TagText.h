#pragma once

#include <string>
#include <utility>

namespace trackloom {

/// The tag at the end of a file's bytes, with its last byte apart as a number.
inline std::pair<std::string, int> tagOf(const std::string& bytes) {
  if (bytes.size() < 128) return {"", -1};
  return {bytes.substr(bytes.size() - 128, 127), static_cast<unsigned char>(bytes.back())};
}

/// The bytes of a tag up to its genre.
inline std::string tagText(std::string title, std::string artist = "", std::string album = "", std::string year = "") {
  title.resize(30, ' ');
  artist.resize(30, ' ');
  album.resize(30, ' ');
  year.resize(4, ' ');
  return "TAG" + title + artist + album + year + std::string(30, ' ');
}

}  // namespace trackloom
