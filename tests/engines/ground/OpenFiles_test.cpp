#include "engines/ground/OpenFiles.h"

#include <fcntl.h>
#include <sys/resource.h>

#include <array>
#include <catch2/catch.hpp>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <system_error>

#include "fakes/FolderLook.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines {

using fakes::contentOf;
using fakes::namesIn;
using fakes::TempFolder;
using Names = std::vector<std::string>;

namespace {

std::string failureOf(const std::function<void()>& action) {
  try {
    action();
    return "";
  } catch (const std::system_error& error) {
    return error.what();
  }
}

/// No file grows beyond this while it lives.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    REQUIRE(::getrlimit(RLIMIT_FSIZE, &before_) == 0);
    const rlimit now{bytes, before_.rlim_max};
    REQUIRE(::setrlimit(RLIMIT_FSIZE, &now) == 0);
  }
  ~SizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

}  // namespace

TEST_CASE("What cannot be opened, listed, looked at or moved is named with the reason") {
  const TempFolder place;
  place.write("file", "x");
  const FileDescriptor folder = openFolder(place.path());
  const std::string longName(300, 'n');
  CHECK(failureOf([&] { openFolder(place / "none"); }) ==
        "cannot open the folder " + (place / "none") + ": No such file or directory");
  CHECK(failureOf([&] { openFolder(folder, "file"); }) == "cannot open the folder file: Not a directory");
  CHECK(failureOf([&] { makeFolder(folder, longName); }) ==
        "cannot make the folder " + longName + ": File name too long");
  CHECK(failureOf([&] { openFile(folder, "none", O_RDONLY); }) == "cannot open none: No such file or directory");
  CHECK(failureOf([&] { openFile(folder, ".", O_RDONLY); }) == ". is not a file: Invalid argument");
  CHECK(failureOf([&] { fileSize(folder, longName); }) == "cannot look at " + longName + ": File name too long");
  CHECK(failureOf([&] { fileSize(folder, "."); }) == ". is not a file: Invalid argument");
  CHECK(failureOf([&] { moveEntry(folder, "none", folder, "x"); }) == "cannot move none: No such file or directory");
  CHECK(fileSize(folder, "none") == std::nullopt);
  CHECK(fileSize(folder, "file") == 1);
}

TEST_CASE("A folder that cannot be listed for want of descriptors says so") {
  const TempFolder folder;
  folder.write("inner/a", "");
  const FileDescriptor open = openFolder(folder.path());
  rlimit before{};
  REQUIRE(getrlimit(RLIMIT_NOFILE, &before) == 0);
  const rlimit none{0, before.rlim_max};
  REQUIRE(setrlimit(RLIMIT_NOFILE, &none) == 0);
  std::exception_ptr failure;
  try {
    folderNames(open);
  } catch (...) {
    failure = std::current_exception();
  }
  REQUIRE(setrlimit(RLIMIT_NOFILE, &before) == 0);
  // The sanitizers want descriptors of their own to look at an object, so it is looked at only now.
  REQUIRE(failure);
  CHECK_THROWS_WITH(std::rethrow_exception(failure), "cannot list a folder: Too many open files");
  CHECK(folderNames(open) == std::vector<std::string>{"inner"});
}

TEST_CASE("A small file is read whole up to its limit and refused beyond") {
  const TempFolder place;
  place.write("file", std::string(10'000, 'x'));
  const FileDescriptor folder = openFolder(place.path());
  CHECK(readSmallFile(folder, "file", 10'000) == std::string(10'000, 'x'));
  CHECK(failureOf([&] { readSmallFile(folder, "file", 9'999); }) == "cannot read file: File too large");
}

TEST_CASE("A read that ends early tells whether the file ended or the system refused") {
  const TempFolder place;
  place.write("file", "12345");
  const FileDescriptor folder = openFolder(place.path());
  std::array<std::byte, 8> bytes{};
  errno = EIO;
  CHECK(readAt(openFile(folder, "file", O_RDONLY), bytes, 2) == 3);
  CHECK(errno == 0);
  CHECK(readAt(openFile(folder, "file", O_WRONLY), bytes, 0) == 0);
  CHECK(errno == EBADF);
  CHECK(writeAt(openFile(folder, "file", O_RDONLY), bytes, 0) == 0);
  CHECK(errno == EBADF);
}

TEST_CASE("A write tells how much of it is on the disk, be it a single byte") {
  const TempFolder place;
  place.write("file", "12345");
  const FileDescriptor file = openFile(openFolder(place.path()), "file", O_RDWR);
  constexpr std::array bytes{std::byte{'x'}, std::byte{'y'}};
  CHECK(writeAt(file, std::span(bytes).first(1), 1) == 1);
  CHECK(place.read("file") == "1x345");
  CHECK(writeAt(file, bytes, 4) == 2);
  CHECK(place.read("file") == "1x34xy");
}

TEST_CASE("A replacement takes the place of the old file, or leaves no trace") {
  const TempFolder place;
  place.write("file", "old");
  const FileDescriptor folder = openFolder(place.path());
  SECTION("put in place") {
    Replacement replacement(folder, "file", "new");
    CHECK(contentOf(place / "file") == "old");
    CHECK(namesIn(place.path()) == Names{"file", "file.new"});
    replacement.putInPlace();
    CHECK(contentOf(place / "file") == "new");
  }
  SECTION("given up") {
    static_cast<void>(Replacement(folder, "file", "new"));
    CHECK(contentOf(place / "file") == "old");
  }
  SECTION("no room for it") {
    const SizeLimit limit(2);
    CHECK(failureOf([&] { Replacement(folder, "file", "new"); }) == "cannot write file.new: File too large");
    CHECK(contentOf(place / "file") == "old");
  }
  CHECK(namesIn(place.path()) == Names{"file"});
}

TEST_CASE("A replacement that cannot take its place says so and leaves what stands in the way") {
  const TempFolder place;
  place.write("file/inside", "x");
  const FileDescriptor folder = openFolder(place.path());
  CHECK(failureOf([&] { replaceFile(folder, "file", "new"); }) == "cannot replace file: Is a directory");
  CHECK(namesIn(place.path()) == Names{"file"});
  CHECK(namesIn(place / "file") == Names{"inside"});
}

TEST_CASE("What is moved takes no other's place") {
  const TempFolder place;
  place.write("a", "a");
  place.write("b", "b");
  const FileDescriptor folder = openFolder(place.path());
  CHECK_FALSE(moveEntry(folder, "a", folder, "b"));
  CHECK(contentOf(place / "b") == "b");
  CHECK(moveEntry(folder, "a", folder, "c"));
  CHECK(namesIn(place.path()) == Names{"b", "c"});
}

}  // namespace trackloom::engines
