#include "engines/virtual/VirtualChange.h"

#include <catch2/catch.hpp>
#include <chrono>

#include "engines/virtual/Sandbox.h"

namespace trackloom::engines::virtualrecorder {

using Catch::Matchers::StartsWith;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

const char* const blankCdRw = "[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 1000\ndataBlocks = 900\n";

std::string failedErase(Recorder& recorder) {
  OperationObserver nobody;
  return failureOf([&] { recorder.erase(true, nobody, {}); });
}

std::string failedClose(Recorder& recorder, bool alsoDisc) {
  OperationObserver nobody;
  return failureOf([&] { recorder.close(alsoDisc, nobody, {}); });
}

}  // namespace

TEST_CASE("An erase, quick or full, makes a rewritable disc blank, whatever it held") {
  const Sandbox box;
  box.describeDisc(blankCdRw);
  VirtualRecorder recorder = box.recorder();
  const bool quick = GENERATE(true, false);
  SECTION("a closed audio disc") {
    writeDisc(recorder, audioOrder({300, 20}, true, true));
  }
  SECTION("an open data disc") {
    writeDisc(recorder, dataOrder(300, true, false));
  }
  SECTION("a spoilt disc") {
    stopWriteAt(recorder, audioOrder({300}, true, true), "read 1 1");
  }
  SECTION("a blank disc") {}
  Script heard(audioOrder({}, true, true));
  recorder.erase(quick, heard, {});
  CHECK(heard.phases == Names{"erasing"});
  const DiscState state = discIn(recorder);
  CHECK(state.status == DiscEmpty);
  CHECK(state.rewritable);
  CHECK(state.sessions == 0);
  CHECK(state.lastSession == SessionEmpty);
  CHECK(state.freeAudioBlocks == 1000);
  CHECK(state.freeDataBlocks == 900);
  CHECK(names(box.disc()) == Names{"disc.ini"});
  writeDisc(recorder, dataOrder(30, true, true));
  CHECK(readFile(box.disc() / "disc.iso") == sectorsOf(DataBlocks, 0, 0, 30));
}

TEST_CASE("An erase is told once the disc says so, and a disc.ini that cannot be replaced keeps it from beginning") {
  const Sandbox box;
  box.describeDisc(blankCdRw);
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  struct Watch final : OperationObserver {
    explicit Watch(const fs::path& file) : ini(file) {}
    fs::path ini;
    std::string seen;
    void erasing() override { seen = readFile(ini); }
  } watch(box.disc() / "disc.ini");
  fs::create_directories(box.disc() / "disc.ini.new" / "inside");
  CHECK_THAT(failureOf([&] { recorder.erase(true, watch, {}); }),
             StartsWith("030C00 the disc cannot be erased: cannot replace disc.ini.new: "));
  CHECK(watch.seen.empty());
  CHECK(discIn(recorder).status == DiscClosed);
  fs::remove_all(box.disc() / "disc.ini.new");
  recorder.erase(true, watch, {});
  CHECK(watch.seen.find("status = writing") != std::string::npos);
}

TEST_CASE("What cannot be erased stays as it is") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  std::string words = "053005 the disc cannot be erased: it can be written once only (5/30/05)";
  SECTION("a disc for one write") {
    writeDisc(recorder, audioOrder({300}, true, false));
  }
  SECTION("a damaged disc") {
    box.describeDisc("[disc]\nmedium = CD-RW\n");
    words = "053005 the disc cannot be made sense of: ";
  }
  SECTION("no disc") {
    fs::remove_all(box.disc());
    words = "023A00 no disc";
  }
  const auto before = snapshot(box.folder());
  CHECK_THAT(failedErase(recorder), StartsWith(words));
  CHECK(snapshot(box.folder()) == before);
}

TEST_CASE("Sectors that cannot be removed fail an erase in words, and the disc can be erased once they can") {
  const Sandbox box;
  box.describeDisc(blankCdRw);
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  fs::remove(box.disc() / "disc.cue");
  fs::create_directory(box.disc() / "disc.cue");
  CHECK_THAT(failedErase(recorder), StartsWith("030C00 the disc cannot be erased: cannot remove disc.cue: "));
  fs::remove(box.disc() / "disc.cue");
  CHECK(failedErase(recorder) == "no failure");
  CHECK(discIn(recorder).status == DiscEmpty);
}

TEST_CASE("At a real drive's pace an erase takes the time of the blocks that it goes over, and can be stopped") {
  const Sandbox box;
  box.describeDisc("[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 1000\ndataBlocks = 900\n");
  box.configure("[recorder]\nrealTimePacing = yes\nmaxSpeed = 48\n");
  VirtualRecorder recorder = box.recorder();
  OperationObserver nobody;
  std::stop_source stop;
  SECTION("done") {
    const auto begin = std::chrono::steady_clock::now();
    recorder.erase(false, nobody, {});
    // 900 blocks at 48 times 75 blocks a second are a quarter of one.
    CHECK(std::chrono::steady_clock::now() - begin >= std::chrono::milliseconds(200));
  }
  SECTION("stopped") {
    stop.request_stop();
    CHECK_THROWS_AS(recorder.erase(true, nobody, stop.get_token()), Stopped);
  }
}

