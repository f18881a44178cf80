#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "engines/ripper/RipWorld.h"
#include "fakes/OwnDisk.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::ripper {

namespace {

using Names = std::vector<std::string>;

/// A disc of three tracks, 0 to 39, 40 to 59 and 60 to 69, in the drive.
void insertThree(RipWorld& world) {
  world.insert({{true, 0, 40}, {true, 40, 20}, {true, 60, 10}});
  REQUIRE(world.ripper().SelectRipDrive(0));
  REQUIRE(world.ripper().ReadTOC());
}

void queue(RipWorld& world, std::int16_t track, const std::string& name) {
  REQUIRE(world.ripper().QueueTrack(track, world.out(name), track));
}

const Names& rip(RipWorld& world) {
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  return world.heard().lines;
}

std::string soundIn(RipWorld& world, const std::string& name) {
  const std::string file = world.folder.read("out/" + name);
  REQUIRE(file.size() > 44 + 128);
  return file.substr(44, file.size() - 44 - 128);
}

long times(const Names& lines, const std::string& line) {
  return std::count(lines.begin(), lines.end(), line);
}

}  // namespace

TEST_CASE("A WAV file's sizes are those of the sound, and other programs read just that") {
  RipWorld world;
  insertThree(world);
  queue(world, 1, "a.wav");
  rip(world);
  const std::string file = world.folder.read("out/a.wav");
  const std::string pcm = world.soundOf(0, 40);
  CHECK(file == fakes::wav(pcm) + std::string(128, '\0'));
  CHECK(fakes::outputOf("sox '" + world.out("a.wav").text + "' -t raw -") == pcm);
  CHECK(fakes::outputOf("ffmpeg -v error -i '" + world.out("a.wav").text + "' -f s16le -") == pcm);
}

TEST_CASE("An MP3 file decodes to the disc's length and leaves room for a tag behind its last frame") {
  RipWorld world;
  insertThree(world);
  REQUIRE(world.ripper().AttachEncoder(world.encoder()));
  world.ripper().SetUseEncoder(true);
  world.lame->SetBitRate(256);
  queue(world, 1, "a.mp3");
  queue(world, 2, "b.mp3");
  rip(world);
  for (const auto& [name, sectors] : {std::pair("a.mp3", 40), std::pair("b.mp3", 20)}) {
    const std::string file = world.folder.read(std::string("out/") + name);
    CHECK(file.ends_with(std::string(128, '\0')));
    CHECK(file.substr(36, 4) == "Info");
    const std::string path = world.out(name).text;
    CHECK(fakes::outputOf("ffmpeg -v quiet -i '" + path + "' -f s16le -").size() ==
          static_cast<std::size_t>(sectors) * 2352);
    CHECK(fakes::outputOf("mpg123 -q -s '" + path + "'").size() == static_cast<std::size_t>(sectors) * 2352);
    CHECK(fakes::outputOf("ffprobe -v quiet -show_entries stream=bit_rate -of csv=p=0 '" + path + "'") == "256000\n");
  }
}

TEST_CASE("The rate is the one that is set when the rip starts") {
  RipWorld world;
  insertThree(world);
  world.ripper().AttachEncoder(world.encoder());
  world.ripper().SetUseEncoder(true);
  queue(world, 1, "a.mp3");
  world.lame->SetBitRate(320);
  rip(world);
  const std::string path = world.out("a.mp3").text;
  CHECK(fakes::outputOf("ffprobe -v quiet -show_entries stream=bit_rate -of csv=p=0 '" + path + "'") == "320000\n");
}

TEST_CASE("Equal names of one rip are several files, and none that was there is taken") {
  RipWorld world;
  insertThree(world);
  world.folder.write("out/Song (2).wav", "mine");
  for (std::int16_t track = 1; track <= 3; ++track) queue(world, track, "Song.wav");
  rip(world);
  CHECK(world.made() == Names{"Song (2).wav", "Song (3).wav", "Song (4).wav", "Song.wav"});
  CHECK(world.folder.read("out/Song (2).wav") == "mine");
  CHECK(soundIn(world, "Song.wav") == world.soundOf(0, 40));
  CHECK(soundIn(world, "Song (3).wav") == world.soundOf(40, 20));
  CHECK(soundIn(world, "Song (4).wav") == world.soundOf(60, 10));
}

TEST_CASE("Two names that the folder takes for one are two files all the same") {
  RipWorld world;
  insertThree(world);
  std::filesystem::create_symlink(".", world.out("also").text);
  queue(world, 1, "Song.wav");
  REQUIRE(world.ripper().QueueTrack(2, world.out("also/Song.wav"), 2));
  rip(world);
  CHECK(soundIn(world, "Song.wav") == world.soundOf(0, 40));
  CHECK(soundIn(world, "Song (2).wav") == world.soundOf(40, 20));
}

TEST_CASE("A name of 255 bytes is kept, and its second has as many with no character cut") {
  RipWorld world;
  insertThree(world);
  std::string longest;
  while (longest.size() < 250) longest += "\xC3\xA4";
  longest += "x.wav";
  REQUIRE(longest.size() == 255);
  queue(world, 1, longest);
  queue(world, 2, longest);
  rip(world);
  Names made = world.made();
  REQUIRE(made.size() == 2);
  std::sort(made.begin(), made.end());
  CHECK(made[1] == longest);
  CHECK(made[0] == longest.substr(0, 246) + " (2).wav");
}

