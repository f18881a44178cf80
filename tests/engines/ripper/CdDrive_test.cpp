#include "engines/ripper/CdDrive.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <stdlib.h>
#include <sys/ioctl.h>

#include "contract/RipperContract.h"
#include "drive/Disc.h"
#include "drive/Sectors.h"
#include "engines/disc/Sense.h"
#include "engines/encoder/LameEncoders.h"
#include "engines/libburn/FoundDrives.h"
#include "engines/ripper/FullContents.h"
#include "engines/ripper/LeadInPacks.h"
#include "engines/ripper/RipWorld.h"
#include "engines/virtual/VirtualRecorders.h"
#include "fakes/TestFiles.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::ripper {

namespace {

/// The real engine, libcdio and its paranoia below it, and below those a drive that is emulated.
class CdWorld : public contract::RipperWorld {
 public:
  CdWorld() {
    ::setenv("EMULATED_DRIVES", (folder / "drives").c_str(), 1);
    configure("");
    folder.write("out/keep", "");
    rippers = std::make_unique<DiscRippers>(cdDrives(libburn::seenDrives()), queue, patience,
                                            RipperSettings{HostPath(folder.path()), 2});
    engine = rippers->create();
    engine->listen(&transcript);
  }
  ~CdWorld() override {
    engine.reset();
    ::unsetenv("EMULATED_DRIVES");
  }

  bool can(contract::RipAbility ability) const override { return ability != contract::RipAbility::Hanging; }
  CDRipperX& ripper() override { return *engine; }
  Mp3Stream& encoder() override { return lame->Encoder(); }
  fakes::RipperTranscript& heard() override { return transcript; }
  bool runUntil(const std::function<bool()>& done) override { return queue.runUntil(done); }
  void settle() override {
    queue.runUntil([] { return false; }, std::chrono::seconds(1));
  }

  void insert(const std::vector<contract::DiscPart>& tracks) override { layOut(tracks, {}); }
  /// Each track in the session of its place in `sessions`; where that has none, in the first.
  void layOut(const std::vector<contract::DiscPart>& tracks, const std::vector<int>& sessions,
              std::uint8_t control = 0) {
    takeDiscOut();
    std::filesystem::create_directories(folder / "drives/sr0/disc");
    emulated::Disc disc;
    disc.finalized = true;
    const emulated::Sectors sectors(folder / "drives/sr0/disc");
    for (std::size_t at = 0; at < tracks.size(); ++at) {
      emulated::Track track;
      track.number = static_cast<std::int32_t>(at) + 1;
      track.session = sessions.empty() ? 1 : sessions[at];
      track.kind = tracks[at].audio ? emulated::Kind::Audio : emulated::Kind::Mode1;
      track.control = tracks[at].audio ? control : std::uint8_t{4};
      track.pregap = track.start = tracks[at].start;
      track.end = track.start + tracks[at].length;
      disc.sessions.resize(static_cast<std::size_t>(track.session));
      disc.sessions.back() = {true, track.end};
      disc.tracks.push_back(track);
      write(sectors, track, at + 7);
    }
    disc.save(folder / "drives/sr0/disc/disc");
  }
  void takeDiscOut() override { std::filesystem::remove_all(folder / "drives/sr0/disc"); }
  void refuseDrive() override { configure("fault = INQUIRY 4/44/00\n"); }
  void spoil(std::int32_t sector) override {
    configure("fault = READ-CD 3/11/00 block " + std::to_string(sector) + "\n");
  }
  void makeHang(std::int32_t) override {}
  std::string soundOf(std::int32_t sector, std::int32_t count) override {
    const emulated::Sectors sectors(folder / "drives/sr0/disc");
    std::string sound;
    for (std::int32_t at = sector; at < sector + count; ++at) {
      const emulated::RawSector raw = sectors.read(at);
      sound.append(raw.begin(), raw.end());
    }
    return sound;
  }
  HostPath out(const std::string& name) override { return folder.host("out/" + name); }
  void configure(const std::string& ini) const { folder.write("drives/sr0/drive.ini", ini); }

  fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::RipperTranscript transcript;
  std::unique_ptr<MP3EncoderX> lame = encoder::LameEncoders().create();
  std::unique_ptr<DiscRippers> rippers;
  std::unique_ptr<CDRipperX> engine;

 private:
  static void write(const emulated::Sectors& sectors, const emulated::Track& track, std::size_t seed) {
    const bool audio = track.kind == emulated::Kind::Audio;
    const auto count = static_cast<std::size_t>(track.end - track.start);
    const std::string content = fakes::noise(count * emulated::bytesOf(track.kind), seed);
    const emulated::Mark mark{static_cast<std::uint8_t>(track.session), static_cast<std::uint8_t>(track.number), 1,
                              static_cast<std::uint8_t>(track.control << 4U | static_cast<unsigned>(audio ? 0 : 1))};
    sectors.write(track.start, emulated::View(reinterpret_cast<const std::uint8_t*>(content.data()), content.size()),
                  mark);
  }
};

void listContents(CdWorld& world) {
  REQUIRE(world.ripper().SelectRipDrive(0));
  REQUIRE(world.ripper().ReadTOC());
}

}  // namespace

TEST_CASE("The rip engine keeps its contract over a drive of the machine") {
  contract::keepsTheRipContract<CdWorld>();
}

TEST_CASE("A drive of the machine reads tracks of minutes bit for bit") {
  CdWorld world;
  world.insert({{true, 0, 3000}, {true, 3000, 1500}});
  listContents(world);
  world.ripper().QueueTrack(1, world.out("1.wav"), 1);
  world.ripper().QueueTrack(2, world.out("2.wav"), 2);
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.folder.read("out/1.wav").substr(44, 3000 * 2352) == world.soundOf(0, 3000));
  CHECK(world.folder.read("out/2.wav").substr(44, 1500 * 2352) == world.soundOf(3000, 1500));
}

TEST_CASE("The last track of a session ends at that session's lead-out") {
  CdWorld world;
  world.layOut({{true, 0, 400}, {true, 400, 300}, {false, 12100, 500}}, {1, 1, 2});
  listContents(world);
  CHECK(world.ripper().TrackCount() == 3);
  CHECK(world.ripper().TrackLength(2) == 300);
  CHECK_FALSE(world.ripper().TrackIsAudio(3));
}

TEST_CASE("Pre-emphasis is seen in the table of contents") {
  CdWorld world;
  world.layOut({{true, 0, 400}}, {}, 1);
  const auto contents = cdDrives(libburn::seenDrives()).front()->contents();
  REQUIRE(contents);
  CHECK(contents->tracks.front().preEmphasis);
}

TEST_CASE("A drive of the machine tells the names in its disc's lead-in, and a disc without any is read too") {
  CdWorld world;
  world.insert({{true, 0, 40}, {true, 190, 40}});
  CHECK(cdDrives(libburn::seenDrives()).front()->contents().value().text == DiscText{});
  const auto packs = LeadInPacks().add(0x80, {"Album", "One", "Two"}).add(0x81, {"Artist", "Artist", "Guest"}).packs(2);
  emulated::Sectors(world.folder / "drives/sr0/disc").writeText(packs);
  CHECK(cdDrives(libburn::seenDrives()).front()->contents().value().text ==
        DiscText{{"Album", "Artist"}, {{"One", "Artist"}, {"Two", "Guest"}}});
}

