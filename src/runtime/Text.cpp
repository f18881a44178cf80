#include "runtime/Text.h"

#include <unicase.h>

#include <cstdint>

namespace trackloom {

namespace {

/// One character of a text: its code point and how many bytes it takes; a stray byte has no code point.
struct Character {
  std::size_t bytes = 1;
  std::int32_t code = -1;
  std::size_t units() const { return code > 0xFFFF ? 2 : 1; }
};

bool isContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

/// Well-formed byte sequences as in the Unicode Standard, table 3-7.
bool isWellFormed(std::int32_t code, std::size_t bytes) {
  constexpr std::int32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  return code >= smallest[bytes] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

Character characterAt(std::string_view text, std::size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  if (first < 0x80) return {1, first};
  const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || at + bytes > text.size()) return {};
  std::int32_t code = first & (0xFF >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    const auto next = static_cast<unsigned char>(text[at + i]);
    if (!isContinuation(next)) return {};
    code = (code << 6) | (next & 0x3F);
  }
  return isWellFormed(code, bytes) ? Character{bytes, code} : Character{};
}

void appendUtf8(std::string& text, std::int32_t code) {
  const auto put = [&](std::int32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0 | (code >> 6));
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
  } else {
    put(0xF0 | (code >> 18));
    put(0x80 | ((code >> 12) & 0x3F));
    put(0x80 | ((code >> 6) & 0x3F));
  }
  put(0x80 | (code & 0x3F));
}

/// Windows-1252 as published by Unicode (mappings of vendors, CP1252); the five free places stand for themselves.
constexpr std::int32_t windows1252[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                          0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

}  // namespace

std::string RTrim(std::string_view text) {
  const auto last = text.find_last_not_of(' ');
  return std::string(last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1));
}

std::string Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : RTrim(text.substr(first));
}

std::size_t Len(std::string_view text) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    units += character.units();
    at += character.bytes;
  }
  return units;
}

std::string Left(std::string_view text, std::size_t units) {
  std::size_t at = 0;
  while (at < text.size()) {
    const Character character = characterAt(text, at);
    if (character.units() > units) break;
    units -= character.units();
    at += character.bytes;
  }
  return std::string(text.substr(0, at));
}

std::string Right(std::string_view text, std::size_t units) {
  std::size_t skip = Len(text);
  std::size_t at = 0;
  while (at < text.size() && skip > units) {
    const Character character = characterAt(text, at);
    skip -= character.units();
    at += character.bytes;
  }
  return std::string(text.substr(at));
}

std::string UCase(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    if (character.code < 0)
      result += text[at];
    else
      appendUtf8(result, static_cast<std::int32_t>(::uc_toupper(static_cast<ucs4_t>(character.code))));
    at += character.bytes;
  }
  return result;
}

bool isValidUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    if (character.code < 0) return false;
    at += character.bytes;
  }
  return true;
}

std::string displayText(std::string_view text) {
  if (isValidUtf8(text)) return std::string(text);
  std::string shown;
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    appendUtf8(shown, value >= 0x80 && value < 0xA0 ? windows1252[value - 0x80] : value);
  }
  return shown;
}

}  // namespace trackloom
