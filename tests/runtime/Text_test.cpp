#include "runtime/Text.h"

#include <catch2/catch.hpp>

namespace trackloom {

namespace {

/// The treble clef, a character beyond the basic plane: two UTF-16 units.
const std::string Clef = "\xF0\x9D\x84\x9E";

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

TEST_CASE("Text that is no UTF-8 is shown as Windows-1252") {
  CHECK(displayText("schön") == "schön");
  CHECK(displayText("sch\xF6n") == "schön");
  CHECK(displayText("\x80 5") == "€ 5");
}

}  // namespace trackloom
