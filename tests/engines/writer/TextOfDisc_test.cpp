#include "engines/writer/TextOfDisc.h"

#include <catch2/catch.hpp>

#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

TEST_CASE("What all tracks share of artist and album is the disc's own") {
  CHECK(textOfDisc({{"One", "Artist", "Album"}, {"Two", "Artist", "Album"}}) ==
        DiscText{{"Album", "Artist"}, {{"One", ""}, {"Two", ""}}});
  CHECK(textOfDisc({{"One", "Artist", "Album"}, {"Two", "Guest", "Other"}}) ==
        DiscText{{"", ""}, {{"One", "Artist"}, {"Two", "Guest"}}});
  CHECK(textOfDisc({{"One", "Artist", "Album"}, {"", "", ""}}) == DiscText{{"", ""}, {{"One", "Artist"}, {"", ""}}});
}

TEST_CASE("Files without tags make a disc without text") {
  CHECK(textOfDisc({{"", "", ""}, {"", "", ""}}) == DiscText{});
  CHECK(textOfDisc({{"", "", "Album"}}) == DiscText{});
}

TEST_CASE("The tags of its files stand on a disc whose session is closed, for other programs too") {
  VirtualWorld world;
  const std::string folder = world.folder.path();
  const std::string lame = "lame --quiet --ta 'The \"Artist\"' --tl Album --tt ";
  const std::string wav = world.audioFile("one", 200).text;
  REQUIRE(fakes::outputOf(lame + "First '" + wav + "' '" + folder + "/1.mp3' && echo done") == "done\n");
  REQUIRE(fakes::outputOf(lame + "Second '" + wav + "' '" + folder + "/2.mp3' && echo done") == "done\n");
  REQUIRE(world.real().AddAudioTrack(HostPath(folder + "/1.mp3"), 1));
  REQUIRE(world.real().AddAudioTrack(HostPath(folder + "/2.mp3"), 2));
  const bool closed = GENERATE(true, false);
  world.real().SetCloseSession(closed);
  world.real().SetCloseDisc(false);
  REQUIRE(world.wroteWell());
  const std::string info = fakes::outputOf("cd-info --no-header --no-device-info --no-cddb --cue-file='" +
                                           (world.disc() / "disc.cue").string() + "'");
  CHECK((info.find("TITLE: Album") != std::string::npos) == closed);
  CHECK((info.find("PERFORMER: The 'Artist'") != std::string::npos) == closed);
  CHECK((info.find("TITLE: First") != std::string::npos) == closed);
  CHECK((info.find("TITLE: Second") != std::string::npos) == closed);
}

}  // namespace trackloom::engines::writer
