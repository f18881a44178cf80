#include "runtime/Text.h"

#include <iconv.h>
#include <locale.h>

#include <catch2/catch.hpp>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace trackloom {

namespace {

/// The treble clef, a character beyond the basic plane: two UTF-16 units.
const std::string Clef = "\xF0\x9D\x84\x9E";

/// The machine has no locale but the one that is built into its C library.
bool& noLocales() {
  static bool none = false;
  return none;
}

}  // namespace

TEST_CASE("Trim strips blanks and nothing else") {
  CHECK(Trim("  a b  ") == "a b");
  CHECK(Trim("\ta\n") == "\ta\n");
  CHECK(Trim(std::string("\0 ", 2)) == std::string("\0", 1));
  CHECK(Trim("   ").empty());
  CHECK(Trim("\xC2\xA0x") == "\xC2\xA0x");
  CHECK(RTrim("  a  ") == "  a");
}

TEST_CASE("Lengths count UTF-16 units, and a stray byte counts as one") {
  CHECK(Len("abc") == 3);
  CHECK(Len("äöü") == 3);
  CHECK(Len(Clef) == 2);
  CHECK(Len("a\xFF\xFE") == 3);
  CHECK(Len("\xC3") == 1);
  CHECK(Len("\xED\xA0\x80") == 3);
  CHECK(Len("\xC0\x80") == 2);
}

TEST_CASE("No cut splits a character") {
  CHECK(Left("äöü", 2) == "äö");
  CHECK(Left("a" + Clef, 2) == "a");
  CHECK(Left("a" + Clef, 3) == "a" + Clef);
  CHECK(Left("abc", 9) == "abc");
  CHECK(Right("song.MP3", 4) == ".MP3");
  CHECK(Right("ä", 4) == "ä");
  CHECK(Right(Clef + "x", 2) == "x");
}

TEST_CASE("Upper case maps each character by itself, whatever the process locale") {
  CHECK(UCase("ärger.mp3") == "ÄRGER.MP3");
  CHECK(UCase("žluť") == "ŽLUŤ");
  CHECK(UCase("straße") == "STRAßE");
  CHECK(UCase("привет") == "ПРИВЕТ");
  CHECK(UCase("x\xFFy") == "X\xFFY");
}

TEST_CASE("Upper case knows all alphabets on a machine that has no locales") {
  noLocales() = true;
  CHECK(UCase("žluť привет") == "ŽLUŤ ПРИВЕТ");
  noLocales() = false;
}

TEST_CASE("Text that is no UTF-8 is shown as Windows-1252") {
  CHECK(displayText("schön") == "schön");
  CHECK(displayText("sch\xF6n") == "schön");
  CHECK(displayText("\x80 5") == "€ 5");
}

namespace {

/// The text in another encoding, by the system's own converter; nothing where it refuses.
std::optional<std::string> converted(const char* to, const char* from, std::string text) {
  const std::unique_ptr<void, int (*)(iconv_t)> converter(::iconv_open(to, from), &::iconv_close);
  REQUIRE(converter.get() != reinterpret_cast<iconv_t>(-1));
  std::string result(4 * text.size() + 4, '\0');
  char* in = text.data();
  char* out = result.data();
  std::size_t inLeft = text.size();
  std::size_t outLeft = result.size();
  if (::iconv(converter.get(), &in, &inLeft, &out, &outLeft) != 0) return std::nullopt;
  result.resize(result.size() - outLeft);
  return result;
}

/// One code point in UTF-8.
std::string letter(std::uint32_t code) {
  std::string bytes(4, '\0');
  std::memcpy(bytes.data(), &code, 4);
  return converted("UTF-8", "UTF-32LE", bytes).value_or("");
}

}  // namespace

TEST_CASE("A text is valid where the system's converter takes it, and counts as many units as UTF-16 has") {
  const std::vector<std::string> texts{"\x7F",
                                       "\x80",
                                       "\xBF",
                                       "\xC1\xBF",
                                       "\xC2\x80",
                                       "\xC2\x7F",
                                       "\xC2\xC0",
                                       "\xC2",
                                       "\xDF\xBF",
                                       "\xE0\x80\x80",
                                       "\xE0\x9F\xBF",
                                       "\xE0\xA0\x80",
                                       "\xE0\xA0",
                                       "\xE2\x82\xAC",
                                       "\xED\x9F\xBF",
                                       "\xED\xA0\x80",
                                       "\xED\xBF\xBF",
                                       "\xEE\x80\x80",
                                       "\xEF\xBF\xBF",
                                       "\xEF\xBF\xC0",
                                       "\xF0\x8F\xBF\xBF",
                                       "\xF0\x90\x80\x80",
                                       "\xF0\x9D\x84\x9E",
                                       "\xF0\x9D\x84",
                                       "\xF4\x8F\xBF\xBF",
                                       "\xF4\x90\x80\x80",
                                       "\xF5\x80\x80\x80",
                                       "\xF8\x88\x80\x80",
                                       "\xFF",
                                       "plain"};
  for (const std::string& text : texts) {
    const auto wide = converted("UTF-16LE", "UTF-8", text);
    INFO(text);
    CHECK(isValidUtf8(text) == wide.has_value());
    CHECK(isValidUtf8("a" + text + "z") == wide.has_value());
    if (wide) CHECK(Len(text) == wide->size() / 2);
  }
}

