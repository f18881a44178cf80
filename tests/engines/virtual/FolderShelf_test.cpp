#include "engines/virtual/FolderShelf.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <chrono>
#include <memory>
#include <thread>

#include "engines/virtual/Sandbox.h"
#include "runtime/FileDescriptor.h"

namespace trackloom::engines::virtualrecorder {

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;
using State = ShelfDisc::State;

constexpr const char* Blank = "[disc]\nmedium = CD-R\nstatus = blank\nblocks = 359849\n";
constexpr const char* Cut = "[disc]\nmedium = CD-R\nstatus = writing\nblocks = 359849\n";

/// A recorder with a blank disc in the tray, and a shelf.
struct Hands {
  Sandbox box;
  FolderShelf shelf{HostPath(box.folder().string())};

  void put(const std::string& name, const std::string& discIni = Blank) const {
    fs::create_directories(box.shelf() / name);
    writeFile(box.shelf() / name / "disc.ini", discIni);
  }
  ShelfDisc onShelf(const std::string& name) {
    for (const ShelfDisc& disc : shelf.look().shelf)
      if (disc.name == name) return disc;
    FAIL("no disc " << name);
    return {};
  }
  ShelfDisc inTray() {
    const ShelfView view = shelf.look();
    REQUIRE(view.tray.size() == 1);
    return view.tray.front();
  }
};

/// An operation that has the recorder for as long as this lives.
struct Operation {
  explicit Operation(const Hands& hands) : folder(open(hands.box.folder().c_str(), O_RDONLY | O_DIRECTORY)) {
    REQUIRE(flock(folder.get(), LOCK_EX | LOCK_NB) == 0);
  }
  FileDescriptor folder;
};

std::string refusalOf(const std::function<void()>& deed) {
  try {
    deed();
  } catch (const ShelfRefusal& refusal) {
    return refusal.what();
  }
  return "no refusal";
}

Names namesOf(const std::vector<ShelfDisc>& discs) {
  Names names;
  for (const ShelfDisc& disc : discs) names.push_back(disc.name);
  return names;
}

/// Root may do everything, so where it runs the tests somebody else has to try; for a child process.
void becomeOrdinaryUser(const fs::path& owned) {
  constexpr uid_t nobody = 65534;
  if (geteuid() != 0) return;
  REQUIRE(lchown(owned.c_str(), nobody, nobody) == 0);
  for (const auto& entry : fs::recursive_directory_iterator(owned))
    REQUIRE(lchown(entry.path().c_str(), nobody, nobody) == 0);
  REQUIRE(setuid(nobody) == 0);
}

std::string discIniOf(const Hands& hands, const std::string& name) {
  return readFile(hands.box.shelf() / name / "disc.ini");
}

}  // namespace

TEST_CASE("A look at a new recorder shows a blank disc in the tray and an empty shelf") {
  Hands hands;
  const ShelfView view = hands.shelf.look();
  CHECK(view.present);
  CHECK_FALSE(view.busy);
  CHECK(view.shelf.empty());
  const ShelfDisc disc = hands.inTray();
  CHECK(disc.name == "Disc 0001");
  CHECK(disc.state == State::Blank);
  CHECK_FALSE(disc.rewritable);
  CHECK(disc.size == 359849);
  CHECK(disc.used == 0);
  CHECK(disc.free == 359849);
  CHECK_FALSE(disc.kind);
  CHECK(hands.shelf.present());
  CHECK(hands.shelf.name() == "Virtual Recorder");
  CHECK(hands.shelf.folder().text == hands.box.folder().string());
}

TEST_CASE("A look tells what is recorded on a disc, how much of it is left, and when that was") {
  Hands hands;
  VirtualRecorder recorder = hands.box.recorder();
  const auto before = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  writeDisc(recorder, audioOrder({300, 400}, true, false));
  const ShelfDisc open = hands.inTray();
  CHECK(open.state == State::Open);
  CHECK(open.kind == AudioBlocks);
  CHECK(open.tracks == 2);
  CHECK(open.used == 300 + 150 + 400);
  CHECK(open.free == 359849 - 850 - 11400);
  CHECK(open.changed >= before);
  CHECK(open.changed <= std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()));

  hands.shelf.eject();
  writeDisc(recorder, dataOrder(500, true, true));
  const ShelfDisc closed = hands.inTray();
  CHECK(closed.state == State::Closed);
  CHECK(closed.kind == DataBlocks);
  CHECK(closed.tracks == 1);
  CHECK(closed.used == 500);
  CHECK(closed.free == 0);
  CHECK(hands.onShelf("Disc 0001") == open);
}

