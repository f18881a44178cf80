#include <catch2/catch.hpp>

#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

using fakes::outputOf;

TEST_CASE("An audio disc holds the samples of its files bit for bit, with the pauses silent between them") {
  VirtualWorld world;
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 400), 1));
  REQUIRE(world.real().AddAudioTrack(world.audioFile("two", 301), 2));
  world.real().SetCloseDisc(true);
  REQUIRE(world.wroteWell());
  const std::string pause(std::size_t{150} * 2352, '\0');
  const std::string disc = contentOf(world.disc() / "disc.bin");
  CHECK((disc == VirtualWorld::audioOf("one", 400) + pause + VirtualWorld::audioOf("two", 301)));
  const std::string info = outputOf("cd-info --no-header --no-device-info --no-cddb --no-analyze --cue-file='" +
                                    (world.disc() / "disc.cue").string() + "'");
  CHECK(info.find("1: 00:02:00  000000 audio") != std::string::npos);
  CHECK(info.find("2: 00:09:25  000550 audio") != std::string::npos);
  CHECK(info.find("170: 00:13:26  000851 leadout") != std::string::npos);
}

TEST_CASE("A data disc holds an image that other programs read back byte for byte") {
  VirtualWorld world;
  const HostPath song = world.plainFile("song.mp3", 4000000);
  world.real().SetDiscMode(DataBlocks);
  REQUIRE(world.real().AddDataFile(DiscPath("\\Rock\\Song Title.mp3"), song));
  world.real().SetVolumeLabel("MY MUSIC");
  world.real().SetCloseSession(true);
  world.real().SetCacheDataTrack(GENERATE(false, true));
  REQUIRE(world.wroteWell());
  const std::string image = "'" + (world.disc() / "disc.iso").string() + "'";
  CHECK(outputOf("isoinfo -J -f -i " + image) == "/Rock\n/Rock/Song Title.mp3\n");
  CHECK((outputOf("isoinfo -J -x '/Rock/Song Title.mp3' -i " + image) == contentOf(song.text)));
  CHECK(outputOf("iso-info -f " + image).find("Volume      : MY MUSIC") != std::string::npos);
  CHECK(world.real().DiscStatus() == DiscOpen);
  CHECK(world.heard().progress.back().position ==
        static_cast<std::int32_t>(std::filesystem::file_size(world.disc() / "disc.iso") / 2048));
}

TEST_CASE("A fault of the recorder in the midst of a disc is told with its own number and words") {
  VirtualWorld world;
  world.recorderIni("[faults]\nfailWriteAt = 100\nfailNumber = 4/44/00\nfailText = internal target failure\n");
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 400), 1));
  REQUIRE(world.write());
  CHECK(world.heard().lines.back() == "OnWriteError 3 " + std::to_string(0x044400));
  CHECK(world.real().LastDeviceErrorText().find("internal target failure") != std::string::npos);
  CHECK(world.real().DiscStatus() == DiscClosed);
}

TEST_CASE("A fault of any code is told with that code") {
  VirtualWorld world;
  const std::string code = GENERATE("0", "1", "2", "17");
  world.recorderIni("[faults]\nfailTrack = 1\nfailText = smoke\nfailCode = " + code + "\n");
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 40), 1));
  world.real().SetCacheAudioTracks(true);
  REQUIRE(world.write());
  CHECK(world.heard().lines ==
        std::vector<std::string>{"OnWriteStarting", "OnTrackCacheStart 1 40", "OnWriteError " + code + " 0"});
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

TEST_CASE("A test write of a whole disc leaves the folder of the disc as it was") {
  VirtualWorld world;
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 400), 1));
  const std::string before = contentOf(world.disc() / "disc.ini");
  world.real().SetTestMode(true);
  world.real().SetCloseDisc(true);
  REQUIRE(world.wroteWell());
  CHECK(contentOf(world.disc() / "disc.ini") == before);
  CHECK_FALSE(std::filesystem::exists(world.disc() / "disc.bin"));
}

TEST_CASE("The cache leaves nothing behind") {
  VirtualWorld world;
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 400), 1));
  world.real().SetCacheAudioTracks(true);
  REQUIRE(world.wroteWell());
  CHECK(std::filesystem::is_empty(std::filesystem::path(world.folder.path()) / "scratch"));
}

}  // namespace trackloom::engines::writer
