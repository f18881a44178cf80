#include "engines/writer/ImageNames.h"

#include <catch2/catch.hpp>

namespace trackloom::engines::writer {

namespace {

std::vector<std::string> filesNamed(const std::vector<std::string>& wished) {
  std::vector<WishedName> names;
  names.reserve(wished.size());
  for (const std::string& name : wished) names.push_back({name});
  return imageNames(names);
}

using Names = std::vector<std::string>;

}  // namespace

TEST_CASE("What Joliet forbids becomes an underscore") {
  CHECK(filesNamed({"What?.mp3", "a*b/c:d;e\\f.mp3", "tab\there", "del\x7F", "c1\xC2\x85.x"}) ==
        Names{"What_.mp3", "a_b_c_d_e_f.mp3", "tab_here", "del_", "c1_.x"});
  CHECK(filesNamed({"", ".", ".."}) == Names{"_", "_~2", "_~3"});
}

TEST_CASE("A name that fits as it is never gives way to one that had to be changed") {
  CHECK(filesNamed({"a?.mp3", "a_.mp3"}) == Names{"a_~2.mp3", "a_.mp3"});
}

TEST_CASE("Names that differ only in case are told apart, whatever the alphabet") {
  CHECK(filesNamed({"Song.mp3", "SONG.MP3", "song.mp3"}) == Names{"Song.mp3", "SONG~2.MP3", "song~3.mp3"});
  CHECK(filesNamed({"\xC3\xA4.mp3", "\xC3\x84.mp3"}) == Names{"\xC3\xA4.mp3", "\xC3\x84~2.mp3"});
}

TEST_CASE("A name of 64 characters stands and a longer one keeps its extension") {
  const std::string title(60, 'a');
  CHECK(filesNamed({title + ".mp3"}) == Names{title + ".mp3"});
  CHECK(filesNamed({title + "b.mp3"}) == Names{title + ".mp3"});
  CHECK(filesNamed({title + "b.mp3", title + "c.mp3", title + ".mp3"}) ==
        Names{std::string(58, 'a') + "~2.mp3", std::string(58, 'a') + "~3.mp3", title + ".mp3"});
  CHECK(imageNames(std::vector<WishedName>{{title + "b.folder", true}}) == Names{title + "b.fo"});
}

TEST_CASE(
    "Up to 16 characters behind the last dot of a long name, with it, are its extension, and a first dot begins none") {
  const std::string title(60, 'a');
  const std::string longest = "." + std::string(15, 'x');
  CHECK(filesNamed({title + longest}) == Names{std::string(48, 'a') + longest});
  CHECK(filesNamed({title + longest + "x"}) == Names{title + ".xxx"});
  CHECK(filesNamed({title + ".b" + longest}) == Names{std::string(48, 'a') + longest});
  CHECK(filesNamed({"." + std::string(70, 'h')}) == Names{"." + std::string(63, 'h')});
  CHECK(filesNamed({title + longest, title + longest + "?"}) == Names{std::string(48, 'a') + longest, title + ".xxx"});
}

TEST_CASE("What is just beside the forbidden characters stands") {
  CHECK(filesNamed({"a\x1F", "a b", "a\x7E", "c\xC2\x9F.x", "d\xC2\xA0.x", "e\xEF\xBF\xBD.x", "f\xC3\x80.x"}) ==
        Names{"a_", "a b", "a\x7E", "c_.x", "d\xC2\xA0.x", "e\xEF\xBF\xBD.x", "f\xC3\x80.x"});
  CHECK(filesNamed({"\xF0\x90\x80\x80x", "*", "/", ":", ";", "?", "\\"}) ==
        Names{"_x", "_", "_~2", "_~3", "_~4", "_~5", "_~6"});
}

TEST_CASE("Lengths count characters, not bytes") {
  std::string umlauts;
  for (int at = 0; at < 64; ++at) umlauts += "\xC3\xBC";
  CHECK(filesNamed({umlauts}) == Names{umlauts});
  CHECK(filesNamed({umlauts + "x"}) == Names{umlauts});
}

TEST_CASE("A character beyond 16 bits becomes an underscore, since not all readers know pairs of units") {
  CHECK(filesNamed({"\xF0\x9F\x8E\xB5 song.mp3", "_ song.mp3"}) == Names{"_ song~2.mp3", "_ song.mp3"});
  CHECK(volumeLabel("\xF0\x9F\x8E\xB5") == "_");
}

TEST_CASE("Bytes that are no UTF-8 are read as Windows-1252") {
  CHECK(filesNamed({"M\xFCnchen.mp3"}) == Names{"M\xC3\xBCnchen.mp3"});
  CHECK(filesNamed({"100\x80.mp3"}) == Names{"100\xE2\x82\xAC.mp3"});
}

TEST_CASE("Ten thousand names with the same beginning are all told apart") {
  std::vector<WishedName> wished;
  wished.reserve(10000);
  for (int at = 0; at < 10000; ++at) wished.push_back({std::string(64, 'n') + std::to_string(at) + ".mp3"});
  Names names = imageNames(wished);
  CHECK(names[9999] == std::string(54, 'n') + "~10000.mp3");
  std::ranges::sort(names);
  CHECK(std::ranges::adjacent_find(names) == names.end());
}

TEST_CASE("A volume label keeps 32 bytes and whole characters") {
  CHECK(volumeLabel("My Music").size() == 8);
  CHECK(volumeLabel(std::string(40, 'L')) == std::string(32, 'L'));
  CHECK(volumeLabel(std::string(31, 'L') + "\xC3\xBC") == std::string(31, 'L'));
  CHECK(volumeLabel("").empty());
  CHECK(volumeLabel("\xFC") == "\xC3\xBC");
}

}  // namespace trackloom::engines::writer