TEST_CASE("An erase that fails leaves a spoilt disc, which can be erased again") {
  const Sandbox box;
  box.describeDisc(blankCdRw);
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  box.configure("[faults]\nfailErasing = yes\n");
  CHECK(failedErase(recorder) == "030C00 the disc could not be erased (3/0C/00)");
  CHECK(discIn(recorder).status == DiscClosed);
  CHECK(discIn(recorder).freeAudioBlocks == 0);
  box.configure("");
  CHECK(failedErase(recorder) == "no failure");
  CHECK(discIn(recorder).status == DiscEmpty);
}

TEST_CASE("An incomplete session is closed alone or with its disc") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const bool data = GENERATE(false, true);
  writeDisc(recorder, data ? dataOrder(300, false, false) : audioOrder({300}, false, false));
  const std::string content = readFile(box.disc() / (data ? "disc.iso" : "disc.bin"));
  Script heard(audioOrder({}, true, true));
  SECTION("the session") {
    recorder.close(false, heard, {});
    CHECK(heard.phases == Names{"session closing"});
    CHECK(discIn(recorder).status == DiscOpen);
    CHECK(discIn(recorder).freeAudioBlocks == 359849 - 300 - 11400);
  }
  SECTION("the disc") {
    recorder.close(true, heard, {});
    CHECK(heard.phases == Names{"session closing", "disc closing"});
    CHECK(discIn(recorder).status == DiscClosed);
    CHECK(discIn(recorder).freeAudioBlocks == 0);
  }
  CHECK(discIn(recorder).lastSession == SessionClosed);
  CHECK(discIn(recorder).sessions == 1);
  CHECK(readFile(box.disc() / (data ? "disc.iso" : "disc.bin")) == content);
}

TEST_CASE("Without an incomplete session nothing is closed") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const bool alsoDisc = GENERATE(false, true);
  SECTION("a blank disc") {}
  SECTION("a closed session") {
    writeDisc(recorder, audioOrder({300}, true, false));
  }
  SECTION("a closed disc") {
    writeDisc(recorder, audioOrder({300}, true, true));
  }
  const auto before = snapshot(box.folder());
  CHECK_THAT(failedClose(recorder, alsoDisc), StartsWith("052C00 the disc has no incomplete session"));
  CHECK(snapshot(box.folder()) == before);
}

TEST_CASE("A close that fails or is stopped leaves the session as it was") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, false, false));
  const auto before = snapshot(box.tray());
  box.configure("[faults]\nfailClosing = session\n");
  CHECK(failedClose(recorder, true) == "030C00 session could not be closed (3/0C/00)");
  box.configure("[faults]\nfailClosing = disc\n");
  CHECK(failedClose(recorder, true) == "030C00 disc could not be closed (3/0C/00)");
  box.configure("");
  Script heard(audioOrder({}, true, true));
  std::stop_source stop;
  stop.request_stop();
  CHECK_THROWS_AS(recorder.close(false, heard, stop.get_token()), Stopped);
  CHECK(snapshot(box.tray()) == before);
  CHECK(failedClose(recorder, false) == "no failure");
}

TEST_CASE("Recorded sectors are read back as they were written, and no others") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  const auto text = [&](std::int32_t block, std::int32_t count) {
    const std::vector<std::byte> sectors = recorder.read(block, count);
    return std::string(reinterpret_cast<const char*>(sectors.data()), sectors.size());
  };
  writeDisc(recorder, audioOrder({300, 20}, false, false));
  CHECK(text(450, 20) == sectorsOf(AudioBlocks, 1, 0, 20));
  CHECK(text(0, 1) == sectorsOf(AudioBlocks, 0, 0, 1));
  CHECK(text(299, 2) == sectorsOf(AudioBlocks, 0, 299, 1) + std::string(2352, '\0'));
  for (const auto& [block, count] : {std::pair{450, 21}, {-1, 1}, {470, 1}, {0, -1}})
    CHECK_THAT(failureOf([&, at = block, many = count] { recorder.read(at, many); }),
               StartsWith("052100 the disc has no " + std::to_string(count) + " recorded blocks from block " +
                          std::to_string(block) + " on"));
}

TEST_CASE("A recorder whose folder has gone reads nothing, in the numbers of a read error") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  fs::remove_all(box.folder());
  CHECK_THAT(failureOf([&] { recorder.read(0, 1); }), StartsWith("031100 cannot open the folder "));
}

}  // namespace trackloom::engines::virtualrecorder
