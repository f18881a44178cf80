#include "engines/virtual/VirtualRecorder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <filesystem>
#include <fstream>

#include "engines/virtual/Sandbox.h"
#include "engines/virtual/VirtualRecorders.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::virtualrecorder {

using Catch::Matchers::Contains;
using Catch::Matchers::StartsWith;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

const char* const blankCdR = "[disc]\nmedium = CD-R\nstatus = blank\nblocks = 359849\n";
const char* const blankCdRw = "[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 359849\n";

void addDisc(const fs::path& folder, const std::string& ini) {
  fs::create_directory(folder);
  writeFile(folder / "disc.ini", ini);
}

/// The disc reads as a closed one of unknown type without room, is refused by a write, and nothing of it changes.
void checkDamaged(const Sandbox& box, const std::string& words) {
  const auto before = snapshot(box.tray());
  VirtualRecorder recorder = box.recorder();
  const DiscState state = discIn(recorder);
  CHECK(state.status == DiscClosed);
  CHECK(state.type == DiscTypeUnknown);
  CHECK(state.freeAudioBlocks == 0);
  CHECK(state.freeDataBlocks == 0);
  CHECK_FALSE(state.rewritable);
  const std::string text = failureOf([&] { recorder.check(audioOrder({300}, true, true)); });
  CHECK_THAT(text, StartsWith("053005 the disc cannot be made sense of: "));
  CHECK_THAT(text, Contains(words));
  CHECK(snapshot(box.tray()) == before);
}

bool ejects(const Sandbox& box) {
  VirtualRecorder recorder = box.recorder();
  return ejectFailure(recorder) == "no failure";
}

/// No disc is loaded, a write is refused, and nothing changes.
void checkNoDisc(const Sandbox& box) {
  const auto before = snapshot(box.folder());
  VirtualRecorder recorder = box.recorder();
  CHECK_FALSE(recorder.look()->disc);
  CHECK_THAT(failureOf([&] { recorder.check(audioOrder({300}, true, true)); }),
             StartsWith("023A00 no disc in Virtual Recorder"));
  CHECK(snapshot(box.folder()) == before);
}

}  // namespace

TEST_CASE("A fresh recorder has settings, an empty shelf and a blank disc in its tray") {
  const Sandbox box;
  CHECK(names(box.folder()) == Names{"recorder.ini", "shelf", "tray"});
  CHECK(names(box.tray()) == Names{"Disc 0001"});
  CHECK(names(box.disc()) == Names{"disc.ini"});
  CHECK(names(box.shelf()).empty());
  VirtualRecorder recorder = box.recorder();
  REQUIRE(recorder.look()->disc);
  CHECK(discIn(recorder).status == DiscEmpty);
  CHECK(discIn(recorder).freeAudioBlocks == 359849);
}

TEST_CASE("Laying a recorder out where one is changes nothing, and puts back what was taken away") {
  const Sandbox box;
  const HostPath folder(box.folder().string());
  const auto before = snapshot(box.folder());
  createVirtualRecorder(folder);
  CHECK(snapshot(box.folder()) == before);
  fs::remove_all(box.disc());
  createVirtualRecorder(folder);
  CHECK(names(box.tray()).empty());
  fs::remove_all(box.tray());
  fs::remove(box.folder() / "recorder.ini");
  createVirtualRecorder(folder);
  CHECK(names(box.folder()) == Names{"recorder.ini", "shelf", "tray"});
  CHECK(names(box.tray()) == Names{"Disc 0001"});
}

TEST_CASE("A recorder that cannot be laid out fails in words") {
  const Sandbox box;
  try {
    createVirtualRecorder(HostPath((box.folder() / "recorder.ini" / "x").string()));
    FAIL("it was laid out within a file");
  } catch (const RuntimeError& error) {
    CHECK(error.number() == RuntimeError::PathNotFound);
    CHECK_THAT(error.what(), Contains("Not a directory"));
  }
}

