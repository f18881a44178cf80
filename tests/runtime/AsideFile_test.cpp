#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <cerrno>
#include <filesystem>

#include "fakes/ChildProcess.h"
#include "fakes/ErrorNumber.h"
#include "fakes/FolderLook.h"
#include "fakes/TempFolder.h"
#include "runtime/FileDescriptor.h"
#include "runtime/Files.h"
#include "runtime/SystemCalls.h"

namespace trackloom {

using fakes::namesIn;
using fakes::TempFolder;
using Lines = std::vector<std::string>;

namespace {

mode_t permissionsOf(const std::string& path) {
  struct stat entry {};
  return ::stat(path.c_str(), &entry) == 0 ? entry.st_mode & 07777 : 0;
}

}  // namespace

TEST_CASE("A process that is killed while it makes a file leaves no part of it under its name") {
  TempFolder folder;
  const HostPath file(folder / "Options.dat");
  CHECK(fakes::killedWhenWriting(0, [&] { WriteStart(file, "whole"); }).signal() == SIGXFSZ);
  CHECK_FALSE(folder.has("Options.dat"));
  CHECK(fakes::killedWhenWriting(2, [&] { WriteStart(file, "whole"); }).signal() == SIGXFSZ);
  CHECK_FALSE(folder.has("Options.dat"));
  WriteStart(file, "whole");
  CHECK(folder.read("Options.dat") == "whole");
}

TEST_CASE("What a killed save leaves beside the old file is gone after the next save") {
  TempFolder folder;
  folder.write("a", "old");
  const auto killedSave = [&] {
    return fakes::killedWhenWriting(2, [&] { ReplaceFile(HostPath(folder / "a"), "new"); }).signal();
  };
  REQUIRE(killedSave() == SIGXFSZ);
  REQUIRE(killedSave() == SIGXFSZ);
  CHECK(folder.read("a") == "old");
  CHECK(namesIn(folder.path()).size() == 2);
  ReplaceFile(HostPath(folder / "b"), "new");
  CHECK(namesIn(folder.path()) == Lines{"a", "b"});
}

TEST_CASE("What another program is saving, and what is no file of this user's, is left alone") {
  TempFolder folder;
  folder.write(".trackloom-new1", "in the making");
  folder.write("elsewhere", "kept");
  std::filesystem::create_symlink("elsewhere", folder / ".trackloom-new2");
  std::filesystem::create_directory(folder / ".trackloom-new3");
  const FileDescriptor other(::open((folder / ".trackloom-new1").c_str(), O_RDONLY));
  REQUIRE(::flock(other.get(), LOCK_EX | LOCK_NB) == 0);
  ReplaceFile(HostPath(folder / "file"), "new");
  CHECK(namesIn(folder.path()) == Lines{".trackloom-new1", ".trackloom-new2", ".trackloom-new3", "elsewhere", "file"});
  CHECK(folder.read(".trackloom-new1") == "in the making");
  CHECK(folder.read("elsewhere") == "kept");
  CHECK(folder.read("file") == "new");
}

TEST_CASE("A file is on the disk before it takes its place, and its folder before the save is over") {
  TempFolder folder;
  folder.write("file", "old");
  Lines synced;
  systemCalls().onFsync = [&](int descriptor) {
    struct stat entry {};
    ::fstat(descriptor, &entry);
    synced.push_back((S_ISDIR(entry.st_mode) ? "the folder with the " : "a file beside the ") + folder.read("file"));
  };
  ReplaceFile(HostPath(folder / "file"), "new");
  systemCalls() = {};
  CHECK(synced == Lines{"a file beside the old", "the folder with the new"});
}

TEST_CASE("A new file that another program takes for left over, before it is locked, is made anew under another name") {
  TempFolder folder;
  int locks = 0;
  systemCalls().onFlock = [&](int) {
    if (++locks == 1) std::filesystem::remove(folder / ".trackloom-new1");
  };
  ReplaceFile(HostPath(folder / "file"), "new");
  systemCalls() = {};
  CHECK(locks == 2);
  CHECK(folder.read("file") == "new");
  CHECK(namesIn(folder.path()) == Lines{"file"});
}

TEST_CASE("A new file that another program holds already is left to it, and one that nobody can lock is not") {
  TempFolder folder;
  int locks = 0;
  systemCalls().flock = [&](int) { return static_cast<int>(++locks == 1 ? failed(EWOULDBLOCK) : 0); };
  ReplaceFile(HostPath(folder / "file"), "new");
  CHECK(locks == 2);
  CHECK(namesIn(folder.path()) == Lines{".trackloom-new1", "file"});
  std::filesystem::remove(folder / ".trackloom-new1");
  locks = 0;
  systemCalls().flock = [&](int) { return ++locks, static_cast<int>(failed(ENOLCK)); };
  ReplaceFile(HostPath(folder / "file"), "newer");
  systemCalls() = {};
  CHECK(locks == 1);
  CHECK(folder.read("file") == "newer");
  CHECK(namesIn(folder.path()) == Lines{"file"});
}

TEST_CASE("What takes a left-over file's name while that is looked at is left alone") {
  TempFolder folder;
  folder.write(".trackloom-new1", "left over");
  int locks = 0;
  systemCalls().onFlock = [&](int) {
    if (++locks > 1) return;
    std::filesystem::rename(folder / ".trackloom-new1", folder / "finished");
    folder.write(".trackloom-new1", "in the making");
  };
  ReplaceFile(HostPath(folder / "file"), "new");
  systemCalls() = {};
  CHECK(folder.read(".trackloom-new1") == "in the making");
  CHECK(folder.read("finished") == "left over");
  CHECK(folder.read("file") == "new");
}

TEST_CASE("All that killed saves can leave in a folder goes with the next save") {
  TempFolder folder;
  for (int number = 1; number <= 8; ++number) folder.write(".trackloom-new" + std::to_string(number), "left over");
  folder.write(".trackloom-new9", "not ours");
  ReplaceFile(HostPath(folder / "file"), "new");
  CHECK(namesIn(folder.path()) == Lines{".trackloom-new9", "file"});
}

TEST_CASE("A file that has taken its place leaves its old name to others, also when its folder then fails") {
  TempFolder folder;
  for (const int error : {0, EIO}) {
    std::filesystem::remove(folder / ".trackloom-new1");
    systemCalls().fsync = [&](int descriptor) {
      struct stat entry {};
      ::fstat(descriptor, &entry);
      if (!S_ISDIR(entry.st_mode)) return 0;
      folder.write(".trackloom-new1", "another's");
      return error == 0 ? 0 : static_cast<int>(failed(error));
    };
    CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }) == (error == 0 ? 0 : 57));
    systemCalls() = {};
    CHECK(folder.read(".trackloom-new1") == "another's");
    CHECK(folder.read("file") == "new");
  }
}