TEST_CASE("Every letter of the alphabets of Windows-1252 is shown as itself") {
  for (int byte = 0x7E; byte <= 0xFF; ++byte) {
    const std::string text{static_cast<char>(byte)};
    // The five free places stand for themselves.
    const std::string expected = converted("UTF-8", "CP1252", text).value_or(letter(static_cast<std::uint32_t>(byte)));
    INFO(byte);
    CHECK(displayText("\xFF" + text) == "ÿ" + expected);
  }
}

TEST_CASE("Upper case reaches the ends of the alphabet and nothing beside it") {
  CHECK(UCase("`abyz{") == "`ABYZ{");
  CHECK(UCase("\x7F") == "\x7F");
  CHECK(UCase("") == "");
  // Pairs of the Unicode character database on either side of each length that UTF-8 has.
  const std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs{
      {0xFF, 0x178},      {0x80, 0x80},        {0x250, 0x2C6F},    {0x587, 0x587},     {0x7FF, 0x7FF},
      {0x800, 0x800},     {0x1E01, 0x1E00},    {0x2C65, 0x23A},    {0x24D0, 0x24B6},   {0xAB70, 0x13A0},
      {0xFF5A, 0xFF3A},   {0xFFFF, 0xFFFF},    {0x10000, 0x10000}, {0x10428, 0x10400}, {0x1044F, 0x10427},
      {0x1E943, 0x1E921}, {0x10FFFF, 0x10FFFF}};
  for (const auto& [lower, upper] : pairs) {
    INFO(lower);
    CHECK(UCase(letter(lower)) == letter(upper));
  }
}

TEST_CASE("The left and the right of a text end at whole characters, at nothing and at all of it") {
  CHECK(Left("abc", 0).empty());
  CHECK(Left("", 5).empty());
  CHECK(Left("abc", 3) == "abc");
  CHECK(Left(Clef + Clef, 3) == Clef);
  CHECK(Right("abc", 0).empty());
  CHECK(Right("abc", 3) == "abc");
  CHECK(Right("", 5).empty());
  CHECK(Right("ab" + Clef, 2) == Clef);
  CHECK(Right("ab" + Clef, 3) == "b" + Clef);
  CHECK(Right("äöü", 2) == "öü");
}

TEST_CASE("Windows-1252 has one byte for each unit of a text, and a question mark for what the page lacks") {
  CHECK(toWindows1252("Bj\xC3\xB6rk") == "Bj\xF6rk");
  CHECK(toWindows1252("\xE2\x82\xAC\xC5\xB8\xC2\xA0\xC3\xBF~") == "\x80\x9F\xA0\xFF~");
  CHECK(toWindows1252("\xC2\x81") == "\x81");
  CHECK(toWindows1252("\xC2\x80") == "?");
  CHECK(toWindows1252("\xD0\x96\xC4\x80" + Clef) == "????");
  CHECK(toWindows1252("a\xFF") == "a\xFF");
}

TEST_CASE("A single blank and a single letter are trimmed as they are") {
  CHECK(Trim(" ").empty());
  CHECK(RTrim(" ").empty());
  CHECK(Trim("").empty());
  CHECK(Trim("a") == "a");
  CHECK(Trim(" ~a~ ") == "~a~");
}

TEST_CASE("The program's text files and boxes end their lines like those of the system it comes from") {
  CHECK(CrLf == std::string("\x0D\x0A"));
  CHECK(ParagraphBreak == std::string("\x0D\x0A\x0D\x0A"));
}

}  // namespace trackloom

/// Stands in for the system's own, through which all locales come.
extern "C" locale_t __newlocale(int categories, const char* name, locale_t base) noexcept {
  return trackloom::noLocales() ? nullptr : ::newlocale(categories, name, base);
}