TEST_CASE("Recorders are listed by their number, and the first gap ends the list") {
  const Sandbox box;
  const HostPath program(box.root().string());
  CHECK(findVirtualRecorders(program).size() == 1);
  fs::create_directory(box.root() / "Virtual Recorder 4");
  createVirtualRecorder(HostPath((box.root() / "Virtual Recorder 2").string()));
  writeFile(box.root() / "Virtual Recorder 2" / "recorder.ini", "[recorder]\nproduct = Second\n");
  const RecorderList recorders = findVirtualRecorders(program);
  REQUIRE(recorders.size() == 2);
  CHECK(recorders[0]->look()->identity.product == "CD Recorder");
  CHECK(recorders[1]->look()->identity.product == "Second");
  writeFile(box.root() / "Virtual Recorder 3", "a file is no recorder");
  CHECK(findVirtualRecorders(program).size() == 2);
  CHECK(findVirtualRecorders(HostPath((box.root() / "missing").string())).empty());
}

TEST_CASE("A recorder tells what recorder.ini says at that moment") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  CHECK(recorder.look()->identity.vendor == "Virtual");
  CHECK(recorder.look()->identity.maxWriteSpeed == 52);
  CHECK(recorder.look()->identity.hasWriteGuard);
  CHECK(recorder.take());
  box.configure("[recorder]\nvendor = ACME\nmaximumSpeed = 4\nwriteGuard = no\nrefuseSelect = yes\n");
  CHECK(recorder.look()->identity.vendor == "ACME");
  CHECK(recorder.look()->identity.maxWriteSpeed == 4);
  CHECK_FALSE(recorder.look()->identity.hasWriteGuard);
  CHECK_FALSE(recorder.take());
  fs::remove(box.folder() / "recorder.ini");
  CHECK(recorder.look()->identity.vendor == "Virtual");
  CHECK(recorder.take());
  fs::remove_all(box.folder());
  CHECK(recorder.look()->identity.vendor == "Virtual");
  CHECK_FALSE(recorder.take());
  CHECK_FALSE(recorder.look()->disc);
  CHECK(ejectFailure(recorder) != "no failure");
}

TEST_CASE("A recorder.ini that is no file leaves the recorder with its defaults") {
  const Sandbox box;
  fs::remove(box.folder() / "recorder.ini");
  SECTION("a folder") {
    fs::create_directory(box.folder() / "recorder.ini");
  }
  SECTION("a pipe that nobody writes to") {
    REQUIRE(mkfifo((box.folder() / "recorder.ini").c_str(), 0600) == 0);
  }
  SECTION("a link to itself") {
    fs::create_symlink(box.folder() / "recorder.ini", box.folder() / "recorder.ini");
  }
  SECTION("far too long") {
    box.configure("[recorder]\nvendor = ACME\n" + std::string(1 << 20, ';'));
  }
  VirtualRecorder recorder = box.recorder();
  CHECK(recorder.look()->identity.vendor == "Virtual");
  CHECK(recorder.take());
  CHECK(recorder.look()->disc);
  CHECK(ejectFailure(recorder) == "no failure");
}

TEST_CASE("What the user may not read or move is a closed disc and a stuck tray") {
  const Sandbox box;
  fs::permissions(box.root(), fs::perms::all);
  const auto asUser = [&](const std::function<int()>& action) {
    return inChild([&] { return geteuid() != 0 || setuid(65534) == 0 ? action() : 77; });
  };
  CHECK(asUser([&] { return ejects(box) ? 1 : 0; }) == (geteuid() == 0 ? 0 : 1));
  fs::permissions(box.tray(), static_cast<fs::perms>(0555));
  CHECK(asUser([&] { return ejects(box) ? 1 : 0; }) == 0);
  fs::permissions(box.disc() / "disc.ini", fs::perms::none);
  const int state = asUser([&] {
    const std::optional<DiscState> seen = box.recorder().look()->disc;
    return seen && seen->status == DiscClosed && seen->type == DiscTypeUnknown ? 0 : 1;
  });
  CHECK(state == 0);
  fs::permissions(box.disc(), fs::perms::none);
  CHECK(asUser([&] { return box.recorder().look()->disc ? 1 : 0; }) == 0);
  fs::permissions(box.disc(), fs::perms::owner_all);
  fs::permissions(box.tray(), fs::perms::owner_all);
}

