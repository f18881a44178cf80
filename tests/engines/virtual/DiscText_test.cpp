#include "engines/disc/DiscText.h"

#include <catch2/catch.hpp>
#include <string>

namespace trackloom::engines {

namespace {

std::string listed(const DiscText& text) {
  std::string words = text.disc.title + "|" + text.disc.performer;
  for (const DiscName& track : text.tracks) words += "\n" + track.title + "|" + track.performer;
  return words;
}

}  // namespace

TEST_CASE("The text of a disc loses control characters, blanks around it, and performers told already") {
  CHECK(listed(fitted({{" Album\n", "Artist"}, {{"One\t", "Artist"}, {"Two", "Guest"}, {"", ""}}})) ==
        "Album|Artist\nOne|\nTwo|Guest\n|");
  CHECK(listed(fitted({{std::string("A\0B\x7F", 4), ""}, {{"Bj\xF6rk", "\xC3\xA9"}}})) == "AB|\nBj\xC3\xB6rk|\xC3\xA9");
  CHECK(listed(fitted({})) == "|");
}

TEST_CASE("Names are as long as all of them have room together, and no longer than 160 characters") {
  const std::string name(200, 'x');
  CHECK(fitted({{name, ""}, {}}).disc.title.size() == 160);
  // 17 x 161 + 16 + 1 characters, and 18 x 161 + 17 + 1, both below 3000; 19 tracks are too many.
  const auto tracks = [&](std::size_t count) {
    return fitted({{name, ""}, std::vector<DiscName>(count, {name, ""})}).tracks.back().title.size();
  };
  CHECK(tracks(16) == 160);
  CHECK(tracks(17) == 160);
  CHECK(tracks(18) == 80);
  CHECK(tracks(36) == 40);
  CHECK(tracks(99) == 20);
  const std::string other(200, 'y');
  CHECK(fitted({{"", ""}, std::vector<DiscName>(99, {name, other})}).tracks.back().performer == std::string(10, 'y'));
}

TEST_CASE("A cut splits no character, and leaves no blank at the end") {
  std::string name;
  for (int count = 0; count < 159; ++count) name += "x";
  CHECK(fitted({{name + "\xF0\x9F\x8E\xB5", ""}, {}}).disc.title == name);
  CHECK(fitted({{name + " y", ""}, {}}).disc.title == name);
}

}  // namespace trackloom::engines
