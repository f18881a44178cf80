#include "engines/ripper/LeadInText.h"

#include <catch2/catch.hpp>

#include "engines/ripper/LeadInPacks.h"

namespace trackloom::engines::ripper {

TEST_CASE("The names in a lead-in are those of the disc and of its tracks") {
  const std::vector<std::uint8_t> reply = LeadInPacks()
                                              .add(0x80, {"Album of some length", "One", "Bj\xF6rk"})
                                              .add(0x81, {"Artist", "Artist", "Guest"})
                                              .reply(2);
  CHECK(textFrom(reply, 2) ==
        DiscText{{"Album of some length", "Artist"}, {{"One", "Artist"}, {"Bj\xC3\xB6rk", "Guest"}}});
  CHECK(textFrom(reply, 3).tracks.at(2) == DiscName{});
}

TEST_CASE("A lead-in that bears no names, or none that make sense, is a disc without") {
  CHECK(textFrom({}, 2) == DiscText{});
  CHECK(textFrom(std::vector<std::uint8_t>{0, 2, 0, 0}, 2) == DiscText{});
  CHECK(textFrom(std::vector<std::uint8_t>{0xFF, 0xFF, 0, 0, 0x80}, 2) == DiscText{});
  const std::vector<std::uint8_t> noise(4 + 18 * 5, 0xA5);
  CHECK(textFrom(noise, 1).tracks.size() <= 1);
}

TEST_CASE("A blank in a lead-in stands for no name, and the others stay where they are") {
  const auto reply = LeadInPacks().add(0x80, {" ", "One", " ", "Three x"}).add(0x81, {" ", " ", "Guest", " "}).reply(3);
  CHECK(textFrom(reply, 3) == DiscText{{"", ""}, {{"One", ""}, {"", "Guest"}, {"Three x", ""}}});
}

}  // namespace trackloom::engines::ripper
