#include "runtime/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <catch2/catch.hpp>
#include <cerrno>
#include <filesystem>

#include "fakes/ErrorNumber.h"
#include "fakes/FolderLook.h"
#include "fakes/TempFolder.h"
#include "runtime/Files.h"
#include "runtime/SystemCalls.h"

namespace trackloom {

using fakes::namesIn;
using fakes::TempFolder;
using Lines = std::vector<std::string>;

namespace {}  // namespace

TEST_CASE("What is written in parts, with interruptions between them, comes whole and once") {
  TempFolder folder;
  int calls = 0;
  systemCalls().write = [&](int descriptor, const void* bytes, std::size_t length) {
    if (++calls % 2 != 0) return failed(EINTR);
    return written(descriptor, bytes, std::min<std::size_t>(length, 3));
  };
  ReplaceFile(HostPath(folder / "file"), "all of these words");
  systemCalls() = {};
  CHECK(folder.read("file") == "all of these words");
}

TEST_CASE("What is read in parts, with interruptions between them, comes whole and once") {
  TempFolder folder;
  folder.write("file", "all of these words");
  int calls = 0;
  systemCalls().read = [&](int descriptor, void* bytes, std::size_t length) {
    if (++calls % 2 != 0) return failed(EINTR);
    return got(descriptor, bytes, std::min<std::size_t>(length, 3));
  };
  const std::string part = ReadStart(HostPath(folder / "file"), 16);
  const std::string whole = ReadStart(HostPath(folder / "file"), 99);
  systemCalls() = {};
  CHECK(part == "all of these wor");
  CHECK(whole == "all of these words");
}

TEST_CASE("A disk that fails in the middle of a file is told by its number, and the old file stands alone") {
  TempFolder folder;
  folder.write("file", "old");
  systemCalls().write = [](int, const void*, std::size_t) { return failed(EIO); };
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }) == 57);
  systemCalls() = {};
  systemCalls().fsync = [](int) { return static_cast<int>(failed(EIO)); };
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }) == 57);
  systemCalls() = {};
  systemCalls().read = [](int, void*, std::size_t) { return failed(EIO); };
  CHECK(fakes::errorNumberOf([&] { ReadStart(HostPath(folder / "file"), 3); }) == 57);
  systemCalls() = {};
  CHECK(folder.read("file") == "old");
  CHECK(namesIn(folder.path()) == Lines{"file"});
}

TEST_CASE("A folder whose file system cannot put it on the disk is no fault of the file in it, one that fails is") {
  TempFolder folder;
  const auto foldersFailWith = [](int error) {
    return [error](int descriptor) {
      struct stat entry {};
      ::fstat(descriptor, &entry);
      return S_ISDIR(entry.st_mode) ? static_cast<int>(failed(error)) : 0;
    };
  };
  systemCalls().fsync = foldersFailWith(EINVAL);
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }) == 0);
  systemCalls().fsync = [](int) {
    // What is left behind by a call that succeeds means nothing.
    errno = EIO;
    return 0;
  };
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }) == 0);
  systemCalls().fsync = foldersFailWith(EIO);
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }) == 57);
  systemCalls() = {};
}

TEST_CASE("No file is what the system gives for none, before and after there was one") {
  TempFolder folder;
  folder.write("file", "x");
  FileDescriptor first;
  CHECK(first.get() == -1);
  FileDescriptor opened = FileDescriptor::open(folder / "file", O_RDONLY);
  const FileDescriptor taken = std::move(opened);
  CHECK(opened.get() == -1);
  FileDescriptor closed = FileDescriptor::open(folder / "file", O_RDONLY);
  CHECK(closed.close());
  CHECK(closed.get() == -1);
  CHECK_FALSE(closed);
}

TEST_CASE("A descriptor is open until it is closed, moved away or dropped") {
  TempFolder folder;
  folder.write("file", "x");
  int number = -1;
  {
    FileDescriptor file = FileDescriptor::open(folder / "file", O_RDONLY);
    number = file.get();
    CHECK(file);
    FileDescriptor taken = std::move(file);
    CHECK(taken.get() == number);
    FileDescriptor other;
    CHECK_FALSE(other);
    CHECK(other.close());
    other = std::move(taken);
    CHECK(other.get() == number);
    CHECK(::fcntl(number, F_GETFD) != -1);
  }
  CHECK(::fcntl(number, F_GETFD) == -1);
  CHECK_FALSE(FileDescriptor(number).close());
}

TEST_CASE("The lowest descriptor of all is one like any other") {
  const int kept = ::dup(0);
  {
    FileDescriptor lowest(0);
    CHECK(lowest);
    CHECK(lowest.close());
    CHECK(::fcntl(0, F_GETFD) == -1);
  }
  ::dup2(kept, 0);
  ::close(kept);
}

}  // namespace trackloom
