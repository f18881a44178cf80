#include "engines/writer/DataQueue.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <catch2/catch.hpp>

#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::writer {

using namespace fakes;

namespace {

std::string shown(const DataQueue& queue) {
  std::vector<std::string> paths;
  for (const DataEntry& entry : queue.entries()) paths.push_back(entry.disc.text + (entry.folder ? "/" : ""));
  std::ranges::sort(paths);
  std::string text;
  for (const std::string& path : paths) text += path + " ";
  return text;
}

bool add(DataQueue& queue, const std::string& disc, const HostPath& source) {
  return queue.add(DiscPath(disc), readableSource(source));
}

}  // namespace

TEST_CASE("Sizes of files count in whole blocks of 2048 bytes, and folders not at all") {
  const TempFolder folder;
  DataQueue queue;
  CHECK(add(queue, "\\empty", folder.file("0", "")));
  CHECK(queue.blocks() == 0);
  CHECK(add(queue, "\\Rock\\one", folder.file("1", std::string(1, 'x'))));
  CHECK(queue.blocks() == 1);
  CHECK(add(queue, "\\Rock\\full", folder.file("2", std::string(2048, 'x'))));
  CHECK(queue.blocks() == 2);
  CHECK(add(queue, "\\more", folder.file("3", std::string(2049, 'x'))));
  CHECK(queue.blocks() == 4);
  CHECK(shown(queue) == "\\Rock/ \\Rock\\full \\Rock\\one \\empty \\more ");
}

TEST_CASE("An equal disc path is the same entry with a new source, and one that differs in a byte is another") {
  const TempFolder folder;
  DataQueue queue;
  const HostPath small = folder.file("small", "x");
  const HostPath large = folder.file("large", std::string(10000, 'x'));
  CHECK(add(queue, "\\a.mp3", large));
  CHECK(add(queue, "\\a.mp3", small));
  CHECK(queue.blocks() == 1);
  REQUIRE(queue.entries().size() == 1);
  CHECK(queue.entries()[0].source->path() == small);
  CHECK(add(queue, "\\A.mp3", large));
  CHECK(queue.blocks() == 6);
  CHECK(add(queue, "\\a.mp3", large));
  CHECK(queue.blocks() == 10);
  CHECK(queue.remove(DiscPath("\\a.mp3")));
  CHECK(queue.blocks() == 5);
}

TEST_CASE("Only a regular file that can be opened is taken, and a pipe is not waited for") {
  const TempFolder folder;
  DataQueue queue;
  CHECK_FALSE(add(queue, "\\a", folder.host("missing")));
  CHECK_FALSE(add(queue, "\\a", HostPath(folder.path())));
  REQUIRE(::mkfifo(folder.host("pipe").text.c_str(), 0600) == 0);
  CHECK_FALSE(add(queue, "\\a", folder.host("pipe")));
  CHECK_FALSE(add(queue, "\\a", HostPath("/dev/zero")));
  CHECK_FALSE(add(queue, "\\a", HostPath("")));
  if (::geteuid() != 0) {
    const HostPath secret = folder.file("secret", "x");
    std::filesystem::permissions(secret.text, std::filesystem::perms::none);
    CHECK_FALSE(add(queue, "\\a", secret));
  }
  CHECK(shown(queue).empty());
}

