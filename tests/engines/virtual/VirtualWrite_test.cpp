#include "engines/virtual/VirtualWrite.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <catch2/catch.hpp>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "engines/virtual/Sandbox.h"
#include "engines/virtual/VirtualRecorders.h"

namespace trackloom::engines::virtualrecorder {

using Catch::Matchers::Contains;
using Catch::Matchers::StartsWith;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

constexpr std::size_t audioSector = 2352;
constexpr std::size_t dataSector = 2048;

void checkSpoilt(VirtualRecorder& recorder) {
  const DiscState state = discIn(recorder);
  CHECK(state.status == DiscClosed);
  CHECK(state.freeAudioBlocks == 0);
  CHECK(state.freeDataBlocks == 0);
  CHECK(state.lastSession != SessionIncomplete);
  CHECK_THAT(failureOf([&] { recorder.check(audioOrder({10}, true, true)); }), StartsWith("053005 the disc is spoilt"));
}

std::string silence(std::size_t blocks) {
  return std::string(blocks * audioSector, '\0');
}

/// Runs `write` in a child and kills it once `write` has called the function given to it.
void killAt(const std::function<void(const std::function<void()>& reached)>& write) {
  std::array<int, 2> ends{};
  REQUIRE(pipe(ends.data()) == 0);
  const pid_t child = fork();
  REQUIRE(child >= 0);
  if (child == 0) {
    write([&] {
      [[maybe_unused]] const ssize_t told = ::write(ends[1], "x", 1);
      for (;;) pause();
    });
    _exit(1);
  }
  char told = 0;
  REQUIRE(read(ends[0], &told, 1) == 1);
  REQUIRE(kill(child, SIGKILL) == 0);
  int status = 0;
  REQUIRE(waitpid(child, &status, 0) == child);
  REQUIRE(WIFSIGNALED(status));
  close(ends[0]);
  close(ends[1]);
}

}  // namespace

TEST_CASE("An audio disc has its sectors at their addresses with silence between the tracks") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({600, 450, 1}, true, true));
  CHECK(readFile(box.disc() / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 600) + silence(150) +
                                                 sectorsOf(AudioBlocks, 1, 0, 450) + silence(150) +
                                                 sectorsOf(AudioBlocks, 2, 0, 1));
  CHECK(readFile(box.disc() / "disc.cue") ==
        "FILE \"disc.bin\" BINARY\r\n"
        "  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n"
        "  TRACK 02 AUDIO\r\n    INDEX 00 00:08:00\r\n    INDEX 01 00:10:00\r\n"
        "  TRACK 03 AUDIO\r\n    INDEX 00 00:16:00\r\n    INDEX 01 00:18:00\r\n");
  CHECK(names(box.disc()) == Names{"disc.bin", "disc.cue", "disc.ini"});
  CHECK(discIn(recorder).status == DiscClosed);
  CHECK(discIn(recorder).lastSession == SessionClosed);
  CHECK(discIn(recorder).freeAudioBlocks == 0);
}

TEST_CASE("A write tells its phases in order, each track made ready before its first sector") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  Script script(audioOrder({20, 1}, true, true));
  script.run(recorder);
  CHECK(script.phases == Names{"begin 1", "started 1 20", "progress 1 20", "closing 1", "begin 2", "started 2 1",
                               "progress 2 1", "closing 2", "session closing", "disc closing"});
}

TEST_CASE("The disc is as it was while its first track is made ready") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const auto before = snapshot(box.root());
  Script script(audioOrder({20}, true, true));
  bool same = false;
  script.onPhase = [&](const std::string& phase) {
    if (phase == "begin 1") same = snapshot(box.root()) == before;
  };
  script.run(recorder);
  CHECK(same);
  CHECK(readFile(box.disc() / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 20));
}

TEST_CASE("A stop while the first track is made ready leaves the disc as it was") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const auto before = snapshot(box.root());
  stopWriteAt(recorder, audioOrder({20}, true, true), "begin 1");
  CHECK(snapshot(box.root()) == before);
}

