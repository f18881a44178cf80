#include <atomic>
#include <thread>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/ripper/RipWorld.h"
#include "engines/virtual/VirtualRecorders.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::ripper {

namespace {

using Clock = std::chrono::steady_clock;
using Lines = std::vector<std::string>;

void insertAndQueue(RipWorld& world, const std::vector<contract::DiscPart>& tracks) {
  world.insert(tracks);
  REQUIRE(world.ripper().SelectRipDrive(0));
  REQUIRE(world.ripper().ReadTOC());
  for (std::int16_t track = 1; track <= static_cast<std::int16_t>(tracks.size()); ++track)
    if (tracks[static_cast<std::size_t>(track) - 1].audio)
      REQUIRE(world.ripper().QueueTrack(track, world.out(std::to_string(track) + ".wav"), track));
}

const Lines& rip(RipWorld& world) {
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  return world.heard().lines;
}

/// Counts the holds that are kept now.
class Watch final : public Wakefulness {
 public:
  std::atomic<int> kept = 0;

  Hold stayAwake(const std::string& why) override {
    CHECK(why == "A disc is being read");
    ++kept;
    return {nullptr, [this](void*) { --kept; }};
  }
};

constexpr const char* paced = "[recorder]\nrealTimePacing = yes\nmaximumSpeed = 1\n";

/// The sector that a line of progress tells; -1 for any other line. Behind the first one of a track its reading is
/// under way, and what becomes of the disc is no longer a drive that cannot be begun with.
std::int32_t positionOf(const std::string& line) {
  const std::string progress = "RipStatus 7 ";
  return line.starts_with(progress) ? std::stoi(line.substr(progress.size())) : -1;
}

}  // namespace

TEST_CASE("Audio of a mixed disc and of several sessions is ripped, and its data is not") {
  RipWorld world;
  HandMadeDisc(world.folder).layOut({{false, 0, 50}, {true, 200, 30}, {true, 11700, 20}}, {1, 1, 2});
  REQUIRE(world.ripper().SelectRipDrive(0));
  REQUIRE(world.ripper().ReadTOC());
  CHECK_FALSE(world.ripper().QueueTrack(1, world.out("1.wav"), 1));
  CHECK_FALSE(world.ripper().QueueTrack(4, world.out("4.wav"), 4));
  REQUIRE(world.ripper().QueueTrack(2, world.out("2.wav"), 2));
  REQUIRE(world.ripper().QueueTrack(3, world.out("3.wav"), 3));
  rip(world);
  CHECK(world.folder.read("out/2.wav").substr(44, 30 * 2352) == world.soundOf(200, 30));
  CHECK(world.folder.read("out/3.wav").substr(44, 20 * 2352) == world.soundOf(11700, 20));
}

TEST_CASE("Every trouble has its code, and those that do no harm leave the track whole") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 100}});
  world.configure("[faults]\nretryReadAt = 11\njitterAt = 22\nslowReadAt = 33\n");
  const Lines lines = rip(world);
  for (const char* line : {"RipStatus 5 11", "RipStatus 2 22", "RipStatus 3 33"}) CHECK(world.heard().has(line));
  CHECK(lines.back() == "RipFinished");
  CHECK(world.folder.read("out/1.wav").substr(44, 100 * 2352) == world.soundOf(0, 100));
}

TEST_CASE("A sector that cannot be read is tried, given up, and ends its track in that order") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 100}});
  world.spoil(70);
  Lines lines;
  for (const std::string& line : rip(world))
    if (line.starts_with("RipStatus") && !line.starts_with("RipStatus 7")) lines.push_back(line);
  CHECK(lines == Lines{"RipStatus 5 70", "RipStatus 5 70", "RipStatus 5 70", "RipStatus 5 70", "RipStatus 5 70",
                       "RipStatus 6 70", "RipStatus 4 0", "RipStatus 8 0"});
}

TEST_CASE("The words of a track's end stand for a second, with no position behind them") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}});
  world.spoil(0);
  Clock::time_point told;
  bool silent = true;
  world.heard().onLine = [&](const std::string& line) {
    if (line == "RipStatus 8 0") {
      // The second begins when the words are there, however late the window comes to show them.
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      told = Clock::now();
    }
    if (line.starts_with("RipStatus 7") && told != Clock::time_point()) silent = false;
    if (line == "TrackFinished") CHECK(Clock::now() - told >= std::chrono::seconds(1));
  };
  rip(world);
  CHECK(silent);
}