TEST_CASE("A look tells a rewritable disc, one of another size, a spoilt one and a damaged one") {
  Hands hands;
  hands.put("a", "[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 1000\n");
  hands.put("b", Cut);
  hands.put("c", "nonsense");
  fs::create_directory(hands.box.shelf() / "d");
  CHECK(hands.onShelf("a").rewritable);
  CHECK(hands.onShelf("a").size == 1000);
  CHECK(hands.onShelf("b").state == State::Spoilt);
  CHECK(hands.onShelf("b").free == 0);
  CHECK(hands.onShelf("b").trouble.empty());
  CHECK(hands.onShelf("c").state == State::Damaged);
  CHECK(hands.onShelf("c").trouble.find("medium") != std::string::npos);
  CHECK(hands.onShelf("d").state == State::Damaged);
  CHECK(hands.onShelf("d").changed > 0);
}

TEST_CASE("A look sees what a file manager moved, and changes nothing itself") {
  Hands hands;
  hands.put("b");
  hands.put("a");
  writeFile(hands.box.shelf() / "notes.txt", "x");
  fs::create_directory(hands.box.shelf() / ".hidden");
  fs::create_directory_symlink(hands.box.root(), hands.box.shelf() / "link");
  const auto before = snapshot(hands.box.root());
  CHECK(namesOf(hands.shelf.look().shelf) == Names{"a", "b"});
  CHECK(snapshot(hands.box.root()) == before);
  fs::rename(hands.box.disc(), hands.box.shelf() / "c");
  CHECK(hands.shelf.look().tray.empty());
  CHECK(namesOf(hands.shelf.look().shelf) == Names{"a", "b", "c"});
  fs::rename(hands.box.shelf() / "a", hands.box.tray() / "a");
  fs::rename(hands.box.shelf() / "b", hands.box.tray() / "b");
  CHECK(namesOf(hands.shelf.look().tray) == Names{"a", "b"});
}

TEST_CASE("A recorder without a tray or a shelf shows no discs there, and one that has gone is not present") {
  Hands hands;
  fs::remove(hands.box.shelf());
  CHECK(namesOf(hands.shelf.look().tray) == Names{"Disc 0001"});
  CHECK_FALSE(fs::exists(hands.box.shelf()));
  fs::remove_all(hands.box.tray());
  CHECK(hands.shelf.look().present);
  CHECK(hands.shelf.look().tray.empty());
  fs::remove_all(hands.box.folder());
  CHECK_FALSE(hands.shelf.look().present);
  CHECK_FALSE(hands.shelf.present());
  CHECK(refusalOf([&] { hands.shelf.eject(); }).find("No such file") != std::string::npos);
  CHECK(refusalOf([&] { hands.shelf.insert("a"); }).find("No such file") != std::string::npos);
  CHECK_FALSE(fs::exists(hands.box.folder()));
}

TEST_CASE("While an operation runs the recorder is busy, and its disc is at work and not spoilt") {
  Hands hands;
  writeFile(hands.box.disc() / "disc.ini", Cut);
  hands.put("Disc 0002", Cut);
  {
    const Operation operation(hands);
    const ShelfView view = hands.shelf.look();
    CHECK(view.busy);
    CHECK(view.tray.front().state == State::AtWork);
    CHECK(view.shelf.front().state == State::Spoilt);
  }
  CHECK_FALSE(hands.shelf.look().busy);
  CHECK(hands.inTray().state == State::Spoilt);
}

TEST_CASE("An eject is the recorder's own, with its feed") {
  Hands hands;
  hands.shelf.eject();
  CHECK(names(hands.box.tray()) == Names{"Disc 0001"});
  VirtualRecorder recorder = hands.box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  hands.shelf.eject();
  CHECK(names(hands.box.tray()) == Names{"Disc 0002"});
  CHECK(names(hands.box.shelf()) == Names{"Disc 0001"});
  hands.box.configure("[recorder]\nautomaticFeed = off\n");
  hands.shelf.eject();
  CHECK(names(hands.box.tray()).empty());
}

TEST_CASE("An inserted disc changes places with the one in the tray, and no blank disc comes between") {
  Hands hands;
  hands.put("Songs");
  hands.put("Blank");
  hands.shelf.insert("Songs");
  CHECK(names(hands.box.tray()) == Names{"Songs"});
  CHECK(names(hands.box.shelf()) == Names{"Blank", "Disc 0001"});
  hands.box.configure("[recorder]\nautomaticFeed = off\n");
  hands.shelf.eject();
  hands.shelf.insert("Blank");
  CHECK(names(hands.box.tray()) == Names{"Blank"});
  CHECK(names(hands.box.shelf()) == Names{"Disc 0001", "Songs"});
}

