#include "runtime/FixedText.h"

#include <catch2/catch.hpp>

namespace trackloom {

namespace {

/// The treble clef, a character beyond the basic plane: two UTF-16 units.
const std::string Clef = "\xF0\x9D\x84\x9E";

}  // namespace

TEST_CASE("A fixed text is cut when it is assigned and filled up with blanks, and begins blank") {
  FixedText<4> text;
  CHECK(text.get() == "    ");
  text = "ab";
  CHECK(text.get() == "ab  ");
  text = "abcde";
  CHECK(text.get() == "abcd");
  text = "\xC3\xA4\xC3\xB6\xC3\xBC";
  CHECK(text.get() == "\xC3\xA4\xC3\xB6\xC3\xBC ");
  text = "abc" + Clef;
  CHECK(text.get() == "abc ");
  text = "";
  CHECK(text == FixedText<4>());
}

}  // namespace trackloom
