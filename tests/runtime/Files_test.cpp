#include "runtime/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <filesystem>
#include <functional>

#include "fakes/ChildProcess.h"
#include "fakes/ErrorNumber.h"
#include "fakes/FolderLook.h"
#include "fakes/TempFolder.h"
#include "runtime/FileDescriptor.h"
#include "runtime/SystemCalls.h"

namespace trackloom {

using fakes::ChildProcess;
using fakes::namesIn;
using fakes::permissionsOf;
using fakes::TempFolder;
using Lines = std::vector<std::string>;

namespace {

/// Does it as a user who is not allowed everything.
ChildProcess asPlainUser(const std::function<int()>& work) {
  return ChildProcess([&] {
    constexpr uid_t Nobody = 65534;
    if (::geteuid() == 0 && ::setresuid(Nobody, Nobody, Nobody) != 0) return -1;
    return work();
  });
}

}  // namespace

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

TEST_CASE("Writing the end of a file keeps its length and what stands before") {
  const TempFolder folder;
  folder.write("a", "12345");
  WriteEnd(folder.host("a"), "xyz");
  CHECK(folder.read("a") == "12xyz");
  WriteEnd(folder.host("a"), "abcde");
  CHECK(folder.read("a") == "abcde");
}

TEST_CASE("An end longer than its file is an error and changes nothing, and a missing file comes into being empty") {
  const TempFolder folder;
  folder.write("a", "1234");
  CHECK(fakes::errorNumberOf([&] { WriteEnd(folder.host("a"), "abcde"); }) == RuntimeError::BadRecordNumber);
  CHECK(folder.read("a") == "1234");
  CHECK(fakes::errorNumberOf([&] { WriteEnd(folder.host("none"), "x"); }) == RuntimeError::BadRecordNumber);
  CHECK(folder.has("none"));
  CHECK(folder.read("none").empty());
  CHECK(fakes::errorNumberOf([&] { WriteEnd(folder.host("no folder/a"), "x"); }) != 0);
  CHECK(fakes::errorNumberOf([&] { WriteEnd(HostPath(folder.path()), "x"); }) != 0);
  CHECK(fakes::errorNumberOf([&] { WriteEnd(HostPath(), "x"); }) != 0);
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

TEST_CASE("A link to a file that is not there yet is written through") {
  TempFolder folder;
  std::filesystem::create_directory(folder / "real");
  std::filesystem::create_symlink("real/second", folder / "first");
  std::filesystem::create_symlink("file", folder / "real/second");
  ReplaceFile(HostPath(folder / "first"), "new");
  CHECK(namesIn(folder / "real") == Lines{"file", "second"});
  CHECK(folder.read("real/file") == "new");
  std::filesystem::remove(folder / "real/file");
  WriteStart(HostPath(folder / "first"), "again");
  CHECK(std::filesystem::is_symlink(folder / "first"));
  CHECK(folder.read("real/file") == "again");
  std::filesystem::create_symlink("circle", folder / "circle");
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "circle"), "x"); }) == 76);
}

TEST_CASE("A replaced file keeps its permissions, and a new one has what the mask leaves") {
  TempFolder folder;
  folder.write("secret", "old");
  ::chmod((folder / "secret").c_str(), 0600);
  ReplaceFile(HostPath(folder / "secret"), "new");
  CHECK(permissionsOf(folder / "secret") == 0600);
  const mode_t before = ::umask(027);
  ReplaceFile(HostPath(folder / "fresh"), "new");
  ::umask(before);
  CHECK(permissionsOf(folder / "fresh") == 0640);
}

TEST_CASE("A file that the user has protected is not replaced") {
  TempFolder folder;
  ::chmod(folder.path().c_str(), 0777);
  folder.write("file", "old");
  ::chmod((folder / "file").c_str(), 0444);
  const ChildProcess save =
      asPlainUser([&] { return fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "file"), "new"); }); });
  CHECK(save.status() == 70);
  CHECK(folder.read("file") == "old");
  CHECK(namesIn(folder.path()) == Lines{"file"});
}

TEST_CASE("As many links as the system follows lead to the file that is written, and one more to an error") {
  TempFolder folder;
  folder.write("0", "old");
  for (int link = 1; link <= 41; ++link)
    std::filesystem::create_symlink(std::to_string(link - 1), folder / std::to_string(link));
  REQUIRE(FileExists(HostPath(folder / "40")));
  REQUIRE_FALSE(FileExists(HostPath(folder / "41")));
  ReplaceFile(HostPath(folder / "40"), "new");
  CHECK(folder.read("0") == "new");
  CHECK(fakes::errorNumberOf([&] { ReplaceFile(HostPath(folder / "41"), "newer"); }) == 76);
  CHECK(folder.read("0") == "new");
}