TEST_CASE("Audio tracks are added to an incomplete session, and the cue sheet lists all of them") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, false, false));
  CHECK(discIn(recorder).status == DiscOpen);
  CHECK(discIn(recorder).lastSession == SessionIncomplete);
  CHECK(discIn(recorder).nextWritable == 450);
  writeDisc(recorder, audioOrder({200, 100}, false, true));
  CHECK(discIn(recorder).status == DiscClosed);
  CHECK(discIn(recorder).sessions == 1);
  CHECK(readFile(box.disc() / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 300) + silence(150) +
                                                 sectorsOf(AudioBlocks, 0, 0, 200) + silence(150) +
                                                 sectorsOf(AudioBlocks, 1, 0, 100));
  CHECK_THAT(readFile(box.disc() / "disc.cue"), Contains("TRACK 03 AUDIO\r\n    INDEX 00 00:08:50\r\n"));
}

TEST_CASE("A second data session lies behind the gap between sessions, which takes no room on the computer's disk") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, dataOrder(500, true, false));
  REQUIRE(discIn(recorder).nextWritable == 11900);
  writeDisc(recorder, dataOrder(300, true, false));
  CHECK(discIn(recorder).sessions == 2);
  CHECK(discIn(recorder).nextWritable == 12200 + 6900);
  CHECK(discIn(recorder).freeDataBlocks == 359849 - 19100);
  const std::string image = readFile(box.disc() / "disc.iso");
  constexpr std::size_t second = 11900 * dataSector;
  CHECK(image.size() == second + 300 * dataSector);
  CHECK(image.starts_with(sectorsOf(DataBlocks, 0, 0, 500)));
  CHECK(image.substr(second) == sectorsOf(DataBlocks, 0, 0, 300));
  CHECK(image.find_first_not_of('\0', 500 * dataSector) >= second);
  struct stat status {};
  REQUIRE(stat((box.disc() / "disc.iso").c_str(), &status) == 0);
  CHECK(status.st_blocks * 512 < 4 << 20);
  CHECK(names(box.disc()) == Names{"disc.ini", "disc.iso"});
}

TEST_CASE("A full disc takes exactly its blocks") {
  const Sandbox box;
  box.describeDisc("[disc]\nmedium = CD-R\nstatus = blank\nblocks = 1000\n");
  VirtualRecorder recorder = box.recorder();
  const auto before = snapshot(box.folder());
  CHECK_THAT(failureOf([&] { recorder.check(audioOrder({1001}, true, false)); }), StartsWith("056300 "));
  CHECK(snapshot(box.folder()) == before);
  writeDisc(recorder, audioOrder({1000}, true, false));
  CHECK(discIn(recorder).status == DiscOpen);
  CHECK(discIn(recorder).freeAudioBlocks == 0);
  CHECK_THAT(failureOf([&] { recorder.check(audioOrder({1}, true, false)); }), StartsWith("056300 "));
}

TEST_CASE("A closed disc and a missing disc are refused and left alone") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  const auto before = snapshot(box.folder());
  CHECK(failureOf([&] { recorder.check(audioOrder({1}, true, true)); }) ==
        "053005 the disc is closed for further writing (5/30/05)");
  CHECK(snapshot(box.folder()) == before);
  fs::remove_all(box.disc());
  CHECK(failureOf([&] { recorder.check(audioOrder({1}, true, true)); }) ==
        "023A00 no disc in Virtual Recorder (2/3A/00)");
  fs::remove_all(box.folder());
  CHECK_THAT(failureOf([&] { recorder.check(audioOrder({1}, true, true)); }), Contains("No such file or directory"));
}

TEST_CASE("A test write makes the same calls and leaves every file, folder and time as it was") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  WriteOrder order = audioOrder({600, 450}, true, true);
  order.test = true;
  SECTION("on a blank disc") {}
  SECTION("on an open disc") {
    writeDisc(recorder, audioOrder({300}, false, false));
  }
  const auto before = snapshot(box.root());
  writeDisc(recorder, order);
  CHECK(snapshot(box.root()) == before);
  stopWriteAt(recorder, order, "disc closing");
  CHECK(snapshot(box.root()) == before);
}

