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
  const std::optional<DiscState> state = recorder.look();
  REQUIRE(state);
  CHECK(state->status == DiscClosed);
  CHECK(state->freeAudioBlocks == 0);
  CHECK(state->freeDataBlocks == 0);
  CHECK(state->lastSession != SessionIncomplete);
  CHECK_THAT(failureOf([&] { recorder.begin(audioOrder({10}, true, true)); }), StartsWith("053005 the disc is spoilt"));
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
  CHECK(recorder.look()->status == DiscClosed);
  CHECK(recorder.look()->lastSession == SessionClosed);
  CHECK(recorder.look()->freeAudioBlocks == 0);
}

TEST_CASE("The pieces in which sectors come do not change the disc") {
  const std::string expected = sectorsOf(AudioBlocks, 0, 0, 1000) + silence(150) + sectorsOf(AudioBlocks, 1, 0, 500);
  for (const std::int32_t piece : {1, 7, 446, 447, 1000}) {
    const Sandbox box;
    VirtualRecorder recorder = box.recorder();
    writeDisc(recorder, audioOrder({1000, 500}, true, true), piece);
    CHECK(readFile(box.disc() / "disc.bin") == expected);
  }
}

TEST_CASE("Audio tracks are added to an incomplete session, and the cue sheet lists all of them") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, false, false));
  CHECK(recorder.look()->status == DiscOpen);
  CHECK(recorder.look()->lastSession == SessionIncomplete);
  CHECK(recorder.look()->nextWritable == 450);
  writeDisc(recorder, audioOrder({200, 100}, false, true));
  CHECK(recorder.look()->status == DiscClosed);
  CHECK(recorder.look()->sessions == 1);
  CHECK(readFile(box.disc() / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 300) + silence(150) +
                                                 sectorsOf(AudioBlocks, 0, 0, 200) + silence(150) +
                                                 sectorsOf(AudioBlocks, 1, 0, 100));
  CHECK_THAT(readFile(box.disc() / "disc.cue"), Contains("TRACK 03 AUDIO\r\n    INDEX 00 00:08:50\r\n"));
}

TEST_CASE("A second data session lies behind the gap between sessions, which takes no room on the computer's disk") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, dataOrder(500, true, false));
  REQUIRE(recorder.look()->nextWritable == 11900);
  writeDisc(recorder, dataOrder(300, true, false));
  CHECK(recorder.look()->sessions == 2);
  CHECK(recorder.look()->nextWritable == 12200 + 6900);
  CHECK(recorder.look()->freeDataBlocks == 359849 - 19100);
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
  CHECK_THAT(failureOf([&] { recorder.begin(audioOrder({1001}, true, false)); }), StartsWith("056300 "));
  CHECK(snapshot(box.folder()) == before);
  writeDisc(recorder, audioOrder({1000}, true, false));
  CHECK(recorder.look()->status == DiscOpen);
  CHECK(recorder.look()->freeAudioBlocks == 0);
  CHECK_THAT(failureOf([&] { recorder.begin(audioOrder({1}, true, false)); }), StartsWith("056300 "));
}

TEST_CASE("A closed disc and a missing disc are refused and left alone") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  const auto before = snapshot(box.folder());
  CHECK(failureOf([&] { recorder.begin(audioOrder({1}, true, true)); }) ==
        "053005 the disc is closed for further writing (5/30/05)");
  CHECK(snapshot(box.folder()) == before);
  fs::remove_all(box.disc());
  CHECK(failureOf([&] { recorder.begin(audioOrder({1}, true, true)); }) ==
        "023A00 no disc in Virtual Recorder (2/3A/00)");
  fs::remove_all(box.folder());
  CHECK_THAT(failureOf([&] { recorder.begin(audioOrder({1}, true, true)); }), Contains("No such file or directory"));
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
  { const auto unfinished = recorder.begin(order); }
  CHECK(snapshot(box.root()) == before);
}

