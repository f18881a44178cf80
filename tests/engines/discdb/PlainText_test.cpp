#include "engines/discdb/PlainText.h"

#include <catch2/catch.hpp>
#include <string>
#include <vector>

namespace trackloom::engines::discdb {

TEST_CASE("A name keeps its characters whatever their alphabet, and loses what controls a terminal or a page") {
  struct Row {
    std::string bytes;
    std::string plain;
  };
  const std::string nul(1, '\0');
  const std::vector<Row> rows{
      {"", ""},
      {" Blanks stay ", " Blanks stay "},
      {"a/b\\c", "a/b\\c"},
      {"caf\xC3\xA9", "caf\xC3\xA9"},
      {"caf\xE9", "caf\xC3\xA9"},
      // One byte that is no UTF-8, and all of the name is Latin-1.
      {"\xC3\xA9\xE9", "\xC3\x83\xC2\xA9\xC3\xA9"},
      {"it\x92s", "it\xE2\x80\x99s"},
      {"\xE9\x85\x8B", "\xE9\x85\x8B"},
      {"\xF0\x9F\x8E\xB5", "\xF0\x9F\x8E\xB5"},
      {"\xD7\xA9\xE2\x80\x8F", "\xD7\xA9\xE2\x80\x8F"},
      {"a\tb\nc\rd\x1B[31me\x7F", "abcd[31me"},
      {"a" + nul + "b", "ab"},
      {nul, ""},
      {"a\xC2\x80"
       "b\xC2\x9F"
       "c\xC2\xA0"
       "d",
       "abc\xC2\xA0"
       "d"},
      {"a\xE2\x80\xA7"
       "b\xE2\x80\xA8"
       "c\xE2\x80\xAE"
       "d\xE2\x80\xAF",
       "a\xE2\x80\xA7"
       "bcd\xE2\x80\xAF"},
      {"a\xE2\x81\xA5"
       "b\xE2\x81\xA6"
       "c\xE2\x81\xA9"
       "d\xE2\x81\xAA",
       "a\xE2\x81\xA5"
       "bcd\xE2\x81\xAA"},
  };
  for (const Row& row : rows) CHECK(plainText(row.bytes) == row.plain);
}

TEST_CASE("A name of 64 KB stays whole") {
  const std::string name(65536, 'x');
  CHECK(plainText(name) == name);
}

}  // namespace trackloom::engines::discdb