TEST_CASE("A test write refuses what a real one refuses") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  WriteOrder order = audioOrder({359850}, true, true);
  order.test = GENERATE(false, true);
  const auto before = snapshot(box.folder());
  CHECK_THAT(failureOf([&] { recorder.check(order); }), StartsWith("056300 "));
  CHECK_THAT(failureOf([&] { writeDisc(recorder, order); }), StartsWith("056300 "));
  CHECK(snapshot(box.folder()) == before);
}

TEST_CASE("A write that is stopped leaves a spoilt disc whose earlier sessions are whole") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, false, false));
  // The first block, in the midst, between tracks, at the last block, and between the disc's close and its finish.
  const char* const phase = GENERATE("started 1 200", "read 1 97", "closing 1", "begin 2", "progress 2 200",
                                     "session closing", "disc closing");
  stopWriteAt(recorder, audioOrder({200, 200}, true, true), phase);
  checkSpoilt(recorder);
  CHECK(discIn(recorder).sessions == 1);
  CHECK(readFile(box.disc() / "disc.bin").substr(0, 300 * audioSector) == sectorsOf(AudioBlocks, 0, 0, 300));
  CHECK(readFile(box.disc() / "disc.cue") ==
        "FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n");
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(discIn(recorder).status == DiscEmpty);
}

TEST_CASE("A process that is killed within a write leaves a spoilt disc and nothing else changed") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, dataOrder(300, true, false));
  fs::create_directory(box.shelf() / "Disc 0002");
  writeFile(box.shelf() / "Disc 0002" / "disc.ini", "theirs");
  const auto shelf = snapshot(box.shelf());
  const std::string phase = GENERATE("started 1 3000", "read 1 2001", "session closing");
  killAt([&](const auto& reached) {
    Script script(dataOrder(3000, true, false));
    script.onPhase = [&](const std::string& now) {
      if (now == phase) reached();
    };
    script.run(recorder);
  });
  checkSpoilt(recorder);
  CHECK(readFile(box.disc() / "disc.iso").substr(0, 300 * dataSector) == sectorsOf(DataBlocks, 0, 0, 300));
  CHECK(snapshot(box.shelf()) == shelf);
}

TEST_CASE("At whatever moment a write is killed, the disc is blank as before, spoilt, or finished with every byte") {
  const std::string expected = sectorsOf(AudioBlocks, 0, 0, 700);
  for (int delay = 0; delay < 40; ++delay) {
    const Sandbox box;
    VirtualRecorder recorder = box.recorder();
    const pid_t child = fork();
    REQUIRE(child >= 0);
    if (child == 0) {
      writeDisc(recorder, audioOrder({700}, true, true));
      _exit(0);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(delay * 300));
    kill(child, SIGKILL);
    int status = 0;
    REQUIRE(waitpid(child, &status, 0) == child);
    const DiscState state = discIn(recorder);
    CHECK(state.type == DiscTypeCdRom);
    if (state.status == DiscEmpty) CHECK(state.freeAudioBlocks == 359849);
    if (state.status != DiscEmpty) CHECK(state.freeAudioBlocks == 0);
    CHECK(state.status != DiscOpen);
    if (state.sessions == 1) CHECK(readFile(box.disc() / "disc.bin") == expected);
  }
}

TEST_CASE("A fault of recorder.ini fails the write at its block with its number and words") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const WriteOrder order = audioOrder({300, 300}, true, true);
  SECTION("with the usual words") {
    box.configure("[faults]\nfailWriteAt = 500\n");
    CHECK(failureOf([&] { writeDisc(recorder, order); }) == "030C00 write error at block 500 (3/0C/00)");
  }
  SECTION("with its own words") {
    box.configure("[faults]\nfailWriteAt = 0\nfailNumber = 4/09/01\nfailText = tracking servo failure\n");
    CHECK(failureOf([&] { writeDisc(recorder, order); }) == "040901 tracking servo failure (4/09/01)");
  }
  SECTION("when something is closed") {
    const std::string part = GENERATE("track", "session", "disc");
    box.configure("[faults]\nfailClosing = " + part + "\n");
    CHECK(failureOf([&] { writeDisc(recorder, order); }) == "030C00 " + part + " could not be closed (3/0C/00)");
  }
  checkSpoilt(recorder);
}