TEST_CASE("The write guard is kept as it was set") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  CHECK_FALSE(recorder.writeGuardEnabled());
  recorder.enableWriteGuard(true);
  CHECK(recorder.writeGuardEnabled());
}

TEST_CASE("A disc put in or taken out between two looks is seen") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  fs::rename(box.disc(), box.shelf() / "Disc 0001");
  checkNoDisc(box);
  addDisc(box.tray() / "My own", blankCdRw);
  REQUIRE(recorder.look()->disc);
  CHECK(discIn(recorder).rewritable);
}

TEST_CASE("An empty, missing or jammed tray holds no disc") {
  const Sandbox box;
  SECTION("empty") {
    fs::remove_all(box.disc());
  }
  SECTION("missing") {
    fs::remove_all(box.tray());
  }
  SECTION("two discs") {
    addDisc(box.tray() / "Disc 0002", blankCdR);
  }
  SECTION("a file instead of the tray") {
    fs::remove_all(box.tray());
    writeFile(box.tray(), "x");
  }
  SECTION("a file instead of a disc") {
    fs::remove_all(box.disc());
    writeFile(box.disc(), "x");
  }
  SECTION("a hidden folder only") {
    fs::rename(box.disc(), box.tray() / ".Disc 0001");
  }
  SECTION("a link to a disc") {
    fs::rename(box.disc(), box.shelf() / "Disc 0001");
    fs::create_directory_symlink(box.shelf() / "Disc 0001", box.disc());
  }
  SECTION("a link that leads to itself") {
    fs::remove_all(box.disc());
    fs::create_directory_symlink(box.disc(), box.disc());
  }
  SECTION("a tray that is a link to itself") {
    fs::remove_all(box.tray());
    fs::create_directory_symlink(box.tray(), box.tray());
  }
  checkNoDisc(box);
}

TEST_CASE("Files beside the one disc in the tray do not matter") {
  const Sandbox box;
  writeFile(box.tray() / "notes.txt", "x");
  fs::create_directory(box.tray() / ".trash");
  VirtualRecorder recorder = box.recorder();
  REQUIRE(recorder.look()->disc);
  CHECK(discIn(recorder).status == DiscEmpty);
}

TEST_CASE("A disc without a description that makes sense is a closed one, and is left as it is") {
  const Sandbox box;
  std::string words = "disc.ini";
  SECTION("missing") {
    fs::remove(box.disc() / "disc.ini");
  }
  SECTION("empty") {
    box.describeDisc("");
  }
  SECTION("garbage") {
    box.describeDisc(std::string("\0\xFF\x01[disc", 8));
  }
  SECTION("truncated") {
    box.describeDisc("[disc]\nmedium = CD-R\nstatus = bl");
  }
  SECTION("negative") {
    box.describeDisc("[disc]\nmedium = CD-R\nstatus = blank\nblocks = -5\n");
  }
  SECTION("overflowing") {
    box.describeDisc("[disc]\nmedium = CD-R\nstatus = blank\nblocks = 4294967297\n");
  }
  SECTION("huge") {
    box.describeDisc(blankCdR + std::string(1 << 20, ';'));
  }
  SECTION("a folder") {
    fs::remove(box.disc() / "disc.ini");
    fs::create_directory(box.disc() / "disc.ini");
  }
  SECTION("a pipe that nobody writes to") {
    fs::remove(box.disc() / "disc.ini");
    REQUIRE(mkfifo((box.disc() / "disc.ini").c_str(), 0600) == 0);
  }
  SECTION("a link out of the disc") {
    fs::rename(box.disc() / "disc.ini", box.root() / "other.ini");
    fs::create_symlink(box.root() / "other.ini", box.disc() / "disc.ini");
  }
  checkDamaged(box, words);
}

