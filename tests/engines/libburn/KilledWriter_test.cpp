#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "engines/libburn/FoundDrives.h"
#include "engines/libburn/LibburnWorld.h"

namespace trackloom::engines::libburn {

namespace {

constexpr const char* wayName = "TRACKLOOM_KILLED_WRITER";
constexpr const char* writerName = "A write of a process that kills itself in its midst";

WriteOrder orderOf(bool library) {
  WriteOrder order;
  order.trackBlocks = {310, 320};
  order.closeSession = library;
  order.closeDisc = false;
  return order;
}

/// Ends its process when so many sectors of the second track were asked for.
struct DeadlySource final : SectorSource {
  void beginTrack(std::int16_t number) override { track = number; }
  void read(std::span<std::byte> sectors) override {
    std::ranges::fill(sectors, std::byte{7});
    if (track == 2) left -= std::ssize(sectors) / 2352;
    if (left <= 0) ::raise(SIGKILL);
  }
  std::int16_t bufferPercent() override { return 100; }

  std::int16_t track = 1;
  std::int64_t left = 100;
};

/// Another process, which sees the same drives; the signal that ended it.
int signalOfWriter(bool library) {
  ::setenv(wayName, library ? "library" : "tracks", 1);
  std::string program = "/proc/self/exe";
  std::string test = writerName;
  char* words[] = {program.data(), test.data(), nullptr};
  pid_t id = 0;
  REQUIRE(::posix_spawn(&id, program.c_str(), nullptr, nullptr, words, environ) == 0);
  int end = 0;
  ::waitpid(id, &end, 0);
  ::unsetenv(wayName);
  return WIFSIGNALED(end) ? WTERMSIG(end) : 0;
}

}  // namespace

TEST_CASE("A write of a process that kills itself in its midst", "[.]") {
  const char* way = ::getenv(wayName);
  if (way == nullptr) return;
  DeadlySource source;
  OperationObserver nobody;
  findRecorders().front()->write(orderOf(std::string(way) == "library"), source, nobody, {});
}

TEST_CASE("Behind a process that was killed in mid-write the next start finds a closed disc, and the drive free") {
  for (const bool library : {true, false}) {
    const fakes::TempFolder folder;
    const EmulatedDrive drive(folder);
    drive.insert(359849, true);
    REQUIRE(signalOfWriter(library) == SIGKILL);
    REQUIRE(drive.commands().find("WRITE ") != std::string::npos);
    const auto recorder = drive.recorders().front();
    const auto disc = recorder->look()->disc;
    REQUIRE(disc);
    CHECK(disc->status == DiscClosed);
    CHECK(disc->freeAudioBlocks <= 0);
    CHECK_THROWS_WITH(recorder->check(orderOf(library)), Catch::Matchers::Contains("(5/30/05)"));
    recorder->eject();
    CHECK_FALSE(recorder->look()->disc);
    std::filesystem::rename(drive.place() / "out", drive.place() / "disc");
    OperationObserver nobody;
    recorder->erase(true, nobody, {});
    CHECK(recorder->look()->disc->status == DiscEmpty);
  }
}

TEST_CASE("A session that stands on the disc is whole behind a process that was killed in the next one") {
  LibburnWorld world;
  world.queueTracks({310});
  world.close(true, false);
  REQUIRE(world.wroteWell());
  REQUIRE(signalOfWriter(true) == SIGKILL);
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.sectors(0, 310) == LibburnWorld::audioOf("a", 310));
  const auto sound = findRecorders().front()->read(0, 310);
  CHECK(std::string(reinterpret_cast<const char*>(sound.data()), sound.size()) == LibburnWorld::audioOf("a", 310));
}

}  // namespace trackloom::engines::libburn
