#include <catch2/catch.hpp>
#include <new>
#include <sstream>

#include "engines/writer/FakeRecorder.h"
#include "engines/writer/FormerSession.h"
#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

using fakes::outputOf;
using Lines = std::vector<std::string>;

namespace {

/// An engine that writes data sessions, and what other programs read of them.
class SessionWorld : public VirtualWorld {
 public:
  SessionWorld() {
    real().SetDiscMode(DataBlocks);
    real().SetCloseSession(true);
  }

  void queue(const std::string& disc, std::size_t bytes, std::size_t seed) {
    const HostPath source = folder.file("source" + std::to_string(seed), noise(bytes, seed));
    REQUIRE(real().AddDataFile(DiscPath(disc), source));
  }
  void queueAnew(const std::string& disc, std::size_t bytes, std::size_t seed) {
    real().ClearDataQueue();
    queue(disc, bytes, seed);
  }
  /// A disc with a session of one file in a folder.
  void writeFirst() {
    queueAnew("\\Rock\\one.mp3", 5000, 1);
    REQUIRE(wroteWell());
    real().ClearDataQueue();
  }
  bool import() { return real().ImportLastSession(true); }

  /// Where a track of the disc begins, by its disc.ini.
  std::int32_t startOf(int track) const {
    const std::string ini = contentOf(disc() / "disc.ini");
    const std::size_t section = ini.find("[track " + std::to_string(track) + "]");
    REQUIRE(section != std::string::npos);
    return std::stoi(ini.substr(ini.find("start = ", section) + 8));
  }
  std::string isoinfo(int track, const std::string& options) const {
    return outputOf("isoinfo -T " + std::to_string(startOf(track)) + " -J " + options + " -i '" +
                    (disc() / "disc.iso").string() + "'");
  }
  /// The paths that the session of a track shows, sorted.
  Lines tree(int track) const {
    std::istringstream text(isoinfo(track, "-f"));
    Lines lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    std::ranges::sort(lines);
    return lines;
  }
  std::string extracted(int track, const std::string& path) const { return isoinfo(track, "-x '" + path + "'"); }
};

/// A recorder whose disc takes more memory to read than there is.
class LargeRecorder final : public FakeRecorder {
 public:
  std::vector<std::byte> read(std::int32_t /*block*/, std::int32_t /*count*/) override { throw std::bad_alloc(); }
};

}  // namespace

TEST_CASE("A session continues only on a disc whose reading ends well, whatever it ends in") {
  DiscState disc;
  disc.status = DiscOpen;
  disc.sessions = 1;
  disc.lastSession = SessionClosed;
  disc.freeDataBlocks = 300000;
  disc.tracks = {{DataBlocks, 0, 1000, 1}};
  const auto session = FormerSession::on(std::make_shared<LargeRecorder>(), disc);
  REQUIRE(session);
  CHECK_THROWS_WITH(session->requireReadable(),
                    "the earlier session of the disc cannot be taken over: std::bad_alloc (3/11/00)");
}

TEST_CASE("A session that continues another shows the files of both, to every reader") {
  SessionWorld world;
  world.writeFirst();
  REQUIRE(world.import());
  world.queue("\\Rock\\two.mp3", 9001, 2);
  world.queue("\\three.mp3", 1, 3);
  CHECK(world.real().DataQueueBlocks() == 6);
  world.real().SetCacheDataTrack(GENERATE(false, true));
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2) == Lines{"/Rock", "/Rock/one.mp3", "/Rock/two.mp3", "/three.mp3"});
  CHECK((world.extracted(2, "/Rock/one.mp3") == noise(5000, 1)));
  CHECK((world.extracted(2, "/Rock/two.mp3") == noise(9001, 2)));
  CHECK((world.extracted(2, "/three.mp3") == noise(1, 3)));
  CHECK(world.tree(1) == Lines{"/Rock", "/Rock/one.mp3"});
  const std::string image = "'" + (world.disc() / "disc.iso").string() + "'";
  const std::string start = std::to_string(world.startOf(2));
  const std::string copied = world.folder.host("copied").text;
  outputOf("xorriso -load sbsector " + start + " -indev " + image + " -osirrox on -extract / '" + copied + "'");
  CHECK((contentOf(copied + "/Rock/one.mp3") == noise(5000, 1)));
  CHECK((contentOf(copied + "/three.mp3") == noise(1, 3)));
}