TEST_CASE("Sectors that do not fit the description make a closed disc, and are left as they are") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  SECTION("audio shorter") {
    writeDisc(recorder, audioOrder({300}, false, false));
    fs::resize_file(box.disc() / "disc.bin", 703253);
    checkDamaged(box, "disc.bin has 703253 bytes, and disc.ini says 705600");
  }
  SECTION("audio longer: a write would go over it") {
    writeDisc(recorder, audioOrder({300}, false, false));
    fs::resize_file(box.disc() / "disc.bin", 707952);
    checkDamaged(box, "disc.bin");
  }
  SECTION("audio missing") {
    writeDisc(recorder, audioOrder({300}, false, false));
    fs::remove(box.disc() / "disc.bin");
    checkDamaged(box, "disc.bin has 0 bytes");
  }
  SECTION("data shorter") {
    writeDisc(recorder, dataOrder(300, true, false));
    fs::resize_file(box.disc() / "disc.iso", 0);
    checkDamaged(box, "disc.iso has 0 bytes, and disc.ini says 614400");
  }
  SECTION("a blank disc with something on it") {
    writeFile(box.disc() / "disc.iso", "somebody's image");
    checkDamaged(box, "disc.iso has 16 bytes, and disc.ini says 0");
  }
  SECTION("a link out of the disc") {
    writeFile(box.root() / "victim", "");
    fs::create_symlink(box.root() / "victim", box.disc() / "disc.bin");
    checkDamaged(box, "disc.bin is not a file");
  }
  SECTION("a folder") {
    fs::create_directory(box.disc() / "disc.bin");
    checkDamaged(box, "disc.bin is not a file");
  }
}

TEST_CASE("Ejecting moves the disc to the shelf and feeds a new blank one") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(names(box.shelf()) == Names{"Disc 0001"});
  CHECK(names(box.tray()) == Names{"Disc 0002"});
  CHECK(discIn(recorder).status == DiscEmpty);
  CHECK(readFile(box.shelf() / "Disc 0001" / "disc.bin") == sectorsOf(AudioBlocks, 0, 0, 300));
  writeDisc(recorder, audioOrder({300}, true, true));
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(names(box.shelf()) == Names{"Disc 0001", "Disc 0002"});
  CHECK(names(box.tray()) == Names{"Disc 0003"});
}

TEST_CASE("The feed takes the first blank CD-R of the shelf and passes over everything else") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  addDisc(box.shelf() / "A damaged one", "nonsense");
  addDisc(box.shelf() / "B rewritable", blankCdRw);
  addDisc(box.shelf() / "C spoilt", "[disc]\nmedium = CD-R\nstatus = writing\nblocks = 359849\n");
  addDisc(box.shelf() / "E second", blankCdR);
  addDisc(box.shelf() / "D first", blankCdR);
  writeFile(box.shelf() / "0 file", "x");
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(names(box.tray()) == Names{"D first"});
  CHECK(discIn(recorder).status == DiscEmpty);
}

TEST_CASE("A blank disc that is ejected goes round") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(names(box.tray()) == Names{"Disc 0001"});
  CHECK(names(box.shelf()).empty());
}

TEST_CASE("Without automatic feed the tray stays empty after an eject") {
  const Sandbox box;
  box.configure("[recorder]\nautomaticFeed = no\n");
  VirtualRecorder recorder = box.recorder();
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(names(box.tray()).empty());
  CHECK(names(box.shelf()) == Names{"Disc 0001"});
  CHECK_FALSE(recorder.look()->disc);
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK_FALSE(recorder.look()->disc);
}

TEST_CASE("An empty tray that is ejected with automatic feed gets a blank disc") {
  const Sandbox box;
  fs::remove_all(box.disc());
  VirtualRecorder recorder = box.recorder();
  CHECK(ejectFailure(recorder) == "no failure");
  REQUIRE(recorder.look()->disc);
  CHECK(discIn(recorder).status == DiscEmpty);
}

