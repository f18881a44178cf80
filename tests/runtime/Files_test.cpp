#include "runtime/Files.h"

#include <sys/stat.h>

#include <catch2/catch.hpp>
#include <filesystem>

#include "fakes/ErrorNumber.h"
#include "fakes/TempFolder.h"

namespace trackloom {

using fakes::TempFolder;

TEST_CASE("A file is a regular file and a folder a folder, after following links") {
  TempFolder folder;
  folder.write("file", "x");
  std::filesystem::create_symlink("file", folder / "link");
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  CHECK(FileExists(HostPath(folder / "file")));
  CHECK(FileExists(HostPath(folder / "link")));
  CHECK_FALSE(FileExists(HostPath(folder / "dangling")));
  CHECK_FALSE(FileExists(HostPath(folder.path())));
  CHECK(FolderExists(HostPath(folder.path())));
  CHECK_FALSE(FolderExists(HostPath(folder / "file")));
  CHECK_FALSE(FileExists(HostPath("")));
}

TEST_CASE("Files are listed by their upper-cased names, their extension in any case, regular files only") {
  TempFolder folder;
  for (const char* name : {"b.mp3", "A.MP3", "a.mp3", "01.Mp3", ".hidden.mp3", "x.mp", "mp3", "[*].mp3"})
    folder.write(name, "");
  std::filesystem::create_directory(folder / "folder.mp3");
  CHECK(ListFiles(HostPath(folder.path()), ".mp3") ==
        std::vector<std::string>{".hidden.mp3", "01.Mp3", "A.MP3", "a.mp3", "b.mp3", "[*].mp3"});
  CHECK(fakes::errorNumberOf([&] { ListFiles(HostPath(folder / "none"), ".mp3"); }) == 53);
}

TEST_CASE("Writing the start of a file keeps the tail of a longer one") {
  TempFolder folder;
  folder.write("file", "0123456789");
  WriteStart(HostPath(folder / "file"), "abc");
  CHECK(folder.read("file") == "abc3456789");
  CHECK(ReadStart(HostPath(folder / "file"), 4) == "abc3");
  CHECK(ReadStart(HostPath(folder / "file"), 99).size() == 10);
}

TEST_CASE("A file that cannot be made is a path that is not there") {
  TempFolder folder;
  const HostPath path(folder / "none/file");
  CHECK(fakes::errorNumberOf([&] { TouchFile(path); }) == 76);
  CHECK(fakes::errorNumberOf([&] { WriteStart(path, "x"); }) == 76);
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(path, "x"); }) == 76);
  CHECK(fakes::errorNumberOf([&] { ReadStart(path, 1); }) == 53);
}

TEST_CASE("Only regular files are replaced, and a pipe makes nobody wait") {
  TempFolder folder;
  REQUIRE(::mkfifo((folder / "pipe").c_str(), 0600) == 0);
  std::filesystem::create_symlink("pipe", folder / "link");
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "link"), "x"); }) == 75);
  CHECK(std::filesystem::is_fifo(folder / "pipe"));
  CHECK(fakes::errorNumberOf([&] { TouchFile(HostPath(folder / "pipe")); }) == 57);
  CHECK(ReadStart(HostPath(folder / "pipe"), 9).empty());
}

TEST_CASE("A file of the longest name that a folder takes can be replaced") {
  TempFolder folder;
  const std::string name(255, 'n');
  ReplaceFile(HostPath(folder / name), "whole");
  CHECK(folder.read(name) == "whole");
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / (name + "n")), "x"); }) == 52);
  CHECK(std::distance(std::filesystem::directory_iterator(folder.path()), {}) == 1);
}

TEST_CASE("Replacing a file writes through links, and a failure leaves the old file and no other") {
  TempFolder folder;
  folder.write("real/file", "old");
  std::filesystem::create_symlink("real/file", folder / "link");
  ReplaceFile(HostPath(folder / "link"), "new");
  CHECK(folder.read("real/file") == "new");
  CHECK(std::filesystem::is_symlink(folder / "link"));

  std::filesystem::create_directory(folder / "real/taken");
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "real/taken"), "x"); }) != 0);
  std::size_t entries = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "real")) entries += entry.exists() ? 1 : 0;
  CHECK(entries == 2);
}

TEST_CASE("A failed call has the number that the language gives it") {
  CHECK(fakes::errorNumberOf([] { WriteStart(HostPath("/dev/full"), "x"); }) == 61);
  CHECK(fakes::errorNumberOf([] { FileLength(HostPath("/no/such/file")); }) == 53);
  CHECK(fakes::errorNumberOf([] { ReadStart(HostPath("/no/such/file"), 1); }) == 53);
  CHECK(RuntimeError(RuntimeError::DeviceIoError).description() == "Device I/O error");
}

}  // namespace trackloom
