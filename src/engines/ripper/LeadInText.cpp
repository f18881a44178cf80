#include "engines/ripper/LeadInText.h"

#include <cdio/cdtext.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace trackloom::engines::ripper {

namespace {

constexpr std::size_t HeadBytes = 4;
constexpr std::size_t PackBytes = 18;

using Text = std::unique_ptr<cdtext_t, decltype(&cdtext_destroy)>;

/// Whole packs alone.
std::vector<std::uint8_t> packsOf(std::span<const std::uint8_t> reply) {
  if (reply.size() < HeadBytes) return {};
  const std::size_t told = (std::size_t{reply[0]} << 8U | reply[1]) + 2;
  const std::size_t end = std::clamp(told, HeadBytes, reply.size());
  const auto packs = reply.subspan(HeadBytes, (end - HeadBytes) / PackBytes * PackBytes);
  return {packs.begin(), packs.end()};
}

/// Blanks alone stand in the place of a name that there is not.
std::string fieldOf(const Text& text, cdtext_field_t field, std::size_t track) {
  const char* told = cdtext_get_const(text.get(), field, static_cast<track_t>(track));
  const std::string words = told == nullptr ? "" : told;
  return words.find_first_not_of(' ') == std::string::npos ? "" : words;
}

/// Track 0 stands for the disc.
DiscName nameOf(const Text& text, std::size_t track) {
  return {fieldOf(text, CDTEXT_FIELD_TITLE, track), fieldOf(text, CDTEXT_FIELD_PERFORMER, track)};
}

}  // namespace

DiscText textFrom(std::span<const std::uint8_t> reply, std::size_t tracks) {
  std::vector<std::uint8_t> packs = packsOf(reply);
  const Text text(cdtext_init(), &cdtext_destroy);
  if (packs.empty() || !text || cdtext_data_init(text.get(), packs.data(), packs.size()) != 0) return {};
  DiscText names{nameOf(text, 0), {}};
  for (std::size_t track = 1; track <= tracks; ++track) names.tracks.push_back(nameOf(text, track));
  return names;
}

}  // namespace trackloom::engines::ripper