TEST_CASE("A disc in the tray whose name is taken on the shelf makes room under a new one") {
  Hands hands;
  hands.put("Disc 0001", "[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 1000\n");
  hands.shelf.insert("Disc 0001");
  CHECK(hands.inTray().rewritable);
  CHECK(names(hands.box.shelf()) == Names{"Disc 0002"});
}

TEST_CASE("The inserted disc's neighbour in the tray gets the cue sheet that a kill kept from it") {
  Hands hands;
  VirtualRecorder recorder = hands.box.recorder();
  writeDisc(recorder, audioOrder({300}, true, true));
  const std::string sheet = readFile(hands.box.disc() / "disc.cue");
  writeFile(hands.box.disc() / "disc.cue", "old");
  hands.put("a");
  hands.shelf.insert("a");
  CHECK(readFile(hands.box.shelf() / "Disc 0001" / "disc.cue") == sheet);
}

TEST_CASE("While an operation runs, and while the tray is stuck, the tray stays shut and says why") {
  Hands hands;
  hands.put("a");
  {
    const Operation operation(hands);
    CHECK(refusalOf([&] { hands.shelf.insert("a"); }) == "The recorder is at work, and its tray stays shut.");
    CHECK(refusalOf([&] { hands.shelf.eject(); }).find("busy") != std::string::npos);
    CHECK(names(hands.box.tray()) == Names{"Disc 0001"});
  }
  hands.box.configure("[recorder]\nrefuseEject = on\nautomaticFeed = off\n");
  CHECK(refusalOf([&] { hands.shelf.insert("a"); }) == "The tray is stuck.");
  CHECK(refusalOf([&] { hands.shelf.eject(); }).find("stuck") != std::string::npos);
  CHECK(names(hands.box.tray()) == Names{"Disc 0001"});
  fs::remove_all(hands.box.disc());
  hands.shelf.insert("a");
  CHECK(names(hands.box.tray()) == Names{"a"});
}

TEST_CASE("What lies in the tray and is no disc keeps its name from a disc") {
  Hands hands;
  fs::remove_all(hands.box.disc());
  writeFile(hands.box.tray() / "a", "mine");
  hands.put("a");
  CHECK(refusalOf([&] { hands.shelf.insert("a"); }) == "Something else of the name \"a\" lies in the tray.");
  CHECK(readFile(hands.box.tray() / "a") == "mine");
  CHECK(namesOf(hands.shelf.look().shelf) == Names{"a"});
}

TEST_CASE("A look at the same moment does not keep an operation from the recorder") {
  Hands hands;
  const FileDescriptor looker(open(hands.box.folder().c_str(), O_RDONLY | O_DIRECTORY));
  REQUIRE(flock(looker.get(), LOCK_SH | LOCK_NB) == 0);
  CHECK_FALSE(hands.shelf.look().busy);
  FileDescriptor leaver(dup(looker.get()));
  const std::jthread leaves([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    flock(leaver.get(), LOCK_UN);
  });
  hands.shelf.eject();
  CHECK(names(hands.box.tray()).size() == 1);
}

TEST_CASE("Blank discs of three kinds come onto the shelf, numbered on, also while an operation runs") {
  Hands hands;
  const Operation operation(hands);
  hands.put("Disc 0007");
  hands.shelf.addBlank(BlankDisc::CdR74);
  hands.shelf.addBlank(BlankDisc::CdR80);
  hands.shelf.addBlank(BlankDisc::CdRw80);
  CHECK(namesOf(hands.shelf.look().shelf) == Names{"Disc 0007", "Disc 0008", "Disc 0009", "Disc 0010"});
  CHECK(hands.onShelf("Disc 0008").size == 332849);
  CHECK(discIniOf(hands, "Disc 0008").find("dataBlocks") == std::string::npos);
  CHECK_FALSE(hands.onShelf("Disc 0008").rewritable);
  CHECK(hands.onShelf("Disc 0009").size == 359849);
  CHECK_FALSE(hands.onShelf("Disc 0009").rewritable);
  CHECK(hands.onShelf("Disc 0010").size == 359849);
  CHECK(hands.onShelf("Disc 0010").rewritable);
  for (const char* name : {"Disc 0008", "Disc 0009", "Disc 0010"}) CHECK(hands.onShelf(name).state == State::Blank);
}

