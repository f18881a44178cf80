#include "engines/drives/FolderEntries.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <catch2/catch.hpp>
#include <cstring>

#include "fakes/TempFolder.h"
#include "runtime/FileDescriptor.h"

namespace trackloom::engines::drives {

namespace {

/// A folder "here" of the test's own.
class Here {
 public:
  Here() { std::filesystem::create_directory(folder / "here"); }

  void link(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, folder / ("here/" + name));
  }
  std::vector<FindRecord> entries() const { return entriesOf(path(), mountOf(path())); }
  std::string path() const { return folder / "here/"; }

  fakes::TempFolder folder;
};

/// "name=size" of each file and "name/" of each folder, in their order.
std::string told(const std::vector<FindRecord>& records) {
  std::string text;
  for (const FindRecord& record : records) {
    const bool isFolder = record.attributes == FindRecord::DirectoryAttribute;
    text += std::string(record.name.c_str()) + (isFolder ? "/" : "=" + std::to_string(record.size)) + " ";
  }
  return text;
}

}  // namespace

TEST_CASE("Files and folders of a folder come together, sorted by upper-cased name, hidden ones too") {
  Here here;
  for (const char* name : {"b.mp3", "A.mp3", "a.mp3", "C/x", ".hidden", "10", "\xC3\xA4.mp3", "\xC3\x84.mp3", "_"})
    here.folder.write(std::string("here/") + name, "xyz");
  std::filesystem::create_directory(here.folder / "here/aa");
  CHECK(told(here.entries()) == ".hidden=3 10=3 A.mp3=3 a.mp3=3 aa/ b.mp3=3 C/ _=3 \xC3\x84.mp3=3 \xC3\xA4.mp3=3 ");
}

TEST_CASE("Every name ends with a NUL, in the bytes that the disk has") {
  Here here;
  here.folder.write("here/caf\xE9.mp3", "");
  const std::vector<FindRecord> records = here.entries();
  REQUIRE(records.size() == 1);
  CHECK(records[0].name == std::string("caf\xE9.mp3\0", 9));
}

TEST_CASE("A folder has its attribute and no size, a file its size and no attribute") {
  Here here;
  here.folder.write("here/a/b.mp3", "1");
  here.folder.write("here/b.mp3", "12345");
  const std::vector<FindRecord> records = here.entries();
  REQUIRE(records.size() == 2);
  CHECK(records[0].attributes == 16);
  CHECK(records[0].size == 0);
  CHECK(records[1].attributes == 0);
  CHECK(records[1].size == 5);
}

TEST_CASE("The root of the system is a folder, and separators at the end count for nothing") {
  CHECK(mountOf("/") != 0);
  CHECK(mountOf("//") == mountOf("/"));
  CHECK(mountOf("/proc//") == mountOf("/proc"));
}

TEST_CASE("A link to a folder is none in the shortest path either") {
  Here here;
  here.folder.write("here/a/b.mp3", "1");
  here.link("l", "a");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(here.path());
  CHECK(mountOf("a/") == mountOf(here.path()));
  CHECK(mountOf("l/") == 0);
  std::filesystem::current_path(before);
}

TEST_CASE("A folder that was read is closed again") {
  const auto open = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  };
  Here here;
  here.folder.write("here/a.mp3", "1");
  const auto before = open();
  CHECK(here.entries().size() == 1);
  CHECK(open() == before);
}

TEST_CASE("A link to a file is that file with its size, and every other link is left out") {
  Here here;
  here.folder.write("far.mp3", "12345");
  here.folder.write("folder/x.mp3", "1");
  here.link("file.mp3", here.folder / "far.mp3");
  here.link("again.mp3", "file.mp3");
  here.link("folder", here.folder / "folder");
  here.link("up", "..");
  here.link("self", "self");
  here.link("nowhere.mp3", "gone.mp3");
  here.link("device.mp3", "/dev/null");
  CHECK(told(here.entries()) == "again.mp3=5 file.mp3=5 ");
}

TEST_CASE("Pipes and sockets are left out") {
  Here here;
  here.folder.write("here/a.mp3", "1");
  REQUIRE(::mkfifo((here.folder / "here/pipe.mp3").c_str(), 0600) == 0);
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, (here.folder / "here/socket.mp3").c_str(), sizeof address.sun_path - 1);
  REQUIRE(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
  CHECK(told(here.entries()) == "a.mp3=1 ");
}

TEST_CASE("The size is told whole, however large the file") {
  Here here;
  for (const auto& [name, size] : {std::pair("a.mp3", 3ULL << 30U), std::pair("b.mp3", 5ULL << 30U)}) {
    here.folder.write(std::string("here/") + name, "");
    std::filesystem::resize_file(here.folder / (std::string("here/") + name), size);
  }
  CHECK(told(here.entries()) == "a.mp3=3221225472 b.mp3=5368709120 ");
}

TEST_CASE("What is no folder, or has gone, or is a link to a folder, has no entries") {
  Here here;
  here.folder.write("here/a/b.mp3", "1");
  here.link("link", "a");
  const std::uint64_t mount = mountOf(here.path());
  CHECK(entriesOf(here.path() + "a/", mount).size() == 1);
  CHECK(entriesOf(here.path() + "link/", mount).empty());
  CHECK(entriesOf(here.path() + "gone/", mount).empty());
  CHECK(entriesOf(here.path() + "a/b.mp3/", mount).empty());
}

TEST_CASE("A folder of another mount has no entries") {
  Here here;
  here.folder.write("here/a.mp3", "1");
  CHECK(mountOf("/proc/") != mountOf(here.path()));
  CHECK(entriesOf(here.path(), mountOf("/proc/")).empty());
  CHECK(entriesOf("/proc/self/", mountOf(here.path())).empty());
  CHECK(mountOf(here.folder / "gone/") == 0);
}

}  // namespace trackloom::engines::drives
