#include <fcntl.h>
#include <unistd.h>

#include "engines/disc/NodeFailure.h"
#include "engines/libburn/FoundDrives.h"
#include "engines/libburn/LibburnWorld.h"

namespace trackloom::engines::libburn {

using Catch::Matchers::Contains;

namespace {

/// Both ways of writing: by the library, and with the session left open.
enum class Way { Library, LeftOpen };

void prepare(LibburnWorld& world, Way way) {
  world.queueTracks({310, 320});
  world.close(way == Way::Library, way == Way::Library);
}

void checkSpoilt(LibburnWorld& world) {
  CHECK(world.real().MediaLoaded());
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().FreeBlocks(AudioBlocks) <= 0);
}

}  // namespace

TEST_CASE("A write error is told with the drive's number and in words, and the disc is spoilt") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    world.drive.configure("fault = WRITE 3/0C/00 block 200\n");
    REQUIRE(world.write());
    CHECK(world.lastLine() == failedWith(0x030C00));
    CHECK_THAT(world.words(), Contains("write error (3/0C/00)"));
    CHECK_FALSE(world.heard().has("OnTrackClosing 1"));
    checkSpoilt(world);
  }
}

TEST_CASE("A laser that cannot be calibrated on a disc is told") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    world.drive.configure(std::string("fault = ") + (way == Way::Library ? "WRITE" : "SEND-OPC") + " 3/73/03\n");
    REQUIRE(world.write());
    CHECK(world.lastLine() == failedWith(0x037303));
    CHECK_THAT(world.words(), Contains("calibrated"));
  }
}

TEST_CASE("A closing that fails is no success") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    world.drive.configure("fault = SYNCHRONIZE-CACHE 3/72/00\n");
    REQUIRE(world.write());
    CHECK(world.lastLine().starts_with("OnWriteError 3 "));
    checkSpoilt(world);
  }
}

TEST_CASE("A data session whose closing fails is no success") {
  LibburnWorld world;
  world.real().SetDiscMode(DataBlocks);
  REQUIRE(world.real().AddDataFile(DiscPath("\\a.mp3"), world.plainFile("a", 700000)));
  world.close(true, false);
  world.drive.configure("fault = CLOSE-TRACK-SESSION 3/72/00\n");
  REQUIRE(world.write());
  CHECK(world.lastLine() == failedWith(0x037200));
}

TEST_CASE("A disc that is taken out in mid-write ends it, and none is in the drive") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    world.drive.configure("fault = WRITE removed block 200\n");
    REQUIRE(world.write());
    CHECK(world.lastLine() == failedWith(0x023A00));
    CHECK_FALSE(world.real().MediaLoaded());
    world.drive.configure("");
    world.insert(359849);
    CHECK(world.real().DiscStatus() == DiscEmpty);
    CHECK(world.wroteWell());
  }
}

TEST_CASE("A drive that is unplugged in mid-write ends it, and is there again when it is back") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    world.drive.configure("fault = * unplugged after 60\n");
    REQUIRE(world.write());
    CHECK(world.lastLine().starts_with("OnWriteError 3 "));
    CHECK_FALSE(world.real().MediaLoaded());
    CHECK_FALSE(world.real().EjectDisc());
    world.drive.configure("");
    CHECK(world.real().MediaLoaded());
  }
}

TEST_CASE("A drive that another program holds is not written, and the disc is still looked at") {
  LibburnWorld world;
  prepare(world, Way::Library);
  const int other = ::open("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
  REQUIRE(other >= 0);
  CHECK(world.real().DiscStatus() == DiscEmpty);
  REQUIRE(world.write());
  CHECK(world.lastLine() == failedWith(0x020408));
  CHECK_THAT(world.words(), Contains("in use by another program"));
  CHECK_FALSE(world.real().EjectDisc());
  ::close(other);
  CHECK(world.wroteWell());
}

TEST_CASE("A disc that the desktop has mounted is unmounted before it is written, erased, closed or ejected") {
  LibburnWorld world;
  world.insert(5000, true);
  FakeMounts& mounts = *world.drive.mounts;
  prepare(world, Way::LeftOpen);
  const auto mounted = [&](const auto& deed) {
    mounts.mount();
    REQUIRE(mounts.mounted());
    mounts.asked.clear();
    world.heard().lines.clear();
    CHECK(deed());
    CHECK(mounts.asked == std::vector<std::string>{"/dev/sr0"});
  };
  const auto ends = [&] { return world.runUntil([&] { return world.heard().ended(); }); };
  mounted([&] { return world.wroteWell(); });
  mounted([&] { return world.real().CloseLastSession(false) && ends(); });
  mounted([&] { return world.real().EraseDisc(true) && ends() && world.lastLine() == "OnEraseComplete"; });
  prepare(world, Way::Library);
  mounted([&] { return world.wroteWell(); });
  mounted([&] { return world.real().EjectDisc(); });
}

TEST_CASE("A disc that cannot be unmounted is left alone, and what the service says is told") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    world.drive.mounts->says = "target is busy";
    world.drive.mounts->mount();
    REQUIRE(world.write());
    CHECK(world.lastLine() == failedWith(0x020408));
    CHECK(world.words() == "the drive /dev/sr0 is in use by another program (target is busy) (2/04/08)");
    CHECK_FALSE(world.real().EjectDisc());
    CHECK(world.drive.commands().find("WRITE ") == std::string::npos);
    CHECK(world.drive.commands().find("START-STOP") == std::string::npos);
  }
}