TEST_CASE("A cancel cuts that second short") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}, {true, 40, 20}});
  world.spoil(0);
  world.heard().onLine = [&](const std::string& line) {
    if (line == "RipStatus 8 0") world.ripper().CancelRip();
  };
  const Lines lines = rip(world);
  CHECK(Lines(lines.end() - 3, lines.end()) == Lines{"RipStatus 8 0", "RipStatus 14 0", "RipFinished"});
  CHECK(std::count(lines.begin(), lines.end(), "TrackFinished") == 0);
}

TEST_CASE("A disc that is pulled out costs its track, and the later ones find no drive") {
  RipWorld world;
  world.configure(paced);
  insertAndQueue(world, {{true, 0, 10}, {true, 10, 300}, {true, 310, 20}});
  world.heard().onLine = [&](const std::string& line) {
    if (positionOf(line) > 10) world.takeDiscOut();
  };
  const Lines lines = rip(world);
  CHECK(std::count(lines.begin(), lines.end(), "RipStatus 8 0") == 1);
  CHECK(std::count(lines.begin(), lines.end(), "RipStatus 13 0") == 1);
  CHECK(std::count(lines.begin(), lines.end(), "TrackFinished") == 3);
  CHECK(world.made() == Lines{"1.wav"});
}

TEST_CASE("Another disc in midst of a rip is never taken for the one that was asked for") {
  RipWorld world;
  world.configure(paced);
  insertAndQueue(world, {{true, 0, 300}});
  world.heard().onLine = [&, swapped = false](const std::string& line) mutable {
    if (positionOf(line) <= 0 || std::exchange(swapped, true)) return;
    std::filesystem::rename(world.folder / HandMadeDisc::place(), world.folder / "another place");
    world.insert({{true, 0, 300}});
  };
  const Lines lines = rip(world);
  CHECK(std::count(lines.begin(), lines.end(), "RipStatus 8 0") == 1);
  CHECK(world.made().empty());
}

TEST_CASE("Another disc than the one that was listed is not ripped") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}});
  world.insert({{true, 0, 41}});
  CHECK_FALSE(world.ripper().StartRip());
}

TEST_CASE("Positions come at least every 50 ms while a drive hangs") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}});
  world.makeHang(20);
  std::vector<Clock::time_point> beats;
  world.heard().onLine = [&](const std::string& line) {
    if (line.starts_with("RipStatus 7")) beats.push_back(Clock::now());
  };
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return beats.size() == 20; }));
  // A busy machine may be late at some of them, but not at most.
  const auto whole = beats.back() - beats.front();
  CHECK(whole < 10 * 19 * std::chrono::milliseconds(50));
  world.configure("");
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.made() == Lines{"1.wav"});
}

TEST_CASE("A drive that hangs belongs to its rip beyond the cancel, and is free when it answers again") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}});
  world.makeHang(20);
  REQUIRE(world.ripper().StartRip());
  // The first position comes whether or not the drive has been asked yet; half a second later it hangs.
  REQUIRE(world.runUntil([&] { return world.heard().positions.size() >= 10; }));
  world.ripper().CancelRip();
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.made().empty());
  CHECK_FALSE(world.ripper().SelectRipDrive(0));
  CHECK(world.ripper().LastDriveError() == sense::busy);
  CHECK_FALSE(world.ripper().ReadTOC());
  CHECK_FALSE(world.ripper().StartRip());
  world.configure("");
  CHECK(world.ripper().SelectRipDrive(0));
  CHECK(world.ripper().ReadTOC());
}

TEST_CASE("A rip can be begun at once after a cancel") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 400}, {true, 400, 400}});
  for (int turn = 0; turn < 5; ++turn) {
    world.heard().lines.clear();
    REQUIRE(world.ripper().StartRip());
    REQUIRE(world.runUntil([&] { return world.heard().has("TrackStarted 0-400 1"); }));
    world.ripper().CancelRip();
    world.ripper().CancelRip();
    REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
    CHECK(std::count(world.heard().lines.begin(), world.heard().lines.end(), "RipStatus 14 0") == 1);
  }
  world.heard().lines.clear();
  const Lines lines = rip(world);
  CHECK(std::count(lines.begin(), lines.end(), "TrackFinished") == 2);
}

