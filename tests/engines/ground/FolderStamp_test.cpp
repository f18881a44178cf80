#include "engines/ground/FolderStamp.h"

#include <catch2/catch.hpp>
#include <filesystem>
#include <fstream>

#include "engines/ground/OpenFiles.h"
#include "fakes/TempFolder.h"

namespace trackloom::engines {

namespace fs = std::filesystem;

namespace {

FolderStamp stampOf(const std::string& path) {
  const FileDescriptor folder = openFolder(path);
  FolderStamp stamp;
  stamp.add(folder);
  stamp.add(folder, "a");
  stamp.add(folder, "b");
  return stamp;
}

}  // namespace

TEST_CASE("A stamp stays equal while nothing changes, and differs after every kind of change") {
  const fakes::TempFolder folder;
  const std::string a = folder.file("a", "one").text;
  fs::last_write_time(a, fs::file_time_type::clock::now() - std::chrono::hours(1));
  const FolderStamp before = stampOf(folder.path());
  CHECK(stampOf(folder.path()) == before);
  SECTION("longer") {
    std::ofstream(a, std::ios::app) << "x";
  }
  SECTION("other bytes at the same length") {
    std::ofstream(a, std::ios::in) << "two";
  }
  SECTION("gone") {
    fs::remove(a);
  }
  SECTION("a new neighbour") {
    folder.file("b", "");
  }
  SECTION("another file of the same length and time") {
    const auto time = fs::last_write_time(a);
    fs::last_write_time(folder.file("new", "two").text, time);
    fs::rename(folder.path() + "/new", a);
  }
  CHECK_FALSE(stampOf(folder.path()) == before);
}

TEST_CASE("A stamp of what has just changed does not count, since the next change could leave no trace") {
  const fakes::TempFolder folder;
  CHECK_FALSE(stampOf(folder.path()).counts());
  CHECK(stampOf("/proc/self/../../usr").counts());
}

}  // namespace trackloom::engines