TEST_CASE("A fault before a track comes once the track is ready, and leaves the disc as it was before the first one") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const std::string track = GENERATE("1", "2");
  box.configure("[faults]\nfailTrack = " + track + "\n");
  const auto before = snapshot(box.tray());
  Script script(audioOrder({20, 20}, true, true));
  CHECK(failureOf([&] { script.run(recorder); }) == "030C00 track " + track + " could not be begun (3/0C/00)");
  CHECK(script.phases.back() == "begin " + track);
  if (track == "1") CHECK(snapshot(box.tray()) == before);
  if (track == "2") checkSpoilt(recorder);
}

TEST_CASE("A fault may be of any kind, and then has no number of a device") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const int code = GENERATE(0, 1, 2, 4, 17);
  box.configure("[faults]\nfailWriteAt = 0\nfailText = smoke\nfailCode = " + std::to_string(code) + "\n");
  try {
    writeDisc(recorder, audioOrder({20}, true, true));
    FAIL("nothing failed");
  } catch (const EngineError& error) {
    CHECK(static_cast<int>(error.kind()) == code);
    CHECK(error.number() == 0);
    CHECK(error.words() == "smoke");
  }
}

TEST_CASE("A fault for writes spares tests, and a fault for tests spares writes") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  WriteOrder test = audioOrder({300}, true, false);
  test.test = true;
  box.configure("[faults]\nfailWriteAt = 100\n");
  const auto before = snapshot(box.tray());
  writeDisc(recorder, test);
  box.configure("[faults]\nfailTestAt = 100\n");
  CHECK(failureOf([&] { writeDisc(recorder, test); }) == "030C00 write error at block 100 (3/0C/00)");
  CHECK(snapshot(box.tray()) == before);
  writeDisc(recorder, audioOrder({300}, true, false));
  CHECK(discIn(recorder).status == DiscOpen);
}

TEST_CASE("A fault at an address that the write does not reach fails nothing") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  box.configure("[faults]\nfailWriteAt = 300\n");
  writeDisc(recorder, audioOrder({300}, true, true));
  CHECK(discIn(recorder).status == DiscClosed);
}

TEST_CASE("A refusal of the file system within a write names the block and the reason, and spoils the disc") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const int result = inChild([&] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1 << 20, 1 << 20};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
    const std::string text = failureOf([&] { writeDisc(recorder, audioOrder({1000}, true, true)); });
    return text == "030C00 write error at block 445: File too large (3/0C/00)" ? 0 : 1;
  });
  CHECK(result == 0);
  checkSpoilt(recorder);
}

TEST_CASE("A computer's disk that fills up within a write spoils the disc, and one that is full before it does not") {
  const Sandbox box;
  const int result = inChild([&] {
    const fs::path small = box.root() / "small";
    if (!mountSmallFileSystem(small, "size=8m")) return 77;
    createVirtualRecorder(HostPath((small / "R").string()));
    VirtualRecorder recorder(HostPath((small / "R").string()));
    const std::string tooMuch = failureOf([&] { recorder.check(audioOrder({4000}, true, true)); });
    if (!tooMuch.starts_with("030C00 no room for the virtual disc on the computer's disk: ")) return 1;
    if (recorder.look()->disc->status != DiscEmpty) return 2;
    Script script(audioOrder({3000}, true, true));
    script.onPhase = [&](const std::string& phase) {
      if (phase == "started 1 3000") std::ofstream(small / "filler", std::ios::binary) << std::string(6 << 20, 'x');
    };
    const std::string full = failureOf([&] { script.run(recorder); });
    if (!full.starts_with("030C00 write error at block ")) return 3;
    if (!full.ends_with(": No space left on device (3/0C/00)")) return 4;
    return recorder.look()->disc->status == DiscClosed ? 0 : 5;
  });
  if (result == 77)
    WARN("this machine lets nobody mount a file system of his own");
  else
    CHECK(result == 0);
}