TEST_CASE("While a drive of the machine is read its tray is locked, and free afterwards") {
  CdWorld world;
  world.insert({{true, 0, 40}});
  listContents(world);
  world.ripper().QueueTrack(1, world.out("1.wav"), 1);
  const auto ejects = [] {
    const FileDescriptor node(::open("/dev/sr0", O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    return ::ioctl(node.get(), CDROMEJECT) == 0;
  };
  world.heard().onLine = [&](const std::string& line) {
    if (line == "TrackFinished") CHECK_FALSE(ejects());
  };
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(ejects());
}

TEST_CASE("A drive that another program holds is told in words") {
  CdWorld world;
  world.insert({{true, 0, 40}});
  REQUIRE(world.ripper().SelectRipDrive(0));
  const CdNode other("/dev/sr0", CdNode::Hold::Alone);
  try {
    world.ripper().ReadTOC();
    FAIL("it was read");
  } catch (const RuntimeError& error) {
    CHECK(error.number() == sense::busy);
    CHECK(error.description() == "the drive /dev/sr0 is in use by another program (2/04/08)");
  }
}

TEST_CASE("A blank disc is there and lists nothing") {
  CdWorld world;
  world.folder.write("drives/sr0/disc/disc", "medium CD-R\nblocks 359849\n");
  REQUIRE(world.ripper().SelectRipDrive(0));
  CHECK(world.ripper().DiscPresent());
  CHECK_FALSE(world.ripper().ReadTOC());
}

TEST_CASE("A cancel ends the retries of a drive of the machine") {
  CdWorld world;
  world.insert({{true, 0, 3000}});
  listContents(world);
  world.spoil(1500);
  world.ripper().QueueTrack(1, world.out("1.wav"), 1);
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().has("RipStatus 5 1500") || world.heard().ended(); }));
  world.ripper().CancelRip();
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.ripper().SelectRipDrive(0));
}

TEST_CASE("Every known drive has its place among those that read, and is the one that there is") {
  CdWorld world;
  virtualrecorder::createVirtualRecorder(world.folder.host("Virtual Recorder"));
  const RecorderList recorders = virtualrecorder::findVirtualRecorders(HostPath(world.folder.path()));
  const std::vector<KnownDrive> known{{"gone", "V", "reader", true},
                                      {"Virtual Recorder", "v", "p"},
                                      {"EMULATED CD RECORDER 0001", "v", "p", true},
                                      {"away", "V", "recorder"}};
  const ReadingDrives drives = drivesInOrder(known, recorders, cdDrives(libburn::seenDrives()));
  REQUIRE(drives.size() == 4);
  CHECK(drives[0]->names().product == "reader (not connected)");
  CHECK_FALSE(drives[0]->discPresent());
  CHECK(drives[1]->id() == "Virtual Recorder");
  CHECK(drives[2]->id() == "EMULATED CD RECORDER 0001");
  CHECK(drives[2]->names().vendor == "EMULATED");
  CHECK(dynamic_cast<CdDrive*>(drives[2].get()) != nullptr);
  CHECK(drives[3]->names().product == "recorder (not connected)");
}

TEST_CASE("A recorder of the machine is one drive, whether it writes or reads") {
  const CdWorld world;
  const RecorderList recorders = libburn::findRecorders();
  REQUIRE(recorders.size() == 1);
  const ReadingDrives drives = drivesInOrder(asKnown(recorders), recorders, cdDrives(libburn::seenDrives()));
  REQUIRE(drives.size() == 1);
  CHECK(drives[0]->id() == recorders[0]->id());
  CHECK(dynamic_cast<CdDrive*>(drives[0].get()) != nullptr);
}

TEST_CASE("A table of contents of any bytes is read without harm") {
  std::uint32_t state = 5;
  for (int round = 0; round < 20000; ++round) {
    std::vector<std::uint8_t> bytes;
    for (std::uint32_t left = round % 120; left > 0; --left) {
      state = state * 1664525U + 1013904223U;
      bytes.push_back(static_cast<std::uint8_t>((state >> 24) % (round % 2 == 0 ? 256 : 8)));
    }
    const auto contents = contentsFrom(bytes);
    if (!contents) continue;
    for (const ContentsTrack& track : contents->tracks) CHECK((track.start >= 0 && track.length > 0));
  }
}

}  // namespace trackloom::engines::ripper