TEST_CASE("A drive that is held for another reason is told as it is, whether there is a disc service or not") {
  LibburnWorld world;
  const fakes::TempFolder empty;
  const int other = ::open("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
  REQUIRE(other >= 0);
  const auto eject = [](const RecorderList& recorders) {
    try {
      recorders.front()->eject();
    } catch (const EngineError& error) {
      return error.words();
    }
    return std::string("ejected");
  };
  CHECK_THAT(eject(findRecorders()), Contains("in use by another program"));
  CHECK_THAT(eject(world.drive.recorders()), Contains("in use by another program"));
  ::close(other);
  CHECK(eject(findRecorders()) == "ejected");
}

TEST_CASE("A drive is free for other programs whenever nothing runs") {
  LibburnWorld world;
  const auto free = [] {
    const int other = ::open("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
    if (other >= 0) ::close(other);
    return other >= 0;
  };
  CHECK(free());
  prepare(world, Way::Library);
  CHECK(world.wroteWell());
  CHECK(free());
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(free());
}

TEST_CASE("A drive that becomes ready is waited for") {
  LibburnWorld world;
  world.drive.configure("fault = TEST-UNIT-READY 2/04/01 times 5\n");
  CHECK(world.real().MediaLoaded());
  world.drive.configure("fault = TEST-UNIT-READY 2/04/01\n");
  CHECK_FALSE(world.real().MediaLoaded());
  world.drive.configure("");
  CHECK(world.real().MediaLoaded());
}

TEST_CASE("An attention that comes with any command costs no look and no write") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    for (const char* command : {"TEST-UNIT-READY", "READ-DISC-INFORMATION", "READ-TRACK-INFORMATION", "MODE-SENSE"}) {
      world.drive.configure(std::string("fault = ") + command + " 6/29/00 times 1\n");
      CHECK(world.real().DiscStatus() == DiscEmpty);
    }
    world.drive.configure("fault = MODE-SELECT 6/2A/01 times 1\n");
    if (way == Way::LeftOpen) CHECK(world.wroteWell());
  }
}

TEST_CASE("A disc is exchanged between two looks, whatever the drive remembers of it") {
  LibburnWorld world;
  CHECK(world.real().FreeBlocks(AudioBlocks) == 359849);
  world.insert(1000, true);
  CHECK(world.real().FreeBlocks(AudioBlocks) == 1000);
  CHECK(world.real().DiscRewritable());
  world.takeDiscOut();
  CHECK_FALSE(world.real().MediaLoaded());
}

TEST_CASE("A disc whose writer was killed in mid-write is closed, in either way of writing") {
  for (const char* state :
       {"session open 160\ntrack 1 1 0 0 -150 0 160 0 0\n", "session open 160\ntrack 1 1 0 0 -150 0 400 0 2\n"}) {
    LibburnWorld world;
    world.folder.write("drives/sr0/disc/disc", std::string("medium CD-RW\nblocks 5000\n") + state);
    checkSpoilt(world);
    prepare(world, Way::LeftOpen);
    REQUIRE(world.write());
    CHECK(world.lastLine() == failedWith(0x053005));
    world.heard().lines.clear();
    CHECK(world.real().EraseDisc(true));
    REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
    CHECK(world.wroteWell());
  }
}

TEST_CASE("A disc that is no CD is never written, though the drive could") {
  LibburnWorld world;
  world.drive.configure("profile = 27\n");
  prepare(world, Way::Library);
  CHECK(world.real().DiscType() == DiscTypeUnknown);
  checkSpoilt(world);
  REQUIRE(world.write());
  CHECK(world.lastLine() == failedWith(0x053005));
  CHECK(world.drive.commands().find("WRITE ") == std::string::npos);
  CHECK_FALSE(world.real().EraseDisc(true));
}

TEST_CASE("The tray is locked while a write runs, and free behind it") {
  for (const Way way : {Way::Library, Way::LeftOpen}) {
    LibburnWorld world;
    prepare(world, way);
    REQUIRE(world.wroteWell());
    const std::string log = world.drive.commands();
    const std::size_t locked = log.find("PREVENT-ALLOW 1E 00 00 00 01");
    CHECK(locked < log.find("WRITE "));
    CHECK(log.rfind("PREVENT-ALLOW 1E 00 00 00 00") > log.rfind("WRITE "));
  }
}

TEST_CASE("An erase that fails is told, and a spoilt disc is erased") {
  LibburnWorld world;
  world.insert(5000, true);
  prepare(world, Way::LeftOpen);
  world.drive.configure("fault = WRITE 3/0C/00 block 200\n");
  REQUIRE(world.write());
  checkSpoilt(world);
  const auto erase = [&] {
    world.heard().lines.clear();
    CHECK(world.real().EraseDisc(true));
    REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
    return world.lastLine();
  };
  world.drive.configure("fault = BLANK 3/51/00\n");
  CHECK(erase() == failedWith(0x035100));
  world.drive.configure("erase time = 60\n");
  CHECK(erase() == "OnEraseComplete");
  CHECK(world.real().DiscStatus() == DiscEmpty);
  world.drive.configure("");
  CHECK(world.wroteWell());
}

TEST_CASE("A stuck tray keeps the disc") {
  LibburnWorld world;
  world.drive.configure("tray stuck = yes\n");
  CHECK_FALSE(world.real().EjectDisc());
  CHECK(world.real().MediaLoaded());
  world.drive.configure("");
  CHECK(world.real().EjectDisc());
  CHECK_FALSE(world.real().MediaLoaded());
}

}  // namespace trackloom::engines::libburn
