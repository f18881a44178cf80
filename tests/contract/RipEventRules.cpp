#include <filesystem>
#include <fstream>

#include "contract/RipperContract.h"
#include "fakes/TestFiles.h"

namespace trackloom::contract {

namespace {

using Lines = std::vector<std::string>;

std::string contentOf(const HostPath& path) {
  return fakes::contentOf(path.text);
}

bool isThere(const HostPath& path) {
  return std::filesystem::exists(path.text);
}

void emptyQueueDoesNotStart(RipperWorld& world) {
  insertTwoTracks(world);
  CHECK_FALSE(world.ripper().StartRip());
  world.ripper().QueueTrack(1, world.out("a.wav"), 1);
  world.ripper().ClearQueue();
  CHECK_FALSE(world.ripper().StartRip());
  CHECK(world.heard().lines.empty());
}

void missingDiscDoesNotStart(RipperWorld& world) {
  insertTwoTracks(world);
  world.ripper().QueueTrack(1, world.out("a.wav"), 1);
  world.takeDiscOut();
  CHECK_FALSE(world.ripper().StartRip());
  CHECK(world.heard().lines.empty());
  CHECK_FALSE(isThere(world.out("a.wav")));
}

void eventsComeInOrder(RipperWorld& world) {
  insertTwoTracks(world);
  REQUIRE(world.ripper().QueueTrack(2, world.out("two.wav"), 12));
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 11));
  CHECK(linesOfRip(world) == Lines{"RipStarted", "TrackStarted 40-60 12", "RipStatus 7 60", "TrackFinished",
                                   "TrackStarted 0-40 11", "RipStatus 7 40", "TrackFinished", "RipFinished"});
  CHECK(world.heard().within);
  CHECK(world.heard().deepest == 1);
}

void secondRipIsLikeTheFirst(RipperWorld& world) {
  insertTwoTracks(world);
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 1));
  const Lines first = linesOfRip(world);
  CHECK(linesOfRip(world) == first);
}

void filesBearTheirNamesAtTheEnd(RipperWorld& world) {
  insertTwoTracks(world);
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 1));
  std::string written;
  world.heard().onLine = [&](const std::string& line) {
    if (line != "TrackFinished") return;
    CHECK_FALSE(isThere(world.out("one.wav")));
    const HostPath path = world.heard().paths.back();
    CHECK(isThere(path));
    std::fstream(path.text, std::ios::binary | std::ios::in | std::ios::out).write("tag", 3);
    written = contentOf(path);
  };
  linesOfRip(world);
  CHECK(written.starts_with("tag"));
  CHECK(contentOf(world.out("one.wav")) == written);
  CHECK_FALSE(isThere(world.heard().paths.back()));
}

void busyEngineChangesNothing(RipperWorld& world) {
  insertTwoTracks(world);
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 1));
  world.heard().onLine = [&](const std::string& line) {
    if (line != "TrackStarted 0-40 1") return;
    CHECK_FALSE(world.ripper().StartRip());
    CHECK_FALSE(world.ripper().QueueTrack(2, world.out("two.wav"), 2));
    world.ripper().ClearQueue();
  };
  const Lines first = linesOfRip(world);
  world.heard().onLine = [](const std::string&) {};
  CHECK(linesOfRip(world) == first);
  CHECK_FALSE(isThere(world.out("two.wav")));
}

void nobodyListensNothingIsMade(RipperWorld& world) {
  insertTwoTracks(world);
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 1));
  REQUIRE(world.ripper().StartRip());
  world.ripper().listen(nullptr);
  world.settle();
  CHECK(world.heard().lines.empty());
  CHECK_FALSE(isThere(world.out("one.wav")));
}

void cancelEndsSoon(RipperWorld& world) {
  insertTwoTracks(world);
  REQUIRE(world.ripper().QueueTrack(1, world.out("one.wav"), 1));
  REQUIRE(world.ripper().QueueTrack(2, world.out("two.wav"), 2));
  world.heard().onLine = [&](const std::string& line) {
    if (line == "TrackStarted 0-40 1") world.ripper().CancelRip();
  };
  CHECK(linesOfRip(world) == Lines{"RipStarted", "TrackStarted 0-40 1", "RipStatus 14 0", "RipFinished"});
  world.ripper().CancelRip();
  world.settle();
  CHECK(world.heard().lines.size() == 4);
  CHECK_FALSE(isThere(world.out("one.wav")));
  CHECK_FALSE(isThere(world.out("two.wav")));
  CHECK_FALSE(isThere(world.heard().paths.back()));
}

void wavHoldsTheDisc(RipperWorld& world) {
  insertTwoTracks(world);
  REQUIRE(world.ripper().QueueTrack(2, world.out("two.wav"), 2));
  linesOfRip(world);
  const std::string file = contentOf(world.out("two.wav"));
  REQUIRE(file.size() == 44 + 20 * 2352 + 128);
  CHECK(file.substr(44, 20 * 2352) == world.soundOf(40, 20));
  CHECK(file.substr(44 + 20 * 2352) == std::string(128, '\0'));
}

}  // namespace

std::vector<RipRule> ripEventRules() {
  return {
      {"An empty queue does not start", emptyQueueDoesNotStart, {}},
      {"Without the disc nothing starts", missingDiscDoesNotStart, {}},
      {"Tracks come in the order of the queue, each with its sectors and its caller's number", eventsComeInOrder, {}},
      {"A second rip is like the first", secondRipIsLikeTheFirst, {}},
      {"A file gets its name once its end has been told, with what was written into it then",
       filesBearTheirNamesAtTheEnd,
       {}},
      {"A rip under way takes no orders", busyEngineChangesNothing, {}},
      {"Where nobody hears the beginning nothing is made", nobodyListensNothingIsMade, {}},
      {"A cancel is told once, ends the rip and leaves no file", cancelEndsSoon, {}},
      {"A WAV file holds the disc's sectors bit for bit, and room for a tag behind them",
       wavHoldsTheDisc,
       {RipAbility::Sound}},
  };
}

}  // namespace trackloom::contract
