#include <sstream>

#include "engines/disc/MountedAt.h"
#include "engines/libburn/FoundDrives.h"
#include "engines/libburn/LibburnWorld.h"
#include "engines/libburn/Library.h"
#include "engines/libburn/SenseWords.h"

namespace trackloom::engines::libburn {

using Catch::Matchers::Contains;

namespace {

/// What cd-info says of the disc, which reads it through the emulated node.
std::string trackList(const LibburnWorld& world) {
  return fakes::outputOf("EMULATED_DRIVES='" + world.folder.host("drives").text +
                         "' LD_PRELOAD='" EMULATED_DRIVE_LIBRARY "' cd-info --no-cddb /dev/sr0");
}

/// The part of a track list that tells the names of the disc, or of a track.
std::string textOf(const std::string& what, const std::string& list) {
  const std::size_t begin = list.find("CD-TEXT for " + what + ":");
  REQUIRE(begin != std::string::npos);
  return list.substr(begin, list.find("CD-TEXT", begin + 1) - begin);
}

struct Silence : SectorSource {
  void beginTrack(std::int16_t /*track*/) override {}
  void read(std::span<std::byte> sectors) override { std::ranges::fill(sectors, std::byte{0}); }
  std::int16_t bufferPercent() override { return 100; }
};

void writeSilence(const WriteOrder& order) {
  Silence silence;
  OperationObserver nobody;
  findRecorders().front()->write(order, silence, nobody, {});
}

}  // namespace

TEST_CASE("A closed audio disc has its tracks and pauses where the layout has them, sample for sample") {
  LibburnWorld world;
  world.queueTracks({310, 400, 305});
  world.close(true, true);
  REQUIRE(world.wroteWell());
  const std::string list = trackList(world);
  CHECK_THAT(list, Contains("  1: 00:02:00  000000 audio"));
  CHECK_THAT(list, Contains("  2: 00:08:10  000460 audio"));
  CHECK_THAT(list, Contains("  3: 00:15:35  001010 audio"));
  CHECK_THAT(list, Contains("170: 00:19:40  001315 leadout"));
  CHECK(world.sectors(0, 310) == LibburnWorld::audioOf("a", 310));
  CHECK(world.sectors(310, 150) == std::string(150 * 2352, '\0'));
  CHECK(world.sectors(460, 400) == LibburnWorld::audioOf("b", 400));
  CHECK(world.sectors(1010, 305) == LibburnWorld::audioOf("c", 305));
}

TEST_CASE("The names of a disc that is written at once stand on it where other programs read them") {
  LibburnWorld world;
  WriteOrder order{.trackBlocks = {310, 320, 330}};
  const char* const russian = "\xD0\x9F\xD0\xB5\xD1\x81\xD0\xBD\xD1\x8F";
  order.text = {{"Evening", "The \xE2\x80\x9CStrings\xE2\x80\x9D"},
                {{"Pr\xC3\xA9lude", ""}, {russian, "Somebody"}, {"It\xE2\x80\x99s over", ""}}};
  SECTION("closed") {
    writeSilence(order);
    const std::string list = trackList(world);
    const auto told = [&list](const std::string& of) { return textOf(of, list); };
    CHECK_THAT(told("Disc"), Contains("TITLE: Evening") && Contains("PERFORMER: The \"Strings\""));
    CHECK_THAT(told("Track  1"), Contains("TITLE: Pr\xC3\xA9lude") && Contains("PERFORMER: The \"Strings\""));
    CHECK_THAT(told("Track  2"), Contains("TITLE: ?????") && Contains("PERFORMER: Somebody"));
    CHECK_THAT(told("Track  3"), Contains("TITLE: It's over") && Contains("PERFORMER: The \"Strings\""));
  }
  SECTION("some without a name") {
    order.text = {{"", ""}, {{"First", ""}, {"", "Somebody"}, {"Third", ""}}};
    writeSilence(order);
    const std::string list = trackList(world);
    const auto told = [&list](const std::string& of) { return textOf(of, list); };
    CHECK_THAT(told("Disc"), !Contains("First") && !Contains("Somebody"));
    CHECK_THAT(told("Track  1"), Contains("TITLE: First") && !Contains("Somebody"));
    CHECK_THAT(told("Track  2"), !Contains("First") && !Contains("Third") && Contains("PERFORMER: Somebody"));
    CHECK_THAT(told("Track  3"), Contains("TITLE: Third") && !Contains("Somebody"));
  }
  SECTION("without names") {
    order.text = {};
    writeSilence(order);
    CHECK_THAT(trackList(world), !Contains("TITLE"));
  }
}

TEST_CASE("Tracks that leave their session open are added to until it is closed") {
  LibburnWorld world;
  world.queueTracks({310});
  world.close(false, false);
  REQUIRE(world.wroteWell());
  CHECK(world.real().LastSessionStatus() == SessionIncomplete);
  world.queueTracks({320, 330});
  world.close(true, true);
  REQUIRE(world.wroteWell());
  CHECK(world.real().SessionCount() == 1);
  CHECK(world.sectors(0, 310) == LibburnWorld::audioOf("a", 310));
  CHECK(world.sectors(462, 320) == LibburnWorld::audioOf("a", 320));
  CHECK(world.sectors(934, 330) == LibburnWorld::audioOf("b", 330));
  CHECK_THAT(trackList(world), Contains("  3: 00:14:34  000934 audio"));
}

TEST_CASE("A second audio session lies behind the first, by tracks at once") {
  LibburnWorld world;
  world.queueTracks({310});
  world.close(true, false);
  REQUIRE(world.wroteWell());
  REQUIRE(world.wroteWell());
  CHECK(world.real().SessionCount() == 2);
  CHECK(world.sectors(310 + 11400, 310) == LibburnWorld::audioOf("a", 310));
}

TEST_CASE("A disc of 99 tracks is written at once") {
  LibburnWorld world;
  world.queueTracks(std::vector<std::int32_t>(99, 300));
  world.close(true, true);
  world.wroteWell();
  INFO(world.words());
  REQUIRE(world.lastLine() == "OnOperationComplete");
  CHECK(world.drive.tracksOnDisc() == 99);
  CHECK_THAT(trackList(world), Contains(" 99: 09:50:00  044100 audio"));
}

TEST_CASE("Three data sessions show all their files to other programs") {
  LibburnWorld world;
  world.real().SetDiscMode(DataBlocks);
  for (const char* name : {"a", "b", "c"}) {
    world.real().ImportLastSession(true);
    REQUIRE(world.real().AddDataFile(DiscPath(std::string("\\") + name), world.plainFile(name, 200000)));
    world.close(true, false);
    REQUIRE(world.wroteWell());
  }
  CHECK(world.real().SessionCount() == 3);
  const std::string list =
      fakes::outputOf("EMULATED_DRIVES='" + world.folder.host("drives").text +
                      "' LD_PRELOAD='" EMULATED_DRIVE_LIBRARY "' xorriso -indev /dev/sr0 -find / -type f");
  for (const char* name : {"'/a'", "'/b'", "'/c'"}) CHECK_THAT(list, Contains(name));
}

TEST_CASE("A write is cancelled in each of its phases within a moment, and leaves a spoilt disc once it was begun") {
  for (const bool library : {true, false})
    for (const std::int32_t position : {0, 1, 200, 309}) {
      LibburnWorld world;
      world.queueTracks({310, 320});
      world.close(library, false);
      world.drive.configure("pace = 1500\n");
      world.real().StartWrite();
      REQUIRE(world.runUntil([&] {
        const auto& told = world.heard().progress;
        return position == 0 ? world.heard().has("OnTrackWriteStart 1 310")
                             : std::ranges::any_of(told, [&](const auto& p) { return p.position >= position; });
      }));
      world.real().AbortWrite();
      const std::string before = world.drive.commands();
      CHECK(world.real().DiscStatus() == DiscClosed);
      CHECK(world.real().EjectDisc());
      CHECK(world.drive.commands().substr(before.size()).find("WRITE ") == std::string::npos);
    }
}

TEST_CASE("A cancelled test leaves the disc blank, and the next write is whole") {
  for (const bool library : {true, false}) {
    LibburnWorld world;
    world.queueTracks({310});
    world.close(library, library);
    world.real().SetTestMode(true);
    world.drive.configure("pace = 500\n");
    world.real().StartWrite();
    REQUIRE(world.runUntil([&] { return !world.heard().progress.empty(); }));
    world.real().AbortWrite();
    CHECK(world.real().DiscStatus() == DiscEmpty);
    world.real().SetTestMode(false);
    world.drive.configure("");
    CHECK(world.wroteWell());
    CHECK(world.sectors(0, 310) == LibburnWorld::audioOf("a", 310));
  }
}

TEST_CASE("All tracks are cached before the first is written, and lie on the disc as without it") {
  for (const bool library : {true, false}) {
    LibburnWorld world;
    world.queueTracks({310, 320, 330});
    world.close(library, library);
    world.real().SetCacheAudioTracks(true);
    REQUIRE(world.wroteWell());
    const std::vector<std::string> begin{"OnWriteStarting", "OnTrackCacheStart 1 310", "OnTrackCacheStart 2 320",
                                         "OnTrackCacheStart 3 330", "OnTrackWriteStart 1 310"};
    CHECK(std::vector<std::string>(world.heard().lines.begin(), world.heard().lines.begin() + 5) == begin);
    const std::int32_t apart = library ? 150 : 152;
    CHECK(world.sectors(0, 310) == LibburnWorld::audioOf("a", 310));
    CHECK(world.sectors(310 + apart, 320) == LibburnWorld::audioOf("b", 320));
    CHECK(world.sectors(630 + 2 * apart, 330) == LibburnWorld::audioOf("c", 330));
  }
}

TEST_CASE("While tracks are cached the tray is locked, no block goes out, and a source that fails costs no disc") {
  for (const bool library : {true, false}) {
    LibburnWorld world;
    struct FailingSource final : Silence {
      explicit FailingSource(const EmulatedDrive& of) : drive(of) {}
      void beginTrack(std::int16_t /*track*/) override {
        log = drive.commands();
        throw fileError(HostPath("/a"), "smoke");
      }
      const EmulatedDrive& drive;
      std::string log;
    } source(world.drive);
    OperationObserver nobody;
    WriteOrder order;
    order.trackBlocks = {310, 320};
    order.closeSession = order.closeDisc = library;
    const RecorderList recorders = world.drive.recorders();
    CHECK_THROWS_WITH(recorders.front()->write(order, source, nobody, {}), "/a: smoke");
    CHECK_THAT(source.log, Contains("PREVENT-ALLOW 1E 00 00 00 01") && !Contains("PREVENT-ALLOW 1E 00 00 00 00"));
    CHECK_THAT(world.drive.commands(), !Contains("WRITE ") && !Contains("SEND-CUE-SHEET"));
    CHECK(recorders.front()->look()->disc->status == DiscEmpty);
    recorders.front()->eject();
  }
}

TEST_CASE("The write guard and the speed reach the drive") {
  LibburnWorld world;
  CHECK(world.real().HasWriteGuard());
  CHECK(world.real().MaxWriteSpeed() == 48);
  world.queueTracks({310});
  for (const bool library : {true, false}) {
    world.insert(359849);
    world.close(library, library);
    world.real().EnableWriteGuard(true);
    world.real().SetWriteSpeed(8);
    REQUIRE(world.wroteWell());
    const std::string type = library ? " 05 32 42 " : " 05 32 41 ";
    CHECK_THAT(world.drive.commands(), Contains(type));
    // What the library sends last counts, and it sends the page more than once.
    CHECK_THAT(world.drive.commands(), !Contains(" 05 32 02 ") && !Contains(" 05 32 01 "));
    CHECK_THAT(world.drive.commands(), Contains("SET-CD-SPEED BB 00 "));
  }
}

TEST_CASE("What was written is read back where the user asks for it, block by block") {
  LibburnWorld world;
  fakes::WriterTranscript heard;
  writer::DiscWriters verifying(world.drive.recorders(), std::make_shared<audio::AudioFiles>(), world.queue,
                                world.patience, writer::WriterSettings{150, world.place("scratch"), true});
  const auto writer = verifying.create(heard);
  REQUIRE(writer->SelectDrive(0));
  REQUIRE(writer->AddAudioTrack(world.audioFile("a", 310), 1));
  REQUIRE(writer->AddAudioTrack(world.audioFile("b", 35), 2));
  for (const bool library : {true, false}) {
    world.insert(359849, false);
    writer->SetCloseSession(library);
    heard.lines.clear();
    writer->StartWrite();
    REQUIRE(world.runUntil([&] { return heard.ended(); }));
    INFO(writer->LastDeviceErrorText());
    CHECK(heard.lines.back() == "OnOperationComplete");
    CHECK_THAT(world.drive.commands(), Contains("READ-CD BE"));
  }
}

TEST_CASE("Recorders stand in the order of their nodes and are known by their own numbers") {
  LibburnWorld world;
  world.folder.write("drives/sr2/drive.ini", "vendor = ACME\nproduct = A|B\nserial = 77\n");
  world.folder.write("drives/sr1/drive.ini", "writes discs = no\n");
  const RecorderList found = findRecorders();
  REQUIRE(found.size() == 2);
  CHECK(found[0]->id() == "EMULATED CD RECORDER 0001");
  CHECK(found[1]->id() == "ACME A/B 77");
  CHECK(found[1]->look()->identity.vendor == "ACME    ");
  CHECK_FALSE(found[1]->look()->disc);
}

TEST_CASE("The place of a mounted disc is found in the table of mounts") {
  std::istringstream table("/dev/sda1 / ext4 rw 0 0\n/dev/sr0 /media/u/My\\040Disc iso9660 ro 0 0\n");
  CHECK(mountedAt("/dev/sr0", table) == "/media/u/My Disc");
  std::istringstream other("/dev/sr10 /media/u/other iso9660 ro 0 0\n");
  CHECK(mountedAt("/dev/sr1", other).empty());
}

TEST_CASE("The sense of a drive is found in the library's words, and told in ours") {
  CHECK(senseIn("SCSI error on write(200,16): [3 0C 00] Medium error. Write error.") == 0x030C00);
  CHECK(senseIn("no [numbers] here") == 0);
  CHECK(wordsOf(0x030C00) == "write error");
  CHECK(wordsOf(0x057204) == "the session has a track that is not complete");
  CHECK(wordsOf(0x04FF17) == "the drive failed");
  CHECK(driveError(0x023A00, "no write").words() == "no write: no disc is in the drive (2/3A/00)");
}

}  // namespace trackloom::engines::libburn
