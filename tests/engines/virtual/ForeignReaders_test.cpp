#include <catch2/catch.hpp>
#include <filesystem>

#include "engines/virtual/Sandbox.h"

namespace trackloom::engines::virtualrecorder {

using Catch::Matchers::Contains;
namespace fs = std::filesystem;

namespace {

std::string quoted(const fs::path& path) {
  return "'" + path.string() + "'";
}

std::string trackList(const fs::path& disc) {
  return outputOf("cd-info --no-device-info --no-disc-mode --no-header --cue-file=" + quoted(disc / "disc.cue"));
}

}  // namespace

TEST_CASE("cd-info reads the tracks of an audio disc at their places") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({600, 4500}, false, false));
  std::string list = trackList(box.disc());
  CHECK_THAT(list, Contains("CD-ROM Track List (1 - 2)"));
  CHECK_THAT(list, Contains("  1: 00:02:00  000000 audio"));
  CHECK_THAT(list, Contains("  2: 00:12:00  000750 audio"));
  CHECK_THAT(list, Contains("170: 01:12:00  005250 leadout"));
  writeDisc(recorder, audioOrder({300}, true, true));
  list = trackList(box.disc());
  CHECK_THAT(list, Contains("CD-ROM Track List (1 - 3)"));
  CHECK_THAT(list, Contains("  3: 01:14:00  005400 audio"));
  CHECK_THAT(list, Contains("170: 01:18:00  005700 leadout"));
}

TEST_CASE("cd-info reads an audio disc of 99 tracks and two sessions") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder(std::vector<std::int32_t>(98, 300), true, false));
  writeDisc(recorder, audioOrder({300}, true, true));
  const std::string list = trackList(box.disc());
  CHECK_THAT(list, Contains("CD-ROM Track List (1 - 99)"));
  // 98 tracks of 300 blocks with 97 pauses of 150, the gap of 11400 between the sessions, and two seconds of lead-in.
  CHECK_THAT(list, Contains(" 99: 12:20:00  055350 audio"));
}

TEST_CASE("cd-read reads the samples of a track as they were written") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300, 200}, true, true));
  const fs::path out = box.root() / "sectors";
  outputOf("cd-read --mode=audio --start=450 --number=200 --cue-file=" + quoted(box.disc() / "disc.cue") +
           " --output-file=" + quoted(out));
  CHECK(readFile(out) == sectorsOf(AudioBlocks, 1, 0, 200));
}

TEST_CASE("isoinfo reads both sessions of a data disc that another program composed") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  fs::create_directories(box.root() / "one");
  fs::create_directories(box.root() / "two");
  writeFile(box.root() / "one" / "FIRST.TXT", "first session\n");
  writeFile(box.root() / "two" / "SECOND.TXT", "second session\n");
  outputOf("genisoimage -quiet -o " + quoted(box.root() / "one.iso") + " " + quoted(box.root() / "one"));
  writeImage(recorder, readFile(box.root() / "one.iso"), false);
  const fs::path image = box.disc() / "disc.iso";
  CHECK(readFile(image) == readFile(box.root() / "one.iso"));
  CHECK_THAT(outputOf("isoinfo -f -i " + quoted(image)), Contains("/FIRST.TXT"));

  const std::string next = std::to_string(discIn(recorder).nextWritable);
  outputOf("genisoimage -quiet -C 0," + next + " -M " + quoted(image) + " -o " + quoted(box.root() / "two.iso") + " " +
           quoted(box.root() / "two"));
  writeImage(recorder, readFile(box.root() / "two.iso"), true);
  const std::string both = outputOf("isoinfo -f -T " + next + " -i " + quoted(image));
  CHECK_THAT(both, Contains("/FIRST.TXT"));
  CHECK_THAT(both, Contains("/SECOND.TXT"));
  CHECK(outputOf("isoinfo -x '/FIRST.TXT;1' -T " + next + " -i " + quoted(image)) == "first session\n");
  CHECK(outputOf("isoinfo -x '/SECOND.TXT;1' -T " + next + " -i " + quoted(image)) == "second session\n");
}

}  // namespace trackloom::engines::virtualrecorder
