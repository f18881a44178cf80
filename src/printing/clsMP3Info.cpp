#include "printing/clsMP3Info.h"

#include <algorithm>
#include <string_view>

#include "model/Session.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr std::size_t TagSize = 128;
constexpr std::size_t FieldSize = 30;
constexpr std::size_t TitlePlace = 3;
constexpr std::size_t ArtistPlace = 33;

bool isPlain(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The field without the bytes of a last character that did not wholly fit.
std::string_view withoutCutCharacter(std::string_view field) {
  const auto start = std::find_if_not(field.rbegin(), field.rend(), continuesCharacter);
  if (start == field.rend() || isValidUtf8(field.substr(static_cast<std::size_t>(field.rend() - start) - 1)))
    return field;
  return field.substr(0, static_cast<std::size_t>(field.rend() - start) - 1);
}

/// UTF-8 only where a whole character of several bytes says so: a single byte beyond ASCII is one of the code page.
std::string decoded(std::string_view field) {
  const std::string_view whole = withoutCutCharacter(field);
  const bool utf8 = isValidUtf8(whole) && !std::all_of(whole.begin(), whole.end(), isPlain);
  return utf8 ? std::string(whole) : displayText(field);
}

}  // namespace

void clsMP3Info::SetFileName(const HostPath& path) {
  fileName_ = path;
  title_.clear();
  artist_.clear();
  if (readTag()) return;
  title_ = artist_ = "Unknown";
  session_.mod.TagsMissing = true;
}

bool clsMP3Info::readTag() {
  try {
    std::string tag = session_.ports.folders.endOf(fileName_, TagSize);
    if (!tag.starts_with("TAG")) return false;
    // The file may have become shorter since its end was looked for.
    tag.resize(TagSize);
    title_ = decoded(std::string_view(tag).substr(TitlePlace, FieldSize));
    artist_ = decoded(std::string_view(tag).substr(ArtistPlace, FieldSize));
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

std::string clsMP3Info::Title() const {
  return Trim(title_);
}

std::string clsMP3Info::Artist() const {
  return Trim(artist_);
}

}  // namespace trackloom