TEST_CASE("No path with dots for folders, with a name too long or onto a folder makes a file anywhere") {
  RipWorld world;
  insertThree(world);
  std::filesystem::create_directories(world.out("folder.wav").text);
  for (const std::string& name :
       {std::string("../x.wav"), std::string("./x.wav"), std::string("a/../x.wav"), std::string(252, 'y') + ".wav",
        std::string("folder.wav"), std::string("x\0y.wav", 7), std::string()}) {
    world.ripper().ClearQueue();
    queue(world, 3, name);
    world.heard().lines.clear();
    CHECK(rip(world) == Names{"RipStarted", "TrackStarted 60-70 3", "RipStatus 10 0", "TrackFinished", "RipFinished"});
    CHECK(world.heard().paths.back().text.empty());
  }
  CHECK(world.made() == Names{"folder.wav"});
  CHECK_FALSE(world.folder.has("x.wav"));
}

TEST_CASE("An older file stays byte for byte until a whole one takes its place") {
  RipWorld world;
  insertThree(world);
  world.folder.write("out/a.wav", "old one");
  world.folder.write("out/b.wav", "old two");
  world.spoil(45);
  queue(world, 1, "a.wav");
  queue(world, 2, "b.wav");
  world.heard().onLine = [&](const std::string&) {
    const std::string a = world.folder.read("out/a.wav");
    CHECK((a == "old one" || a == fakes::wav(world.soundOf(0, 40)) + std::string(128, '\0')));
    CHECK(world.folder.read("out/b.wav") == "old two");
  };
  rip(world);
  CHECK(soundIn(world, "a.wav") == world.soundOf(0, 40));
  CHECK(world.folder.read("out/b.wav") == "old two");
  CHECK(world.made() == Names{"a.wav", "b.wav"});
}

TEST_CASE("An older file that the user may not write is told and kept") {
  if (::geteuid() == 0) {
    WARN("Root may write everything");
    return;
  }
  RipWorld world;
  insertThree(world);
  world.folder.write("out/a.wav", "kept");
  ::chmod(world.out("a.wav").text.c_str(), 0444);
  queue(world, 1, "a.wav");
  CHECK(times(rip(world), "RipStatus 10 0") == 1);
  CHECK(world.folder.read("out/a.wav") == "kept");
}

TEST_CASE("What a killed rip left goes with the next one, and what another rip makes stays") {
  RipWorld world;
  insertThree(world);
  world.folder.write("out/.trackloom-rip1", "left over");
  world.folder.write("out/.trackloom-rip77", "left over");
  world.folder.write("out/.trackloom-ripe", "no work of ours");
  queue(world, 3, "a.wav");
  rip(world);
  CHECK(world.made() == Names{".trackloom-ripe", "a.wav"});
}

TEST_CASE("A full disk is told before the first sector, and the tracks that fit are whole") {
  RipWorld world;
  const fakes::OwnDisk disk(world.out("").text, "size=128k");
  if (disk.missing()) return;
  insertThree(world);
  world.insert({{true, 0, 40}, {true, 40, 100}});
  REQUIRE(world.ripper().ReadTOC());
  queue(world, 2, "large.wav");
  queue(world, 1, "small.wav");
  const Names lines = rip(world);
  CHECK(lines == Names{"RipStarted", "TrackStarted 40-140 2", "RipStatus 11 0", "TrackFinished", "TrackStarted 0-40 1",
                       "RipStatus 7 40", "TrackFinished", "RipFinished"});
  CHECK(world.made() == Names{"small.wav"});
  CHECK(soundIn(world, "small.wav") == world.soundOf(0, 40));
}

TEST_CASE("A disk that fills up in midst of a track costs that track, whose older file stays") {
  RipWorld world;
  const fakes::OwnDisk disk(world.out("").text, "size=400k");
  if (disk.missing()) return;
  world.configure("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 2\n");
  world.insert({{true, 0, 120}});
  REQUIRE(world.ripper().SelectRipDrive(0));
  REQUIRE(world.ripper().ReadTOC());
  world.folder.write("out/a.wav", "old");
  queue(world, 1, "a.wav");
  world.heard().onLine = [&](const std::string& line) {
    if (line.starts_with("TrackStarted")) disk.fillUp();
  };
  CHECK(times(rip(world), "RipStatus 11 0") == 1);
  CHECK(world.folder.read("out/a.wav") == "old");
}

TEST_CASE("A folder that cannot be written is told for each track") {
  RipWorld world;
  const fakes::OwnDisk disk(world.out("").text, "size=1m");
  if (disk.missing()) return;
  insertThree(world);
  REQUIRE(disk.makeReadOnly());
  queue(world, 1, "a.wav");
  queue(world, 2, "b.wav");
  const Names lines = rip(world);
  CHECK(times(lines, "RipStatus 10 0") == 2);
  CHECK(times(lines, "TrackFinished") == 2);
}

TEST_CASE("A track that is asked for twenty times is twenty files") {
  RipWorld world;
  insertThree(world);
  for (int turn = 0; turn < 20; ++turn) queue(world, 3, "same.wav");
  rip(world);
  CHECK(world.made().size() == 20);
}

}  // namespace trackloom::engines::ripper