TEST_CASE(
    "The content of the second session lies 11,400 blocks behind the first, of later ones 6,900 behind the last") {
  SessionWorld world;
  world.writeFirst();
  const auto endOfDisc = [&] {
    return static_cast<std::int32_t>(std::filesystem::file_size(world.disc() / "disc.iso") / 2048);
  };
  Lines paths{"/Rock", "/Rock/one.mp3"};
  for (const int track : {2, 3, 4}) {
    const std::int32_t end = endOfDisc();
    const std::int32_t room = world.real().FreeBlocks(DataBlocks);
    REQUIRE(world.import());
    const std::string name = "more" + std::to_string(track);
    world.queue("\\" + name, 3000, static_cast<std::size_t>(track));
    REQUIRE(world.wroteWell());
    CHECK(world.startOf(track) == end + (track == 2 ? 11400 : 6900));
    CHECK(room - world.real().FreeBlocks(DataBlocks) == endOfDisc() + 6900 - world.startOf(track));
    CHECK(world.real().SessionCount() == track);
    paths.push_back("/" + name);
    CHECK(world.tree(track) == paths);
  }
  CHECK((world.extracted(4, "/Rock/one.mp3") == noise(5000, 1)));
  CHECK((world.extracted(4, "/more2") == noise(3000, 2)));
}

TEST_CASE("A queued file takes the place of the earlier one of its path, and its neighbours stay") {
  SessionWorld world;
  world.queue("\\Rock\\one.mp3", 5000, 1);
  world.queue("\\Rock\\two.mp3", 5000, 2);
  REQUIRE(world.wroteWell());
  world.real().ClearDataQueue();
  REQUIRE(world.import());
  world.queue("\\Rock\\one.mp3", 7000, 3);
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2) == Lines{"/Rock", "/Rock/one.mp3", "/Rock/two.mp3"});
  CHECK((world.extracted(2, "/Rock/one.mp3") == noise(7000, 3)));
  CHECK((world.extracted(2, "/Rock/two.mp3") == noise(5000, 2)));
  CHECK((world.extracted(1, "/Rock/one.mp3") == noise(5000, 1)));
}

TEST_CASE("Earlier names that clash with queued ones but in path get a number, and lose nothing") {
  SessionWorld world;
  world.queue("\\Rock\\one.mp3", 5000, 1);
  world.queue("\\song.mp3", 5000, 2);
  world.queue("\\Jazz", 5000, 3);
  REQUIRE(world.wroteWell());
  world.real().ClearDataQueue();
  REQUIRE(world.import());
  world.queue("\\Rock", 1000, 4);
  world.queue("\\SONG.mp3", 1000, 5);
  world.queue("\\Jazz\\cool.mp3", 1000, 6);
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2) ==
        Lines{"/Jazz", "/Jazz/cool.mp3", "/Jazz~2", "/Rock", "/Rock~2", "/Rock~2/one.mp3", "/SONG.mp3", "/song~2.mp3"});
  CHECK((world.extracted(2, "/Rock~2/one.mp3") == noise(5000, 1)));
  CHECK((world.extracted(2, "/song~2.mp3") == noise(5000, 2)));
  CHECK((world.extracted(2, "/Jazz~2") == noise(5000, 3)));
  CHECK((world.extracted(2, "/Rock") == noise(1000, 4)));
}

