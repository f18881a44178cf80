#include "runtime/PrivateFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <catch2/catch.hpp>
#include <csignal>
#include <filesystem>

#include "fakes/ChildProcess.h"
#include "fakes/ErrorNumber.h"
#include "fakes/TempFolder.h"
#include "runtime/FileDescriptor.h"
#include "runtime/SystemCalls.h"

namespace trackloom {

using fakes::TempFolder;

namespace {

mode_t permissionsOf(const std::string& path) {
  struct stat entry {};
  return ::lstat(path.c_str(), &entry) == 0 ? entry.st_mode & 0777 : 0;
}

}  // namespace

TEST_CASE("A private file is made under a free name only, and nobody else can read it") {
  TempFolder folder;
  const mode_t before = ::umask(0);
  CHECK(MakePrivateFile(HostPath(folder / "file"), "bytes"));
  ::umask(before);
  CHECK(folder.read("file") == "bytes");
  CHECK(permissionsOf(folder / "file") == 0600);
  CHECK_FALSE(MakePrivateFile(HostPath(folder / "file"), "others"));
  CHECK(folder.read("file") == "bytes");
  std::filesystem::create_symlink("nowhere", folder / "link");
  CHECK_FALSE(MakePrivateFile(HostPath(folder / "link"), "bytes"));
  CHECK(fakes::errorNumberOf([&] { MakePrivateFile(HostPath(folder / "none/file"), "x"); }) == 76);
}

TEST_CASE("A private file for which there is no room leaves nothing behind, and what was to be moved stays") {
  TempFolder folder;
  folder.write("from", "bytes");
  const fakes::ChildProcess child([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    fakes::limitFiles(2);
    return fakes::errorNumberOf([&] { MovePrivateFile(HostPath(folder / "from"), HostPath(folder / "to")); });
  });
  CHECK(child.status() == 61);
  CHECK(folder.read("from") == "bytes");
  CHECK_FALSE(folder.has("to"));
}

TEST_CASE("A file is moved to a free name, whole and private") {
  TempFolder folder;
  const std::string bytes(100000, 'b');
  folder.write("from", bytes);
  folder.write("taken", "kept");
  CHECK_FALSE(MovePrivateFile(HostPath(folder / "from"), HostPath(folder / "taken")));
  CHECK(folder.read("taken") == "kept");
  CHECK(folder.has("from"));
  CHECK(MovePrivateFile(HostPath(folder / "from"), HostPath(folder / "to")));
  CHECK_FALSE(folder.has("from"));
  CHECK(folder.read("to") == bytes);
  CHECK(permissionsOf(folder / "to") == 0600);
}

TEST_CASE("A private file is locked from before its first byte until it is whole, so that nobody takes half of it") {
  TempFolder folder;
  int tries = 0;
  systemCalls().write = [&](int descriptor, const void* bytes, std::size_t length) {
    ++tries;
    CHECK(fakes::errorNumberOf([&] { MovePrivateFile(HostPath(folder / "file"), HostPath(folder / "taken")); }) == 55);
    return written(descriptor, bytes, length);
  };
  CHECK(MakePrivateFile(HostPath(folder / "file"), "bytes"));
  systemCalls() = {};
  CHECK(tries == 1);
  CHECK_FALSE(folder.has("taken"));
  CHECK(MovePrivateFile(HostPath(folder / "file"), HostPath(folder / "taken")));
}

TEST_CASE("A private file and its folder are on the disk before it counts as made") {
  TempFolder folder;
  std::vector<std::string> synced;
  systemCalls().onFsync = [&](int descriptor) {
    struct stat entry {};
    ::fstat(descriptor, &entry);
    synced.push_back(S_ISDIR(entry.st_mode) ? "folder" : folder.read("file"));
  };
  CHECK(MakePrivateFile(HostPath(folder / "file"), "bytes"));
  CHECK(synced == std::vector<std::string>{"bytes", "folder"});
  systemCalls().fsync = [](int) { return static_cast<int>(failed(EIO)); };
  CHECK(fakes::errorNumberOf([&] { MakePrivateFile(HostPath(folder / "other"), "bytes"); }) == 57);
  systemCalls() = {};
  CHECK_FALSE(folder.has("other"));
}

TEST_CASE("Only a regular file is moved, no link to one and no folder") {
  TempFolder folder;
  folder.write("file", "bytes");
  std::filesystem::create_symlink("file", folder / "link");
  std::filesystem::create_directory(folder / "folder");
  for (const auto& [name, error] : std::vector<std::pair<std::string, int>>{{"link", 76}, {"folder", 70}, {"none", 53}})
    CHECK(fakes::errorNumberOf(
              [&, from = name] { MovePrivateFile(HostPath(folder / from), HostPath(folder / "to")); }) == error);
  CHECK_FALSE(folder.has("to"));
  CHECK(folder.read("file") == "bytes");
}

TEST_CASE("A file that cannot be locked on its file system is moved all the same") {
  TempFolder folder;
  folder.write("from", "bytes");
  systemCalls().flock = [](int) { return static_cast<int>(failed(ENOLCK)); };
  CHECK(MovePrivateFile(HostPath(folder / "from"), HostPath(folder / "to")));
  systemCalls() = {};
  CHECK(folder.read("to") == "bytes");
}

TEST_CASE("What is larger than any file of the program is not moved") {
  TempFolder folder;
  folder.write("from", "x");
  std::filesystem::resize_file(folder / "from", (1U << 28) + 1U);
  CHECK(fakes::errorNumberOf([&] { MovePrivateFile(HostPath(folder / "from"), HostPath(folder / "to")); }) == 70);
  CHECK(folder.has("from"));
  CHECK_FALSE(folder.has("to"));
}

}  // namespace trackloom
