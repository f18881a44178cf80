#include <catch2/catch.hpp>
#include <filesystem>

#include "engines/virtual/Sandbox.h"

namespace trackloom::engines::virtualrecorder {

using Catch::Matchers::StartsWith;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

TEST_CASE("No hard link leads a write out of the recorder's folder") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const std::string name = GENERATE("disc.ini.new", "disc.cue.new", "disc.bin");
  const std::string theirs = name == "disc.bin" ? "" : "theirs";
  writeFile(box.root() / "victim", theirs);
  fs::create_hard_link(box.root() / "victim", box.disc() / name);
  writeDisc(recorder, audioOrder({300}, true, true));
  CHECK(readFile(box.root() / "victim") == theirs);
  CHECK(readFile(box.disc() / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 300));
  CHECK(names(box.disc()) == Names{"disc.bin", "disc.cue", "disc.ini"});
}

TEST_CASE("Sectors that have another name elsewhere are not added to") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, false, false));
  fs::create_hard_link(box.disc() / "disc.bin", box.root() / "theirs");
  const auto before = snapshot(box.root());
  const char* const words = "030C00 the disc cannot be written: disc.bin has another name";
  CHECK_THAT(failureOf([&] { writeDisc(recorder, audioOrder({300}, true, true)); }), StartsWith(words));
  CHECK_THAT(failureOf([&] { recorder.check(audioOrder({300}, true, true)); }), StartsWith(words));
  CHECK(snapshot(box.root()) == before);
}

TEST_CASE("A cue sheet that a kill left behind is mended when the disc is ejected") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, false, false));
  const std::string old = readFile(box.disc() / "disc.cue");
  writeDisc(recorder, audioOrder({200}, true, true));
  const std::string now = readFile(box.disc() / "disc.cue");
  const int harm = GENERATE(0, 1, 2);
  writeFile(box.disc() / "disc.cue", harm == 0 ? old : std::string(harm == 1 ? now.size() : 0, 'x'));
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(readFile(box.shelf() / "Disc 0001" / "disc.cue") == now);
}

}  // namespace trackloom::engines::virtualrecorder