TEST_CASE("A shelf that is missing comes back with the first blank disc") {
  Hands hands;
  fs::remove(hands.box.shelf());
  hands.shelf.addBlank(BlankDisc::CdR80);
  CHECK(names(hands.box.shelf()) == Names{"Disc 0002"});
}

TEST_CASE("A disc on the shelf gets any name that a folder can have, and keeps its content") {
  const auto name = GENERATE(
      values<std::string>({"Songs", "Bach, BWV 1001-1006", "\xC3\x84rger \xF0\x9F\x8E\xB5", "a\"b' $(x) `y` %s", "-rf",
                           "~", "a.", "CON", " blanks around ", std::string(255, 'x'), "caf\xE9"}));
  CAPTURE(name);
  Hands hands;
  hands.put("Disc 0002", "[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 1000\n");
  const Operation operation(hands);
  hands.shelf.rename("Disc 0002", name);
  CHECK(namesOf(hands.shelf.look().shelf) == Names{name});
  CHECK(hands.onShelf(name).size == 1000);
}

TEST_CASE("A name that is none is refused in words, and nothing moves") {
  const auto [name, words] = GENERATE(Catch::Generators::table<std::string, std::string>({
      {"", "A disc needs a name."},
      {"   ", "A disc needs a name."},
      {".", "The name of a disc cannot begin with a dot."},
      {"..", "The name of a disc cannot begin with a dot."},
      {".hidden", "The name of a disc cannot begin with a dot."},
      {"a/b", "The name of a disc cannot contain a slash."},
      {"/tmp/a", "The name of a disc cannot contain a slash."},
      {"a/../../b", "The name of a disc cannot contain a slash."},
      {"a\nb", "The name of a disc cannot contain line breaks or other control characters."},
      {std::string("a\0b", 3), "The name of a disc cannot contain line breaks or other control characters."},
      {"a\x7F", "The name of a disc cannot contain line breaks or other control characters."},
      {std::string(256, 'x'), "This name is too long: it takes 256 bytes, and 255 are the most."},
      {"Taken", "There is a disc \"Taken\" already."},
      {"Disc 0001", "There is a disc \"Disc 0001\" already."},
      {"notes.txt", "There is a disc \"notes.txt\" already."},
  }));
  CAPTURE(name);
  Hands hands;
  hands.put("a");
  hands.put("Taken");
  writeFile(hands.box.shelf() / "notes.txt", "x");
  const auto before = snapshot(hands.box.root());
  CHECK(refusalOf([&, wanted = name] { hands.shelf.rename("a", wanted); }) == words);
  CHECK(snapshot(hands.box.root()) == before);
}

TEST_CASE("A disc may get the name that it has") {
  Hands hands;
  hands.put("a");
  hands.shelf.rename("a", "a");
  CHECK(names(hands.box.shelf()) == Names{"a"});
}

TEST_CASE("No name leads out of the shelf, to what is no disc, or to a disc that has gone") {
  const auto name = GENERATE(values<std::string>(
      {"", ".", "..", "../tray/Disc 0001", "gone", ".hidden", "notes.txt", "link", "a/../../precious", "/"}));
  CAPTURE(name);
  Hands hands;
  hands.put("a");
  fs::create_directory(hands.box.root() / "precious");
  writeFile(hands.box.root() / "precious" / "disc.ini", Blank);
  fs::create_directory(hands.box.shelf() / ".hidden");
  writeFile(hands.box.shelf() / "notes.txt", "x");
  fs::create_directory_symlink(hands.box.root() / "precious", hands.box.shelf() / "link");
  const auto before = snapshot(hands.box.root());
  const std::string words = "There is no disc \"" + name + "\" on the shelf any more.";
  CHECK(refusalOf([&] { hands.shelf.remove(name); }) == words);
  CHECK(refusalOf([&] { hands.shelf.rename(name, "b"); }) == words);
  CHECK(refusalOf([&] { hands.shelf.insert(name); }) == words);
  CHECK(snapshot(hands.box.root()) == before);
}

TEST_CASE("A deleted disc is gone with all its files, and nothing else is") {
  Hands hands;
  hands.put("a");
  hands.put("b");
  for (const char* file : {"disc.bin", "disc.cue", "disc.iso", "disc.ini.new", "disc.cue.new"})
    writeFile(hands.box.shelf() / "a" / file, "x");
  hands.shelf.remove("a");
  CHECK(names(hands.box.shelf()) == Names{"b"});
  CHECK(names(hands.box.shelf() / "b") == Names{"disc.ini"});
  CHECK(names(hands.box.tray()) == Names{"Disc 0001"});
  hands.shelf.remove("b");
  CHECK(names(hands.box.shelf()).empty());
}

