#include "words/table/WordTable.h"

#include <catch2/catch.hpp>

namespace trackloom::words {

namespace {

std::string linesOf(const std::string& table) {
  std::string text;
  for (const TableLine& line : readTable(table)) text += std::to_string(line.number) + ": " + written(line) + "\n";
  return text;
}

std::string faultOf(const std::string& table) {
  try {
    readTable(table);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

}  // namespace

TEST_CASE("A table is words and texts, with remarks and empty lines passed over") {
  CHECK(linesOf("# remark\n\nbutton  cmdOK   \"&OK\"  default # remark\n\nlabel x \"a # b\"\n") ==
        "3: button cmdOK \"&OK\" default\n5: label x \"a # b\"\n");
  CHECK(linesOf("").empty());
}

TEST_CASE("An indented line goes on with the one above, and + joins two texts") {
  CHECK(linesOf("combo x\n  \"one\"\n  \"two\" +\n  \" parts\" end\ny\n") ==
        "1: combo x \"one\" \"two parts\" end\n5: y\n");
  CHECK(linesOf("a \"1\" + \"2\" +\n  \"3\"\n") == "1: a \"123\"\n");
}

TEST_CASE("A text may hold quotes, backslashes and line ends, and is written as it was read") {
  const auto lines = readTable(R"(x "say \"so\" \\ twice\n\nthen stop")");
  CHECK(lines[0].quoted(1) == "say \"so\" \\ twice\r\n\r\nthen stop");
  CHECK(written(lines[0]) == R"(x "say \"so\" \\ twice\n\nthen stop")");
}

TEST_CASE("A text is no bare word, and a place beyond the line is empty") {
  const TableLine line = readTable("name \"name\"")[0];
  CHECK(line.bare(0) == "name");
  CHECK(line.bare(1).empty());
  CHECK(line.quoted(1) == "name");
  CHECK(line.quoted(0).empty());
  CHECK(line.bare(2).empty());
  CHECK(line.quoted(2).empty());
}

TEST_CASE("What makes no sense in a table is told with its line") {
  CHECK(faultOf("a\nb \"open") == "line 2: a text without its end");
  CHECK(faultOf("b \"open\\") == "line 1: a text without its end");
  CHECK(faultOf("a \"x\\q\"") == "line 1: an unknown sign behind a backslash");
  for (const char* table : {"a + \"x\"", "a \"x\" + b", "a \"x\" +", "+"})
    CHECK(faultOf(table) == "line 1: a + that is not between two texts");
}

TEST_CASE("A table that is not there is told by its name") {
  CHECK_THROWS_WITH(readTableFile("none.txt"), "tests/words/none.txt cannot be read");
}

}  // namespace trackloom::words