TEST_CASE("A test write refuses what a real one refuses") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  WriteOrder order = audioOrder({359850}, true, true);
  order.test = GENERATE(false, true);
  const auto before = snapshot(box.folder());
  CHECK_THAT(failureOf([&] { recorder.begin(order); }), StartsWith("056300 "));
  CHECK(snapshot(box.folder()) == before);

  order.trackBlocks = {10, 10};
  order.closeDisc = false;
  order.closeSession = false;
  const auto write = recorder.begin(order);
  const std::string sectors = sectorsOf(AudioBlocks, 0, 0, 11);
  CHECK_THAT(failureOf([&] { write->write(bytesOf(sectors)); }), StartsWith("052C00 "));
  CHECK_THAT(failureOf([&] { write->closeTrack(); }), StartsWith("052C00 "));
  write->startTrack();
  CHECK_THAT(failureOf([&] { write->startTrack(); }), StartsWith("052C00 "));
  CHECK_THAT(failureOf([&] { write->write(bytesOf(sectors)); }), StartsWith("052100 track 1"));
  CHECK_THAT(failureOf([&] { write->write(bytesOf(sectors).first(2048)); }), StartsWith("052600 "));
  write->write(bytesOf(sectors).first(9 * audioSector));
  CHECK_THAT(failureOf([&] { write->closeTrack(); }), Contains("after 9 of 10 blocks"));
  write->write(bytesOf(sectors).first(audioSector));
  write->closeTrack();
  CHECK_THAT(failureOf([&] { write->finish(); }), StartsWith("052C00 "));
  CHECK_THAT(failureOf([&] { write->closeSession(); }), StartsWith("052C00 "));
  write->startTrack();
  write->write(bytesOf(sectors).first(10 * audioSector));
  write->closeTrack();
  CHECK_THAT(failureOf([&] { write->startTrack(); }), StartsWith("052C00 "));
  CHECK_THAT(failureOf([&] { write->closeSession(); }), Contains("without an order"));
  CHECK_THAT(failureOf([&] { write->closeDisc(); }), Contains("without an order"));
  write->finish();
  CHECK_THAT(failureOf([&] { write->finish(); }), Contains("has ended"));
}

TEST_CASE("A write that is dropped leaves a spoilt disc whose earlier sessions are whole") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, false, false));
  const WriteOrder order = audioOrder({200, 200}, true, true);
  SECTION("before its first sector") {
    const auto write = recorder.begin(order);
  }
  SECTION("within a track") {
    const auto write = recorder.begin(order);
    write->startTrack();
    write->write(bytesOf(sectorsOf(AudioBlocks, 0, 0, 100)));
  }
  SECTION("after its last call but one") {
    const auto write = recorder.begin(order);
    writeTracks(*write, order);
  }
  checkSpoilt(recorder);
  CHECK(recorder.look()->sessions == 1);
  CHECK(readFile(box.disc() / "disc.bin").substr(0, 300 * audioSector) == sectorsOf(AudioBlocks, 0, 0, 300));
  CHECK(readFile(box.disc() / "disc.cue") ==
        "FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n");
  CHECK(recorder.eject());
  CHECK(recorder.look()->status == DiscEmpty);
}

TEST_CASE("A process that is killed within a write leaves a spoilt disc and nothing else changed") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, dataOrder(300, true, false));
  fs::create_directory(box.shelf() / "Disc 0002");
  writeFile(box.shelf() / "Disc 0002" / "disc.ini", "theirs");
  const auto shelf = snapshot(box.shelf());
  const WriteOrder order = dataOrder(3000, true, false);
  SECTION("right after its beginning") {
    killAt([&](const auto& reached) {
      const auto write = recorder.begin(order);
      reached();
    });
  }
  SECTION("within a track") {
    killAt([&](const auto& reached) {
      const auto write = recorder.begin(order);
      write->startTrack();
      write->write(bytesOf(sectorsOf(DataBlocks, 0, 0, 2000)));
      reached();
    });
  }
  SECTION("before its end") {
    killAt([&](const auto& reached) {
      const auto write = recorder.begin(order);
      writeTracks(*write, order);
      reached();
    });
  }
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
    const std::optional<DiscState> state = recorder.look();
    REQUIRE(state);
    CHECK(state->type == DiscTypeCdRom);
    if (state->status == DiscEmpty) CHECK(state->freeAudioBlocks == 359849);
    if (state->status != DiscEmpty) CHECK(state->freeAudioBlocks == 0);
    CHECK(state->status != DiscOpen);
    if (state->sessions == 1) CHECK(readFile(box.disc() / "disc.bin") == expected);
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
  CHECK(recorder.look()->status == DiscOpen);
}