TEST_CASE("A damaged disc can be deleted, and an empty folder") {
  Hands hands;
  hands.put("a", "nonsense");
  fs::create_directory(hands.box.shelf() / "b");
  hands.shelf.remove("a");
  hands.shelf.remove("b");
  CHECK(names(hands.box.shelf()).empty());
}

TEST_CASE("A folder that holds anything but a disc stays whole, whatever it is") {
  const auto stranger = GENERATE(values<std::string>({"photo.jpg", ".directory", "Disc.ini", "folder/", "disc.bin/"}));
  CAPTURE(stranger);
  Hands hands;
  hands.put("a");
  const std::string entry = stranger.substr(0, stranger.find('/'));
  if (stranger.ends_with('/'))
    fs::create_directory(hands.box.shelf() / "a" / entry);
  else
    writeFile(hands.box.shelf() / "a" / entry, "mine");
  const auto before = snapshot(hands.box.root());
  CHECK(refusalOf([&] { hands.shelf.remove("a"); }) ==
        "\"a\" was not deleted: it also holds \"" + entry + "\", which is no part of a disc.");
  CHECK(snapshot(hands.box.root()) == before);
}

TEST_CASE("Links in a disc's folder go, and what they lead to stays") {
  Hands hands;
  hands.put("a");
  fs::create_directory(hands.box.root() / "precious");
  writeFile(hands.box.root() / "precious" / "song.mp3", "la la");
  fs::remove(hands.box.shelf() / "a" / "disc.ini");
  fs::create_symlink(hands.box.root() / "precious" / "song.mp3", hands.box.shelf() / "a" / "disc.ini");
  fs::create_directory_symlink(hands.box.root() / "precious", hands.box.shelf() / "a" / "disc.bin");
  fs::create_hard_link(hands.box.root() / "precious" / "song.mp3", hands.box.shelf() / "a" / "disc.iso");
  hands.shelf.remove("a");
  CHECK(names(hands.box.shelf()).empty());
  CHECK(readFile(hands.box.root() / "precious" / "song.mp3") == "la la");
}

TEST_CASE("A disc that cannot be deleted lies where it lay") {
  Hands hands;
  hands.put("a");
  fs::permissions(hands.box.shelf() / "a", fs::perms::owner_read | fs::perms::owner_exec);
  std::string words;
  CHECK(inChild([&] {
          becomeOrdinaryUser(hands.box.root());
          words = refusalOf([&] { hands.shelf.remove("a"); });
          return words == "cannot delete disc.ini: Permission denied" ? 0 : 1;
        }) == 0);
  CHECK(names(hands.box.shelf()) == Names{"a"});
  CHECK(discIniOf(hands, "a") == Blank);
  fs::permissions(hands.box.shelf() / "a", fs::perms::owner_all);
}

TEST_CASE("A deletion that a kill cut off is finished by the next one, and is no disc until then") {
  Hands hands;
  hands.put(".deleted disc");
  writeFile(hands.box.shelf() / ".deleted disc" / "disc.bin", "x");
  hands.put("a");
  CHECK(namesOf(hands.shelf.look().shelf) == Names{"a"});
  hands.shelf.remove("a");
  CHECK(names(hands.box.shelf()).empty());
}

TEST_CASE("A disc that a file manager took out of the tray in the midst of its write is not deleted") {
  Hands hands;
  hands.put("a", Cut);
  hands.put("b");
  {
    const Operation operation(hands);
    CHECK(refusalOf([&] { hands.shelf.remove("a"); }) == "\"a\" may be the disc that is being written just now.");
    hands.shelf.remove("b");
  }
  CHECK(names(hands.box.shelf()) == Names{"a"});
  hands.shelf.remove("a");
  CHECK(names(hands.box.shelf()).empty());
}

TEST_CASE("Every recorder has a shelf of its own") {
  Sandbox box;
  const RecorderList recorders{
      std::make_shared<VirtualRecorder>(HostPath((box.root() / "Virtual Recorder").string())),
      std::make_shared<VirtualRecorder>(HostPath((box.root() / "Virtual Recorder 2").string()))};
  const auto shelves = shelvesOf(HostPath(box.root().string()), recorders);
  REQUIRE(shelves.size() == 2);
  CHECK(shelves.front()->present());
  CHECK_FALSE(shelves.back()->present());
  CHECK(shelves.back()->name() == "Virtual Recorder 2");
  CHECK(shelves.back()->folder().text == (box.root() / "Virtual Recorder 2").string());
}

}  // namespace trackloom::engines::virtualrecorder
