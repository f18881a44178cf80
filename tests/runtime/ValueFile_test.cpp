#include "runtime/ValueFile.h"

#include <catch2/catch.hpp>
#include <vector>

#include "fakes/ErrorNumber.h"

namespace trackloom {

using Values = std::vector<std::string>;

namespace {

/// All values of the bytes, up to error 62.
Values valuesOf(const std::string& bytes) {
  ValueReader reader(bytes);
  Values values;
  while (fakes::errorNumberOf([&] { values.push_back(reader.next()); }) != 62) {
  }
  return values;
}

}  // namespace

TEST_CASE("Values are written one a line, texts between quotes and numbers bare, and each line ends with CR LF") {
  ValueWriter writer;
  writer.text("Audio").number(1234567).text("").text("/music/\"a\"\n\xC3\xA4\xFF.mp3").number(-2);
  CHECK(writer.bytes() == "\"Audio\"\r\n1234567\r\n\"\"\r\n\"/music/\"a\"\n\xC3\xA4\xFF.mp3\"\r\n-2\r\n");
}

TEST_CASE("What was written is read back, with quotes and line breaks inside of texts") {
  const Values texts{"Audio",         "",      " a ",         "/m/say \"yes\".mp3", "/m/a\nb\r\nc.mp3", "\"", "a\"b",
                     "\"\" quoted\"", "a\tb,", "\xFF\xC3\xA4"};
  ValueWriter writer;
  for (const std::string& text : texts) writer.text(text);
  CHECK(valuesOf(writer.bytes()) == texts);
}

TEST_CASE("Lines may end with CR LF, LF or CR, the last one with nothing") {
  CHECK(valuesOf("\"a\"\r\n2\r\n\"c\"\r\n") == Values{"a", "2", "c"});
  CHECK(valuesOf("\"a\"\n2\n\"c\"\n") == Values{"a", "2", "c"});
  CHECK(valuesOf("\"a\"\r2\r\"c\"\r") == Values{"a", "2", "c"});
  CHECK(valuesOf("\"a\"\r\n2\r\n\"c\"") == Values{"a", "2", "c"});
  CHECK(valuesOf("\"a\"\r\n2") == Values{"a", "2"});
}

TEST_CASE("Several values may stand in one line, parted by commas") {
  CHECK(valuesOf("Audio,2,x") == Values{"Audio", "2", "x"});
  CHECK(valuesOf("\"a\",\"b\"\r\n") == Values{"a", "b"});
  CHECK(valuesOf("\"a\"  ,  \"b\"  \r\n\"c\"") == Values{"a", "b", "c"});
  CHECK(valuesOf(",,x") == Values{"", "", "x"});
}

TEST_CASE("A bare value loses the blanks and tabs before it, keeps those behind, and its quotes are its own") {
  CHECK(valuesOf(" \t 2 \t\r\nab\"c\"\r\n") == Values{"2 \t", "ab\"c\""});
  CHECK(valuesOf("\t\"a\"\r\n") == Values{"a"});
}

TEST_CASE("Only a quote before blanks and a separator closes a text") {
  CHECK(valuesOf("\"a\" b\"\r\n") == Values{"a\" b"});
  CHECK(valuesOf("\"a\"\t\r\n\"b\"") == Values{"a\"\t\r\n\"b"});
  CHECK(valuesOf("\"a\"  \r\nb") == Values{"a", "b"});
  CHECK(valuesOf("\"a\"  ") == Values{"a"});
}

TEST_CASE("A text that nothing closes reaches to the end") {
  CHECK(valuesOf("\"abc") == Values{"abc"});
  CHECK(valuesOf("\"") == Values{""});
  CHECK(valuesOf("\"a\"b\r\nc") == Values{"a\"b\r\nc"});
}

TEST_CASE("An empty line is an empty value, and an end before a value raises error 62 again and again") {
  CHECK(valuesOf("\r\n\r\n1") == Values{"", "", "1"});
  CHECK(valuesOf("").empty());
  CHECK(valuesOf(" \t").empty());
  CHECK(valuesOf("1,") == Values{"1"});
  ValueReader reader("1\r\n  ");
  CHECK(reader.next() == "1");
  CHECK(fakes::errorNumberOf([&] { reader.next(); }) == 62);
  CHECK(fakes::errorNumberOf([&] { reader.next(); }) == 62);
}

}  // namespace trackloom