TEST_CASE("While a write runs nothing else can write, test or eject the disc") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  VirtualRecorder other = box.recorder();
  Script script(audioOrder({300}, true, true));
  script.order.test = GENERATE(false, true);
  const std::string busy = "020408 Virtual Recorder is busy: something else writes its disc (2/04/08)";
  const std::string phase = GENERATE("begin 1", "read 1 1", "disc closing");
  Names refusals;
  script.onPhase = [&](const std::string& now) {
    if (now != phase) return;
    refusals = {failureOf([&] { other.check(script.order); }), failureOf([&] { writeDisc(other, script.order); }),
                ejectFailure(other), ejectFailure(recorder)};
    CHECK(inChild([&] { return failureOf([&] { other.check(script.order); }) == busy ? 0 : 1; }) == 0);
  };
  script.run(recorder);
  CHECK(refusals == Names{busy, busy, busy, busy});
  CHECK(ejectFailure(other) == "no failure");
  writeDisc(other, script.order);
}

TEST_CASE("Looks taken while another thread writes see a blank disc, then a closed one") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  std::atomic<bool> done = false;
  std::thread writer([&] {
    writeDisc(recorder, audioOrder({2000}, true, true));
    done = true;
  });
  bool sense = true;
  DiscStatusCode last = DiscEmpty;
  while (!done) {
    const auto state = recorder.look()->disc;
    sense = sense && state && state->type == DiscTypeCdRom && (state->status == last || state->status == DiscClosed);
    if (state) last = state->status;
  }
  writer.join();
  CHECK(sense);
  CHECK(discIn(recorder).sessions == 1);
}

TEST_CASE("A disc that is moved within a write is finished where it now lies") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  Script script(audioOrder({300}, true, true));
  script.onPhase = [&](const std::string& phase) {
    if (phase == "read 1 97") fs::rename(box.disc(), box.shelf() / "Moved");
  };
  script.run(recorder);
  CHECK(readFile(box.shelf() / "Moved" / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 300));
  CHECK_FALSE(recorder.look()->disc);
  fs::rename(box.shelf() / "Moved", box.tray() / "Moved");
  CHECK(discIn(recorder).status == DiscClosed);
}

TEST_CASE("A disc that is deleted within a write fails in words") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  Script script(audioOrder({300}, true, true));
  script.onPhase = [&](const std::string& phase) {
    if (phase == "read 1 97") fs::remove_all(box.disc());
  };
  CHECK_THAT(failureOf([&] { script.run(recorder); }), Contains("No such file or directory"));
  CHECK_FALSE(recorder.look()->disc);
}

TEST_CASE("A description that cannot be replaced refuses the write and leaves the disc as it was") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  fs::create_directory(box.disc() / "disc.ini.new");
  const std::string text = failureOf([&] { writeDisc(recorder, audioOrder({300}, true, true)); });
  CHECK_THAT(text, StartsWith("030C00 the disc cannot be written: cannot replace disc.ini.new"));
  CHECK(discIn(recorder).status == DiscEmpty);
  CHECK(names(box.disc()) == Names{"disc.ini", "disc.ini.new"});
}

TEST_CASE("With real-time pacing a write takes its time") {
  const Sandbox box;
  box.configure("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 40\n");
  VirtualRecorder recorder = box.recorder();
  const auto begun = std::chrono::steady_clock::now();
  writeDisc(recorder, audioOrder({600}, true, true));
  CHECK(std::chrono::steady_clock::now() - begun >= std::chrono::milliseconds(200));
  REQUIRE(ejectFailure(recorder) == "no failure");
  WriteOrder slow = audioOrder({60}, true, true);
  slow.speed = 4;
  const auto again = std::chrono::steady_clock::now();
  writeDisc(recorder, slow);
  CHECK(std::chrono::steady_clock::now() - again >= std::chrono::milliseconds(200));
}

}  // namespace trackloom::engines::virtualrecorder