TEST_CASE("The same queue again under changed names replaces the files that it wrote before") {
  SessionWorld world;
  const std::string longName = std::string(70, 'x') + ".mp3";
  world.queue("\\" + longName, 5000, 1);
  world.queue("\\What?\\a.mp3", 5000, 2);
  world.queue("\\b.mp3", 5000, 3);
  world.queue("\\B.mp3", 5000, 4);
  REQUIRE(world.wroteWell());
  REQUIRE(world.import());
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2) == world.tree(1));
  CHECK(world.tree(2).size() == 5);
}

TEST_CASE("A session that was not taken over is not shown") {
  SessionWorld world;
  world.writeFirst();
  const std::string way = GENERATE("not asked for", "asked not to", "queue cleared", "imported from another disc");
  if (way == "asked not to") {
    REQUIRE(world.import());
    CHECK_FALSE(world.real().ImportLastSession(false));
  }
  if (way == "queue cleared") {
    REQUIRE(world.import());
    world.real().ClearDataQueue();
  }
  if (way == "imported from another disc") {
    const std::filesystem::path first = world.disc();
    std::filesystem::rename(first, world.folder.path() + "/aside");
    world.insert(359849);
    CHECK_FALSE(world.import());
    world.takeDiscOut();
    std::filesystem::rename(world.folder.path() + "/aside", first);
  }
  world.queue("\\two.mp3", 1000, 2);
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2) == Lines{"/two.mp3"});
  CHECK((world.extracted(2, "/two.mp3") == noise(1000, 2)));
}

TEST_CASE("A session that was taken over belongs to its disc: another gets the queue alone, and the first gets both") {
  SessionWorld world;
  world.writeFirst();
  REQUIRE(world.import());
  world.queue("\\two.mp3", 1000, 2);
  const std::filesystem::path tray = world.disc().parent_path();
  const std::filesystem::path aside = world.folder.path() + "/aside";
  std::filesystem::rename(world.disc(), aside);
  world.insert(359849);
  REQUIRE(world.wroteWell());
  CHECK(world.tree(1) == Lines{"/two.mp3"});
  world.takeDiscOut();
  std::filesystem::rename(aside, tray / "back again");
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2) == Lines{"/Rock", "/Rock/one.mp3", "/two.mp3"});
}

TEST_CASE("A queue that is written again continues what it wrote before") {
  SessionWorld world;
  world.writeFirst();
  REQUIRE(world.import());
  world.queue("\\two.mp3", 1000, 2);
  world.real().SetTestMode(true);
  REQUIRE(world.wroteWell());
  world.real().SetTestMode(false);
  REQUIRE(world.wroteWell());
  REQUIRE(world.real().RemoveDataFile(DiscPath("\\two.mp3")));
  world.queue("\\three.mp3", 1000, 3);
  REQUIRE(world.wroteWell());
  CHECK(world.real().SessionCount() == 3);
  CHECK(world.tree(3) == Lines{"/Rock", "/Rock/one.mp3", "/three.mp3", "/two.mp3"});
}

TEST_CASE("A session that was left open is continued by a track of the same session") {
  SessionWorld world;
  world.real().SetCloseSession(false);
  world.writeFirst();
  const auto end = static_cast<std::int32_t>(std::filesystem::file_size(world.disc() / "disc.iso") / 2048);
  REQUIRE(world.import());
  world.queue("\\two.mp3", 1000, 2);
  world.real().SetCloseDisc(true);
  REQUIRE(world.wroteWell());
  CHECK(world.real().SessionCount() == 1);
  CHECK(world.startOf(2) == end + 150);
  CHECK(world.tree(2) == Lines{"/Rock", "/Rock/one.mp3", "/two.mp3"});
  CHECK_FALSE(world.import());
}

