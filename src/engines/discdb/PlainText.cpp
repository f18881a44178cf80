#include "engines/discdb/PlainText.h"

#include "runtime/Text.h"

namespace trackloom::engines::discdb {

namespace {

unsigned at(std::string_view text, std::size_t place) {
  return place < text.size() ? static_cast<unsigned char>(text[place]) : 0;
}

/// The bytes of the unwanted character that stands there in a valid UTF-8 text; 0: a wanted one does.
std::size_t unwantedAt(std::string_view text, std::size_t place) {
  const unsigned first = at(text, place);
  const unsigned second = at(text, place + 1);
  const unsigned third = at(text, place + 2);
  if (first < 0x20 || first == 0x7F) return 1;
  if (first == 0xC2 && second < 0xA0) return 2;                                                  // U+0080 to U+009F
  const bool breaksOrTurns = first == 0xE2 && second == 0x80 && third >= 0xA8 && third <= 0xAE;  // U+2028 to U+202E
  const bool isolates = first == 0xE2 && second == 0x81 && third >= 0xA6 && third <= 0xA9;       // U+2066 to U+2069
  return breaksOrTurns || isolates ? 3 : 0;
}

}  // namespace

std::string plainText(std::string_view bytes) {
  const std::string text = displayText(bytes);
  std::string plain;
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t unwanted = unwantedAt(text, place);
    if (unwanted == 0) plain += text[place];
    place += unwanted == 0 ? 1 : unwanted;
  }
  return plain;
}

}  // namespace trackloom::engines::discdb