TEST_CASE("A file whose closing fails counts as not written") {
  TempFolder folder;
  folder.write("file", "old");
  systemCalls().close = [](int) { return static_cast<int>(failed(EIO)); };
  const int start = fakes::errorNumberOf([&] { WriteStart(HostPath(folder / "file"), "new"); });
  const int touch = fakes::errorNumberOf([&] { TouchFile(HostPath(folder / "file")); });
  systemCalls() = {};
  CHECK(start == 57);
  CHECK(touch == 57);
}

TEST_CASE("A file has the length that was written into it, also through a link") {
  TempFolder folder;
  folder.write("empty", "");
  folder.write("file", std::string(5000, 'x'));
  std::filesystem::create_symlink("file", folder / "link");
  CHECK(FileLength(HostPath(folder / "empty")) == 0);
  CHECK(FileLength(HostPath(folder / "link")) == 5000);
}

TEST_CASE("The start of a file is what was asked for, over any number of reads, and no more") {
  TempFolder folder;
  std::string bytes;
  for (int i = 0; i < 10000; ++i) bytes += static_cast<char>('a' + i % 23);
  folder.write("file", bytes);
  for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{4096}, std::size_t{4097}, bytes.size()})
    CHECK(ReadStart(HostPath(folder / "file"), length) == bytes.substr(0, length));
  CHECK(ReadStart(HostPath(folder / "file"), 20000) == bytes);
  CHECK(fakes::errorNumberOf([&] { ReadStart(HostPath(folder.path()), 1); }) == 75);
}

TEST_CASE("An extension is found at the end of a name alone, a name of nothing else included") {
  TempFolder folder;
  for (const char* name : {".mp3", "a.mp3x", "a.mp3.wav", "mp3", "b.MP3"}) folder.write(name, "");
  std::filesystem::create_symlink("nowhere.mp3", folder / "dangling.mp3");
  CHECK(ListFiles(HostPath(folder.path()), ".mp3") == Lines{".mp3", "b.MP3"});
  CHECK(ListFiles(HostPath(folder.path()), ".flac").empty());
}

TEST_CASE("The home folder is the user's where that is a path from the root, and the root where it is none") {
  const char* const before = std::getenv("HOME");
  const std::string kept = before == nullptr ? "" : before;
  ::setenv("HOME", "/home/somebody", 1);
  CHECK(HomeFolder().text == "/home/somebody");
  ::setenv("HOME", "somewhere", 1);
  CHECK(HomeFolder().text == "/");
  ::setenv("HOME", "", 1);
  CHECK(HomeFolder().text == "/");
  ::unsetenv("HOME");
  CHECK(HomeFolder().text == "/");
  if (before != nullptr) ::setenv("HOME", kept.c_str(), 1);
}

TEST_CASE("A folder is made once, with all that the mask leaves, and in a folder that is there") {
  TempFolder folder;
  const mode_t before = ::umask(0);
  MakeFolder(HostPath(folder / "new"));
  ::umask(before);
  CHECK(permissionsOf(folder / "new") == 0777);
  CHECK(FolderExists(HostPath(folder / "new")));
  CHECK(fakes::errorNumberOf([&] { MakeFolder(HostPath(folder / "new")); }) == 75);
  CHECK(fakes::errorNumberOf([&] { MakeFolder(HostPath(folder / "none/new")); }) == 53);
}

TEST_CASE("Touching makes an empty file, and empties the one there is") {
  TempFolder folder;
  folder.write("full", "words");
  TouchFile(HostPath(folder / "full"));
  TouchFile(HostPath(folder / "fresh"));
  CHECK(folder.read("full").empty());
  CHECK(folder.has("fresh"));
}

TEST_CASE("A folder's name gets one separator at its end") {
  CHECK(EnsureTrailingSep("") == "/");
  CHECK(EnsureTrailingSep("/") == "/");
  CHECK(EnsureTrailingSep("/a") == "/a/");
  CHECK(EnsureTrailingSep("/a/") == "/a/");
  CHECK(DiscSep == '\\');
}

TEST_CASE("A failed call has the number that the language gives it") {
  CHECK(fakes::errorNumberOf([] { WriteStart(HostPath("/dev/full"), "x"); }) == 61);
  CHECK(fakes::errorNumberOf([] { FileLength(HostPath("/no/such/file")); }) == 53);
  CHECK(fakes::errorNumberOf([] { ReadStart(HostPath("/no/such/file"), 1); }) == 53);
  CHECK(RuntimeError(RuntimeError::DeviceIoError).description() == "Device I/O error");
}

}  // namespace trackloom
