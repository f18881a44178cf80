#include "runtime/Text.h"

#include <unicase.h>
#include <unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace trackloom {

namespace {

/// One character of a text: its code point and how many bytes it takes; a stray byte has no code point.
struct Character {
  std::size_t bytes = 1;
  std::int32_t code = -1;
  bool isStray() const { return code == -1; }
  std::size_t units() const { return code > 0xFFFF ? 2 : 1; }
};

const std::uint8_t* unitsOf(std::string_view text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

Character characterAt(std::string_view text, std::size_t at) {
  ucs4_t code{};
  const int bytes = ::u8_mbtoucr(&code, unitsOf(text.substr(at)), text.size() - at);
  if (bytes < 1) return {};
  return {static_cast<std::size_t>(bytes), static_cast<std::int32_t>(code)};
}

bool isAscii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

char upperAscii(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

void appendUtf8(std::string& text, ucs4_t code) {
  std::array<std::uint8_t, 4> units{};
  const int count = ::u8_uctomb(units.data(), code, units.size());
  text.append(units.begin(), units.begin() + count);
}

/// Windows-1252 as published by Unicode (mappings of vendors, CP1252); the five free places stand for themselves.
constexpr ucs4_t windows1252[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                    0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

std::string windows1252Of(const Character& character) {
  const auto* const high = std::find(std::begin(windows1252), std::end(windows1252), character.code);
  if (high != std::end(windows1252)) return std::string(1, static_cast<char>(0x80 + (high - windows1252)));
  const bool same = character.code < 0x80 || (character.code >= 0xA0 && character.code <= 0xFF);
  return same ? std::string(1, static_cast<char>(character.code)) : std::string(character.units(), '?');
}

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
  while (skip > units) {
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
    // Most names are ASCII, and lists are sorted by many.
    if (isAscii(text[at])) {
      result += upperAscii(text[at++]);
      continue;
    }
    const Character character = characterAt(text, at);
    if (character.isStray())
      result += text[at];
    else
      appendUtf8(result, ::uc_toupper(static_cast<ucs4_t>(character.code)));
    at += character.bytes;
  }
  return result;
}

bool isValidUtf8(std::string_view text) {
  return ::u8_check(unitsOf(text), text.size()) == nullptr;
}

std::string toWindows1252(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    bytes += character.isStray() ? std::string(1, text[at]) : windows1252Of(character);
    at += character.bytes;
  }
  return bytes;
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