TEST_CASE("A cancel before the rip has begun to be told makes no file") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}});
  REQUIRE(world.ripper().StartRip());
  world.ripper().CancelRip();
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.heard().lines == Lines{"RipStarted", "RipStatus 14 0", "RipFinished"});
  CHECK(world.made().empty());
}

TEST_CASE("No event comes while the handler of another lets events in") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 100}, {true, 100, 100}});
  world.configure("[faults]\nretryReadAt = 11\njitterAt = 120\n");
  world.heard().onLine = [&](const std::string&) { world.queue.runPosted(); };
  const Lines lines = rip(world);
  CHECK(world.heard().deepest == 1);
  CHECK(std::count(lines.begin(), lines.end(), "TrackFinished") == 2);
}

TEST_CASE("A handler that throws costs no other event") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}});
  world.heard().onLine = [&](const std::string& line) {
    if (line == "TrackFinished") throw std::runtime_error("handler");
  };
  REQUIRE(world.ripper().StartRip());
  CHECK_THROWS_WITH(world.runUntil([&] { return world.heard().ended(); }), "handler");
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.made() == Lines{"1.wav"});
}

TEST_CASE("A listener that goes in midst of a rip is missed by nobody") {
  RipWorld world;
  insertAndQueue(world, {{true, 0, 40}, {true, 40, 20}});
  world.heard().onLine = [&](const std::string& line) {
    if (line == "TrackFinished") world.ripper().listen(nullptr);
  };
  REQUIRE(world.ripper().StartRip());
  world.settle();
  CHECK(world.heard().lines.back() == "TrackFinished");
  CHECK(world.made() == Lines{"1.wav", "2.wav"});
  world.ripper().listen(&world.heard());
  CHECK(world.ripper().SelectRipDrive(0));
}

TEST_CASE("An engine that goes in midst of a rip leaves no file and tells nothing") {
  RipWorld world;
  world.configure(paced);
  insertAndQueue(world, {{true, 0, 400}});
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().has("TrackStarted 0-400 1"); }));
  world.engine.reset();
  const std::size_t told = world.heard().lines.size();
  world.settle();
  CHECK(world.heard().lines.size() == told);
  CHECK(world.made().empty());
}

TEST_CASE("While a rip runs its disc stays in the drive and the computer awake") {
  const auto watch = std::make_shared<Watch>();
  RipWorld world("", watch);
  const auto recorders = virtualrecorder::findVirtualRecorders(HostPath(world.folder.path()));
  insertAndQueue(world, {{true, 0, 40}});
  world.heard().onLine = [&](const std::string& line) {
    if (line == "RipStarted" || line == "RipFinished") return;
    CHECK(watch->kept == 1);
    if (line == "RipStatus 7 40") CHECK_THROWS_AS(recorders.front()->eject(), EngineError);
  };
  rip(world);
  CHECK(watch->kept == 0);
  CHECK_NOTHROW(recorders.front()->eject());
}

TEST_CASE("Contents that cannot be had are an error with number and words") {
  RipWorld world;
  world.insert({{true, 0, 40}});
  REQUIRE(world.ripper().SelectRipDrive(0));
  world.configure("[faults]\nhideContents = yes\n");
  CHECK_FALSE(world.ripper().ReadTOC());
  world.configure("[faults]\nfailContents = yes\nfailNumber = 3/02/00\nfailText = no seek\n");
  try {
    world.ripper().ReadTOC();
    FAIL("it was read");
  } catch (const RuntimeError& error) {
    CHECK(error.number() == 0x030200);
    CHECK(error.description() == "no seek (3/02/00)");
  }
  CHECK(world.ripper().TrackCount() == 0);
}

TEST_CASE("A drive that reads at its own pace is not hurried") {
  RipWorld world;
  world.configure("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 2\n");
  insertAndQueue(world, {{true, 0, 150}});
  const auto begun = Clock::now();
  rip(world);
  CHECK(Clock::now() - begun >= std::chrono::milliseconds(950));
}

TEST_CASE("Calls that a drive may keep waiting let the window be painted") {
  RipWorld world;
  world.insert({{true, 0, 40}});
  const int before = world.patience.waits;
  world.ripper().SelectRipDrive(0);
  world.ripper().DiscPresent();
  world.ripper().ReadTOC();
  world.ripper().MaxSpeed();
  CHECK(world.patience.waits >= before + 4);
}

}  // namespace trackloom::engines::ripper