TEST_CASE("A blank disc that found no room on the computer's disk comes with the first look after there is some") {
  const Sandbox box;
  const int result = inChild([&] {
    const fs::path small = box.root() / "small";
    if (!mountSmallFileSystem(small, "size=1m")) return 77;
    createVirtualRecorder(HostPath((small / "R").string()));
    VirtualRecorder recorder(HostPath((small / "R").string()));
    writeDisc(recorder, audioOrder({100}, true, true));
    std::ofstream(small / "filler", std::ios::binary) << std::string(2 << 20, 'x');
    recorder.eject();
    if (recorder.look()->disc) return 1;
    fs::remove(small / "filler");
    if (!recorder.look()->disc || recorder.look()->disc->status != DiscEmpty) return 2;
    recorder.eject();
    fs::remove_all(*fs::directory_iterator(small / "R" / "tray"));
    return recorder.look()->disc ? 3 : 0;
  });
  if (result == 77)
    WARN("this machine lets nobody mount a file system of his own");
  else
    CHECK(result == 0);
}

TEST_CASE("Looks share one snapshot while the folder stays as it is, and a change makes a new one") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  auto last = recorder.look();
  while (recorder.look() != last) last = recorder.look();
  CHECK(recorder.look() == last);
  box.configure("[recorder]\nvendor = ACME\n");
  CHECK(recorder.look()->identity.vendor == "ACME");
  CHECK(last->identity.vendor == "Virtual");
  addDisc(box.tray() / "Other", blankCdRw);
  CHECK_FALSE(recorder.look()->disc);
}

TEST_CASE("A stuck tray refuses to eject and keeps its disc") {
  const Sandbox box;
  box.configure("[recorder]\nrefuseEject = yes\n");
  const auto before = snapshot(box.folder());
  CHECK_FALSE(ejects(box));
  CHECK(snapshot(box.folder()) == before);
}

TEST_CASE("A disc that cannot be moved stays in the tray") {
  const Sandbox box;
  fs::remove(box.shelf());
  writeFile(box.shelf(), "a file is no shelf");
  const auto before = snapshot(box.folder());
  VirtualRecorder recorder = box.recorder();
  CHECK_THAT(ejectFailure(recorder), StartsWith("045300 the tray of Virtual Recorder cannot be opened: "));
  CHECK(snapshot(box.folder()) == before);
}

TEST_CASE("An ejected disc never takes the place of something on the shelf") {
  const Sandbox box;
  box.configure("[recorder]\nautomaticFeed = no\n");
  SECTION("a disc") {
    addDisc(box.shelf() / "Disc 0001", "theirs");
  }
  SECTION("an empty folder") {
    fs::create_directory(box.shelf() / "Disc 0001");
  }
  SECTION("a file") {
    writeFile(box.shelf() / "Disc 0001", "theirs");
  }
  writeFile(box.shelf() / "Disc 0002", "a file in the way of the next name");
  const auto before = snapshot(box.shelf());
  CHECK(ejects(box));
  CHECK(names(box.shelf()) == Names{"Disc 0001", "Disc 0002", "Disc 0003"});
  CHECK(readFile(box.shelf() / "Disc 0003" / "disc.ini") != "theirs");
  const auto after = snapshot(box.shelf());
  for (const auto& [path, facts] : before) CHECK(after.at(path) == facts);
}

TEST_CASE("Ejecting a jammed tray puts both discs onto the shelf") {
  const Sandbox box;
  addDisc(box.tray() / "Other", "damaged");
  VirtualRecorder recorder = box.recorder();
  CHECK(ejectFailure(recorder) == "no failure");
  REQUIRE(recorder.look()->disc);
  CHECK(names(box.shelf()) == Names{"Other"});
  CHECK(names(box.tray()) == Names{"Disc 0001"});
}

TEST_CASE("A new disc is numbered above all others, whatever odd numbers lie about") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  for (const char* name :
       {"Disc 0041", "Disc 99999999999999999999", "Disc -7", "Disc x", "Disc 1000000000", "Disc 2147483647"})
    addDisc(box.shelf() / name, "x");
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(names(box.tray()) == Names{"Disc 0042"});
}

TEST_CASE("The rest of a blank disc whose making was cut off is no disc and is used for the next") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  fs::create_directory(box.tray() / ".new disc");
  REQUIRE(recorder.look()->disc);
  CHECK(ejectFailure(recorder) == "no failure");
  CHECK(names(box.tray()) == Names{"Disc 0002"});
  CHECK(discIn(recorder).status == DiscEmpty);
}

}  // namespace trackloom::engines::virtualrecorder