TEST_CASE("A replaced file keeps also the permissions that the mask would take") {
  TempFolder folder;
  folder.write("file", "old");
  ::chmod((folder / "file").c_str(), 0666);
  const mode_t before = ::umask(077);
  ReplaceFile(HostPath(folder / "file"), "new");
  ::umask(before);
  CHECK(permissionsOf(folder / "file") == 0666);
}

TEST_CASE("A left-over file of another user is left alone") {
  if (::geteuid() != 0) return;
  TempFolder folder;
  folder.write(".trackloom-new1", "another's");
  REQUIRE(::chown((folder / ".trackloom-new1").c_str(), 65534, 65534) == 0);
  ReplaceFile(HostPath(folder / "file"), "new");
  CHECK(folder.read(".trackloom-new1") == "another's");
}

TEST_CASE("Where all names beside a file are taken, nothing is saved and nothing goes") {
  TempFolder folder;
  folder.write("file", "old");
  for (int number = 1; number <= 8; ++number)
    std::filesystem::create_directory(folder / (".trackloom-new" + std::to_string(number)));
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }) == 75);
  CHECK(folder.read("file") == "old");
  std::filesystem::remove(folder / ".trackloom-new8");
  ReplaceFile(HostPath(folder / "file"), "new");
  CHECK(folder.read("file") == "new");
}

}  // namespace trackloom