TEST_CASE("A file goes by its exact path, a folder only when nothing is left in it, and anything else not at all") {
  const TempFolder folder;
  const HostPath source = folder.file("x", "x");
  DataQueue queue;
  CHECK(add(queue, "\\Rock\\Eighties\\a.mp3", source));
  CHECK(add(queue, "\\Rock\\b.mp3", source));
  for (const char* missing : {"", "\\", "a.mp3", "No Folder", "\\Rock\\a.mp3", "\\rock", "\\Rock\\", "Rock"})
    CHECK_FALSE(queue.remove(DiscPath(missing)));
  CHECK_FALSE(queue.remove(DiscPath("\\Rock")));
  CHECK_FALSE(queue.remove(DiscPath("\\Rock\\Eighties")));
  CHECK(shown(queue) == "\\Rock/ \\Rock\\Eighties/ \\Rock\\Eighties\\a.mp3 \\Rock\\b.mp3 ");
  CHECK(queue.remove(DiscPath("\\Rock\\Eighties\\a.mp3")));
  CHECK(queue.blocks() == 1);
  CHECK(queue.remove(DiscPath("\\Rock\\Eighties")));
  CHECK_FALSE(queue.remove(DiscPath("\\Rock")));
  CHECK(queue.remove(DiscPath("\\Rock\\b.mp3")));
  CHECK_FALSE(queue.hasFiles());
  CHECK(shown(queue) == "\\Rock/ ");
  CHECK(queue.remove(DiscPath("\\Rock")));
  CHECK(queue.blocks() == 0);
}

TEST_CASE("A path may not run through a file nor end on a folder") {
  const TempFolder folder;
  const HostPath source = folder.file("x", "x");
  DataQueue queue;
  CHECK(add(queue, "\\a\\b", source));
  CHECK_FALSE(add(queue, "\\a\\b\\c\\d", source));
  CHECK_FALSE(add(queue, "\\a", source));
  CHECK(shown(queue) == "\\a/ \\a\\b ");
  CHECK(queue.blocks() == 1);
}

TEST_CASE("Doubled and missing separators still lead into folders that can be emptied") {
  const TempFolder folder;
  const HostPath source = folder.file("x", "x");
  DataQueue queue;
  CHECK(add(queue, "\\Rock\\\\a.mp3", source));
  CHECK(add(queue, "bare", source));
  CHECK(add(queue, "Pop\\b.mp3", source));
  CHECK(shown(queue) == "\\Pop/ \\Pop\\b.mp3 \\Rock/ \\Rock\\a.mp3 \\bare ");
  CHECK_FALSE(queue.remove(DiscPath("\\Rock")));
  CHECK(queue.remove(DiscPath("\\Rock\\\\a.mp3")));
  CHECK(queue.remove(DiscPath("\\Rock")));
}

TEST_CASE("Of two files at one place of the disc the one that was added later is recorded, and folders there are one") {
  const TempFolder folder;
  const HostPath first = folder.file("first", "1");
  const HostPath second = folder.file("second", "2");
  DataQueue queue;
  const auto recorded = [&queue] {
    const std::vector<DataEntry> entries = queue.entries();
    const auto file = std::ranges::find_if(entries, [](const DataEntry& entry) { return !entry.folder; });
    REQUIRE(file != entries.end());
    return file->source->path();
  };
  CHECK(add(queue, "\\\\a\\b", first));
  CHECK(add(queue, "\\a\\b", second));
  CHECK(shown(queue) == "\\a/ \\a\\b ");
  CHECK(recorded() == second);
  CHECK(queue.blocks() == 2);
  CHECK(add(queue, "\\\\a\\b", first));
  CHECK(recorded() == first);
  CHECK(add(queue, "a\\b", second));
  CHECK(recorded() == second);
  CHECK(queue.remove(DiscPath("a\\b")));
  CHECK(recorded() == first);
}

TEST_CASE("A file and a folder at one place of the disc are both recorded") {
  const TempFolder folder;
  const HostPath source = folder.file("x", "x");
  DataQueue queue;
  CHECK(add(queue, "\\a", source));
  CHECK(add(queue, "\\\\a\\b", source));
  CHECK(shown(queue) == "\\a \\a/ \\a\\b ");
}

TEST_CASE("A path nested deeper than readers follow is refused") {
  const TempFolder folder;
  const HostPath source = folder.file("x", "x");
  std::string deep;
  for (int level = 1; level < 255; ++level) deep += "\\d";
  DataQueue queue;
  CHECK(add(queue, deep + "\\file", source));
  CHECK_FALSE(add(queue, deep + "\\d\\file", source));
  std::string endless;
  for (int level = 0; level < 40000; ++level) endless += "\\d";
  CHECK_FALSE(add(queue, endless, source));
}

}  // namespace trackloom::engines::writer
