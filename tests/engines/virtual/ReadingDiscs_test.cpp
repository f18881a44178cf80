#include <catch2/catch.hpp>

#include "engines/virtual/Sandbox.h"
#include "engines/virtual/VirtualDisc.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr const char* mixedDisc = R"([disc]
medium = CD-R
status = closed
blocks = 359849
[session 1]
status = closed
[track 1]
session = 1
kind = data
start = 0
length = 300
pregap = 0
[track 2]
session = 1
kind = audio
start = 450
length = 20
pregap = 150
)";

/// Data in track 1, sound in track 2, as somebody lays such a disc out by hand.
void layOutMixedDisc(const Sandbox& box) {
  box.describeDisc(mixedDisc);
  writeFile(box.disc() / "disc.iso", sectorsOf(DataBlocks, 1, 0, 300));
  writeFile(box.disc() / "disc.bin", std::string(450 * audioSectorBytes, '\0') + sectorsOf(AudioBlocks, 2, 0, 20));
}

std::string textOf(const std::vector<std::byte>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

TEST_CASE("A closed disc may hold data and sound, each read from its own file") {
  const Sandbox box;
  layOutMixedDisc(box);
  VirtualRecorder recorder = box.recorder();
  const DiscState disc = discIn(recorder);
  REQUIRE(disc.tracks.size() == 2);
  CHECK(disc.status == DiscClosed);
  CHECK(disc.tracks[0].kind == DataBlocks);
  CHECK(disc.tracks[1].kind == AudioBlocks);
  CHECK(textOf(recorder.read(290, 10)) == sectorsOf(DataBlocks, 1, 290, 10));
  CHECK(textOf(recorder.read(452, 18)) == sectorsOf(AudioBlocks, 2, 2, 18));
  CHECK(textOf(recorder.read(440, 10)) == std::string(10 * audioSectorBytes, '\0'));
}

TEST_CASE("No reading goes from data over to sound, nor behind the last track") {
  const Sandbox box;
  layOutMixedDisc(box);
  VirtualRecorder recorder = box.recorder();
  CHECK(failureOf([&] { recorder.read(299, 160); }) ==
        "052100 the disc has no 160 recorded blocks from block 299 on (5/21/00)");
  CHECK(failureOf([&] { recorder.read(460, 11); }) ==
        "052100 the disc has no 11 recorded blocks from block 460 on (5/21/00)");
  CHECK(failureOf([&] { recorder.read(-1, 1); }) ==
        "052100 the disc has no 1 recorded blocks from block -1 on (5/21/00)");
}

TEST_CASE("A mixed disc whose file of either kind has another length is damaged") {
  for (const char* file : {"disc.iso", "disc.bin"}) {
    const Sandbox box;
    layOutMixedDisc(box);
    writeFile(box.disc() / file, readFile(box.disc() / file) + "x");
    VirtualRecorder recorder = box.recorder();
    CHECK(discIn(recorder).tracks.empty());
  }
}

TEST_CASE("An eject makes no cue sheet for a mixed disc") {
  const Sandbox box;
  layOutMixedDisc(box);
  VirtualRecorder recorder = box.recorder();
  recorder.eject();
  CHECK(names(box.shelf() / "Disc 0001") == std::vector<std::string>{"disc.bin", "disc.ini", "disc.iso"});
}

TEST_CASE("While somebody holds the disc it is neither ejected nor written") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  auto hold = recorder.holdDisc();
  CHECK(ejectFailure(recorder).starts_with("020408 Virtual Recorder is busy"));
  CHECK(failureOf([&] { recorder.check(audioOrder({300}, true, true)); }).starts_with("020408 "));
  CHECK(failureOf([&] { recorder.holdDisc(); }).starts_with("020408 "));
  CHECK(recorder.look()->disc);
  hold.reset();
  CHECK(ejectFailure(recorder) == "no failure");
}

TEST_CASE("What a reader is to meet stands in recorder.ini, and nothing else happens") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const ReadConditions none = recorder.readConditions(8);
  CHECK(none.sectorsPerSecond == 0);
  CHECK_FALSE((none.unreadable || none.retried || none.jitter || none.slowed || none.hanging));
  CHECK_FALSE((none.noContents || none.contentsFailure));
  box.configure(
      "[recorder]\nrealTimePacing = yes\n[faults]\nfailReadAt = 1\nretryReadAt = 2\njitterAt = 3\nslowReadAt = 4\n"
      "hangReadAt = 5\nhideContents = yes\nfailContents = yes\nfailNumber = 3/02/00\nfailText = scratched\n");
  const ReadConditions all = recorder.readConditions(8);
  CHECK(all.sectorsPerSecond == 8 * 75);
  CHECK(recorder.readConditions(0).sectorsPerSecond == 52 * 75);
  CHECK(all.unreadable == 1);
  CHECK(all.retried == 2);
  CHECK(all.jitter == 3);
  CHECK(all.slowed == 4);
  CHECK(all.hanging == 5);
  CHECK(all.noContents);
  REQUIRE(all.contentsFailure);
  CHECK(all.contentsFailure->number() == 0x030200);
  CHECK(all.contentsFailure->words() == "scratched (3/02/00)");
}

}  // namespace trackloom::engines::virtualrecorder