TEST_CASE("A fault at an address that the write does not reach fails nothing") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  box.configure("[faults]\nfailWriteAt = 300\n");
  writeDisc(recorder, audioOrder({300}, true, true));
  CHECK(recorder.look()->status == DiscClosed);
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
    const std::string tooMuch = failureOf([&] { recorder.begin(audioOrder({4000}, true, true)); });
    if (!tooMuch.starts_with("030C00 no room for the virtual disc on the computer's disk: ")) return 1;
    if (recorder.look()->status != DiscEmpty) return 2;
    const auto write = recorder.begin(audioOrder({3000}, true, true));
    std::ofstream filler(small / "filler", std::ios::binary);
    filler << std::string(6 << 20, 'x') << std::flush;
    write->startTrack();
    const std::string full = failureOf([&] { write->write(bytesOf(sectorsOf(AudioBlocks, 0, 0, 3000))); });
    if (!full.starts_with("030C00 write error at block ")) return 3;
    if (!full.ends_with(": No space left on device (3/0C/00)")) return 4;
    return recorder.look()->status == DiscClosed ? 0 : 5;
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
  WriteOrder order = audioOrder({300}, true, true);
  order.test = GENERATE(false, true);
  {
    const auto write = recorder.begin(order);
    CHECK(failureOf([&] { other.begin(order); }) ==
          "020408 Virtual Recorder is busy: something else writes its disc (2/04/08)");
    CHECK_FALSE(other.eject());
    CHECK(inChild([&] { return failureOf([&] { other.begin(order); }).starts_with("020408") ? 0 : 1; }) == 0);
    writeTracks(*write, order);
    write->finish();
    CHECK(other.eject());
  }
  writeDisc(other, order);
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
    const std::optional<DiscState> state = recorder.look();
    sense = sense && state && state->type == DiscTypeCdRom && (state->status == last || state->status == DiscClosed);
    if (state) last = state->status;
  }
  writer.join();
  CHECK(sense);
  CHECK(recorder.look()->sessions == 1);
}

TEST_CASE("A disc that is moved within a write is finished where it now lies") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const WriteOrder order = audioOrder({300}, true, true);
  const auto write = recorder.begin(order);
  fs::rename(box.disc(), box.shelf() / "Moved");
  writeTracks(*write, order);
  write->finish();
  CHECK(readFile(box.shelf() / "Moved" / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 300));
  CHECK_FALSE(recorder.look());
  fs::rename(box.shelf() / "Moved", box.tray() / "Moved");
  CHECK(recorder.look()->status == DiscClosed);
}

TEST_CASE("A disc that is deleted within a write fails in words") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const WriteOrder order = audioOrder({300}, true, true);
  const auto write = recorder.begin(order);
  fs::remove_all(box.disc());
  writeTracks(*write, order);
  CHECK_THAT(failureOf([&] { write->finish(); }), Contains("No such file or directory"));
  CHECK_FALSE(recorder.look());
}

TEST_CASE("A description that cannot be replaced refuses the write and leaves the disc as it was") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  fs::create_directory(box.disc() / "disc.ini.new");
  const std::string text = failureOf([&] { recorder.begin(audioOrder({300}, true, true)); });
  CHECK_THAT(text, StartsWith("030C00 the disc cannot be written: cannot open disc.ini.new"));
  CHECK(recorder.look()->status == DiscEmpty);
  CHECK(names(box.disc()) == Names{"disc.ini", "disc.ini.new"});
}

TEST_CASE("With real-time pacing a write takes its time") {
  const Sandbox box;
  box.configure("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 40\n");
  VirtualRecorder recorder = box.recorder();
  const auto begun = std::chrono::steady_clock::now();
  writeDisc(recorder, audioOrder({600}, true, true));
  CHECK(std::chrono::steady_clock::now() - begun >= std::chrono::milliseconds(200));
  REQUIRE(recorder.eject());
  WriteOrder slow = audioOrder({60}, true, true);
  slow.speed = 4;
  const auto again = std::chrono::steady_clock::now();
  writeDisc(recorder, slow);
  CHECK(std::chrono::steady_clock::now() - again >= std::chrono::milliseconds(200));
}

}  // namespace trackloom::engines::virtualrecorder