TEST_CASE("A session that cannot be read is not taken over, and its disc takes no other that would hide it") {
  SessionWorld world;
  world.writeFirst();
  const std::filesystem::path iso = world.disc() / "disc.iso";
  const std::string whole = contentOf(iso);
  std::string damaged = whole;
  const std::string damage = GENERATE("no descriptor", "lists that lead nowhere");
  if (damage == "no descriptor") damaged.replace(16 * 2048, 4 * 2048, std::string(4 * 2048, '\0'));
  // The address of the root folder, in both byte orders, stands at byte 158 of a volume descriptor (ECMA-119, 8.4.18).
  if (damage == "lists that lead nowhere")
    for (const std::size_t descriptor : {16U, 17U})
      damaged.replace(descriptor * 2048 + 158, 8, std::string("\x00\x00\x7F\x00\x00\x7F\x00\x00", 8));
  world.folder.file("Virtual Recorder/tray/" + iso.parent_path().filename().string() + "/disc.iso", damaged);
  CHECK_FALSE(world.import());
  world.queue("\\two.mp3", 1000, 2);
  REQUIRE(world.write());
  CHECK(world.heard().lines.size() == 1);
  CHECK(world.heard().lines.back().starts_with("OnWriteError 3 "));
  CHECK(world.real().LastDeviceErrorText().find("earlier session") != std::string::npos);
  CHECK((contentOf(iso) == damaged));
  world.folder.file("Virtual Recorder/tray/" + iso.parent_path().filename().string() + "/disc.iso", whole);
  CHECK(world.import());
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2) == Lines{"/Rock", "/Rock/one.mp3", "/two.mp3"});
}

TEST_CASE("A session that does not fit behind the others is refused before its first block") {
  SessionWorld world;
  world.insert(12500);
  world.writeFirst();
  REQUIRE(world.import());
  world.queue("\\two.mp3", 900 * 2048, 2);
  const std::string before = contentOf(world.disc() / "disc.ini");
  REQUIRE(world.write());
  CHECK(world.heard().lines == Lines{"OnWriteError 3 " + std::to_string(0x056300)});
  CHECK(contentOf(world.disc() / "disc.ini") == before);
}

TEST_CASE("A session of many folders is taken over whole") {
  SessionWorld world;
  for (std::size_t at = 0; at < 300; ++at)
    world.queue("\\Folder " + std::to_string(at % 40) + "\\Sub\\" + std::string(50, 'n') + std::to_string(at), at, at);
  REQUIRE(world.wroteWell());
  const Lines first = world.tree(1);
  CHECK(first.size() == 300 + 80);
  world.real().ClearDataQueue();
  REQUIRE(world.import());
  world.queue("\\Folder 7\\Sub\\last", 100, 1000);
  REQUIRE(world.wroteWell());
  CHECK(world.tree(2).size() == 300 + 80 + 1);
  CHECK((world.extracted(2, "/Folder 7/Sub/" + std::string(50, 'n') + "287") == noise(287, 287)));
}

TEST_CASE("Tracks added to an open audio session lie behind its own, with the pause between them") {
  VirtualWorld world;
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 400), 1));
  REQUIRE(world.wroteWell());
  CHECK_FALSE(world.real().ImportLastSession(true));
  world.real().ClearAudioQueue();
  REQUIRE(world.real().AddAudioTrack(world.audioFile("two", 301), 1));
  world.real().SetCloseSession(true);
  REQUIRE(world.wroteWell());
  const std::string pause(std::size_t{150} * 2352, '\0');
  CHECK((contentOf(world.disc() / "disc.bin") ==
         VirtualWorld::audioOf("one", 400) + pause + VirtualWorld::audioOf("two", 301)));
  CHECK(world.real().SessionCount() == 1);
  CHECK(world.real().LastSessionStatus() == SessionClosed);
  const std::string info = outputOf("cd-info --no-header --no-device-info --no-cddb --no-analyze --cue-file='" +
                                    (world.disc() / "disc.cue").string() + "'");
  CHECK(info.find("2: 00:09:25  000550 audio") != std::string::npos);
}

}  // namespace trackloom::engines::writer
