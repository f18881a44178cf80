#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <catch2/catch.hpp>
#include <csignal>
#include <filesystem>
#include <sstream>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

using fakes::outputOf;

namespace {

/// The reader's way to the Joliet tree; it knows names only in Latin-1.
constexpr const char* joliet = "-J -j iso8859-1";

/// An image made from a scratch instance's data queue, read by other programs.
class ImageWorld : public FakeWorld {
 public:
  bool add(const std::string& disc, const std::string& bytes) {
    const HostPath source = folder.file("source" + std::to_string(count_++), bytes);
    return writer->AddDataFile(DiscPath(disc), source);
  }
  bool make() { return writer->CreateIsoImage(HostPath(image)); }
  std::string isoinfo(const std::string& options) const { return outputOf("isoinfo " + options + " -i " + image); }
  /// What stands in one of the image's trees, sorted, one path a line.
  Lines tree(const std::string& options) const {
    std::istringstream text(isoinfo(options + " -f"));
    Lines lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    std::ranges::sort(lines);
    return lines;
  }
  std::string extracted(const std::string& path) const {
    return outputOf("isoinfo -J -j iso8859-1 -i " + image + " -x '" + path + "'");
  }

  std::string image = folder.host("made.iso").text;

 private:
  int count_ = 0;
};

}  // namespace

TEST_CASE("Other programs find all files with their bytes in the Joliet tree, under their own names") {
  ImageWorld world;
  const std::string small = noise(1, 1);
  const std::string large = noise(3000001, 2);
  CHECK(world.add("\\Rock\\Eighties\\Take On You.mp3", small));
  CHECK(world.add("\\Rock\\M\xC3\xBCller.mp3", large));
  CHECK(world.add("\\What?.mp3", noise(2048, 3)));
  CHECK(world.add("\\empty", ""));
  REQUIRE(world.make());
  CHECK(world.tree(joliet) == Lines{"/Rock", "/Rock/Eighties", "/Rock/Eighties/Take On You.mp3", "/Rock/M\xFCller.mp3",
                                    "/What_.mp3", "/empty"});
  CHECK((world.extracted("/Rock/Eighties/Take On You.mp3") == small));
  CHECK((world.extracted("/Rock/M\xFCller.mp3") == large));
  CHECK((world.extracted("/What_.mp3") == noise(2048, 3)));
}

TEST_CASE("Names of any alphabet stand in the Joliet tree as they are") {
  ImageWorld world;
  CHECK(world.add("\\\xD0\x9F\xD0\xB5\xD1\x81\xD0\xBD\xD1\x8F \xF0\x9F\x8E\xB5.mp3", "x"));
  REQUIRE(world.make());
  CHECK(outputOf("LC_ALL=C.UTF-8 iso-info -f " + world.image)
            .find(" /\xD0\x9F\xD0\xB5\xD1\x81\xD0\xBD\xD1\x8F _.mp3\n") != std::string::npos);
}

TEST_CASE("Readers without Joliet find capital names of the characters that the standard allows") {
  ImageWorld world;
  CHECK(world.add("\\Rock\\Take On You.mp3", "x"));
  REQUIRE(world.make());
  CHECK(world.tree("") == Lines{"/ROCK", "/ROCK/TAKE_ON_YOU.MP3;1"});
}

TEST_CASE("No Rock Ridge stands on the image, and its size in the descriptor is the size of the file") {
  ImageWorld world;
  CHECK(world.add("\\a", noise(5000, 1)));
  REQUIRE(world.make());
  const std::string description = world.isoinfo("-d");
  CHECK(description.find("NO Rock Ridge") != std::string::npos);
  CHECK(description.find("Joliet with UCS level 3 found") != std::string::npos);
  const auto blocks = std::filesystem::file_size(world.image) / 2048;
  CHECK(description.find("Volume size is: " + std::to_string(blocks) + "\n") != std::string::npos);
}

TEST_CASE("The volume label stands as given, up to 32 characters in the primary descriptor and 16 in Joliet's") {
  ImageWorld world;
  CHECK(world.add("\\a", "x"));
  world.writer->SetVolumeLabel("Summer of the long label, 2026");
  REQUIRE(world.make());
  CHECK(world.isoinfo("-d").find("Volume id: Summer of the long label, 2026\n") != std::string::npos);
  const std::string image = contentOf(world.image);
  // Descriptors begin at block 16 (ECMA-119, 8.4); the supplementary one is the second, its label at byte 40.
  const std::string joliet = image.substr(17 * 2048 + 40, 32);
  std::string label;
  for (std::size_t at = 1; at < joliet.size(); at += 2) label += joliet[at];
  CHECK(label == "Summer of the lo");
}

TEST_CASE("An image tells what made it") {
  ImageWorld world;
  CHECK(world.add("\\a", "x"));
  REQUIRE(world.make());
  CHECK(world.isoinfo("-d").find("Application id: TRACKLOOM\n") != std::string::npos);
}

TEST_CASE("Files have their own dates in both trees") {
  ImageWorld world;
  const HostPath source = world.folder.file("source", "x");
  const timespec moment{.tv_sec = 1'000'000'000, .tv_nsec = 0};
  const timespec both[]{moment, moment};
  REQUIRE(::utimensat(AT_FDCWD, source.text.c_str(), both, 0) == 0);
  CHECK(world.writer->AddDataFile(DiscPath("\\Song"), source));
  REQUIRE(world.make());
  // The ninth of September 2001, whatever the zone of this computer.
  for (const char* options : {"-l", "-l -J"}) CHECK(world.isoinfo(options).find("Sep  9 2001") != std::string::npos);
}

TEST_CASE("File data lie in alphabetical order of disc paths whatever the order of queueing") {
  ImageWorld world;
  const Lines paths{"\\A\\z", "\\a b", "\\b\\1", "\\B\\2", "\\c", "\\d"};
  for (std::size_t at = paths.size(); at-- > 0;) CHECK(world.add(paths[at], noise(4000, 100 + at)));
  REQUIRE(world.make());
  const std::string image = contentOf(world.image);
  std::size_t before = 0;
  for (std::size_t at = 0; at < paths.size(); ++at) {
    const std::size_t place = image.find(noise(4000, 100 + at));
    INFO(paths[at]);
    CHECK(place != std::string::npos);
    CHECK(place > before);
    before = place;
  }
}

TEST_CASE("Names that an image cannot hold as they are stay apart on it") {
  ImageWorld world;
  const std::string title(64, 't');
  CHECK(world.add("\\" + title + "1.mp3", "one"));
  CHECK(world.add("\\" + title + "2.mp3", "two"));
  CHECK(world.add("\\Case.mp3", "three"));
  CHECK(world.add("\\CASE.MP3", "four"));
  CHECK(world.add("\\\xFF\xFE.mp3", "five"));
  CHECK(world.add("\\a\\\\double.mp3", "six"));
  REQUIRE(world.make());
  const Lines names{"/CASE.MP3",
                    "/Case~2.mp3",
                    "/a",
                    "/a/double.mp3",
                    "/" + std::string(60, 't') + ".mp3",
                    "/" + std::string(58, 't') + "~2.mp3",
                    "/\xFF\xFE.mp3"};
  CHECK(world.tree(joliet) == names);
  CHECK(world.extracted("/CASE.MP3") == "four");
  CHECK(world.extracted("/Case~2.mp3") == "three");
  CHECK(world.tree("").size() == names.size());
}

TEST_CASE("Folders nested twenty deep with long names are found to the bottom") {
  ImageWorld world;
  std::string path;
  for (int level = 1; level <= 20; ++level)
    path += "\\A folder with a rather long name, number " + std::to_string(level);
  CHECK(world.add(path + "\\deep.mp3", "deep down"));
  REQUIRE(world.make());
  std::ranges::replace(path, '\\', '/');
  const Lines tree = world.tree(joliet);
  REQUIRE(tree.size() == 21);
  CHECK(tree.back() == path + "/deep.mp3");
  CHECK(world.extracted(path + "/deep.mp3") == "deep down");
  CHECK(outputOf("xorriso -indev " + world.image + " -find / -type f -exec report_lba").find("deep.mp3") !=
        std::string::npos);
}

TEST_CASE("Folders that lost their files stay on the disc") {
  ImageWorld world;
  CHECK(world.add("\\Rock\\a", "x"));
  CHECK(world.add("\\b", "x"));
  CHECK(world.writer->RemoveDataFile(DiscPath("\\Rock\\a")));
  REQUIRE(world.make());
  CHECK(world.tree("-J") == Lines{"/Rock", "/b"});
}

TEST_CASE("Making an image tells of each file within the call, in the order in which it lies there") {
  ImageWorld world;
  CHECK(world.add("\\b", noise(5000000, 1)));
  CHECK(world.add("\\a", ""));
  CHECK(world.add("\\c", noise(2049, 2)));
  REQUIRE(world.make());
  CHECK(world.heard.lines == Lines{"OnImageTrackStart 1", "OnTrackCacheStart 1 0", "OnImageTrackStart 2",
                                   "OnTrackCacheStart 2 2442", "OnImageTrackStart 3", "OnTrackCacheStart 3 2"});
  const auto& positions = world.heard.cachePositions;
  CHECK(positions.back() == 2);
  CHECK(std::ranges::count(positions, 2442) == 1);
  CHECK(positions.size() > 2);
}

TEST_CASE("Sources that are gone are left out of an image file") {
  ImageWorld world;
  CHECK(world.add("\\a", "x"));
  CHECK(world.add("\\b", "y"));
  std::filesystem::remove(world.folder.host("source0").text);
  CHECK(world.make());
  CHECK(world.tree("-J") == Lines{"/b"});
  std::filesystem::remove(world.folder.host("source1").text);
  CHECK(world.make());
  CHECK(world.isoinfo("-d").find("Joliet") != std::string::npos);
}

TEST_CASE("A source that is there and was refused fails an image, until the queue is begun anew") {
  ImageWorld world;
  CHECK(world.add("\\a", "x"));
  const HostPath folder = world.folder.host("folder");
  std::filesystem::create_directory(folder.text);
  CHECK_FALSE(world.writer->AddDataFile(DiscPath("\\b"), folder));
  CHECK_FALSE(world.writer->ImportLastSession(true));
  CHECK_FALSE(world.make());
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure().starts_with(folder.text + ": "));
  CHECK_FALSE(std::filesystem::exists(world.image));

  world.writer->ClearDataQueue();
  CHECK(world.add("\\a", "x"));
  CHECK_FALSE(world.writer->AddDataFile(DiscPath("\\c"), world.folder.host("nowhere")));
  CHECK(world.make());
  CHECK(world.tree("-J") == Lines{"/a"});
}

TEST_CASE("A file of 4 GiB is refused before anything of an image is made") {
  ImageWorld world;
  const HostPath film = world.folder.file("film.mp3", "");
  for (const bool tooLarge : {true, false}) {
    std::filesystem::resize_file(film.text, (std::uintmax_t{1} << 32) - (tooLarge ? 0 : 1));
    CHECK(world.writer->AddDataFile(DiscPath("\\film"), film));
    // The one that is small enough is not read, for there is no place for the image.
    if (!tooLarge) world.image = "/proc/film.iso";
    CHECK_FALSE(world.make());
    CHECK(world.heard.lines.back() == "OnWriteError 2 0");
    CHECK(!std::filesystem::exists(world.image));
    const std::string words = world.writers.failureDetail().lastFailure();
    CHECK((words == film.text + ": is too large for an image, where a file has at most 4 GiB") == tooLarge);
  }
}

TEST_CASE("No image takes the place of one of its own files, also not by another of its names") {
  ImageWorld world;
  const HostPath source = world.folder.file("song.mp3", "music");
  CHECK(world.writer->AddDataFile(DiscPath("\\song.mp3"), source));
  const HostPath other = world.folder.host("other.iso");
  SECTION("its own name") {
    world.image = source.text;
  }
  SECTION("a link") {
    std::filesystem::create_symlink(source.text, other.text);
    world.image = other.text;
  }
  SECTION("a second name") {
    std::filesystem::create_hard_link(source.text, other.text);
    world.image = other.text;
  }
  CHECK_FALSE(world.make());
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure() == world.image + ": is one of the files of the image");
  CHECK(world.folder.read("song.mp3") == "music");
}

TEST_CASE("An image file that cannot be written is a file error within the call") {
  ImageWorld world;
  CHECK(world.add("\\a", "x"));
  world.image = world.folder.host("no/such/folder.iso").text;
  CHECK_FALSE(world.make());
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure().find("folder.iso") != std::string::npos);
  world.image = world.folder.host("pipe").text;
  REQUIRE(::mkfifo(world.image.c_str(), 0600) == 0);
  CHECK_FALSE(world.make());
  world.image = "/dev/full";
  CHECK_FALSE(world.make());
  CHECK(world.writers.failureDetail().lastFailure() == "/dev/full: not a regular file");
}

TEST_CASE("An image that fails leaves what was there, and nothing beside it") {
  ImageWorld world;
  const bool replaces = GENERATE(false, true);
  CHECK(world.add("\\a", noise(3000000, 1)));
  const HostPath second = world.folder.file("second", noise(3000000, 2));
  CHECK(world.writer->AddDataFile(DiscPath("\\b"), second));
  if (replaces) world.folder.file("made.iso", "the old one");
  SECTION("a source that has changed since it was queued") {
    std::filesystem::resize_file(second.text, 1000);
    CHECK_FALSE(world.make());
    CHECK(world.writers.failureDetail().lastFailure() == second.text + ": changed since it was added");
  }
  SECTION("a source that cannot be opened") {
    std::filesystem::remove(second.text);
    std::filesystem::create_directory(second.text);
    CHECK_FALSE(world.make());
    CHECK(world.writers.failureDetail().lastFailure() == second.text + ": not a regular file");
  }
  SECTION("no room for it") {
    const auto signal = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit little{.rlim_cur = 1'000'000, .rlim_max = before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &little);
    CHECK_FALSE(world.make());
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signal);
  }
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(std::filesystem::exists(world.image) == replaces);
  if (replaces) CHECK(world.folder.read("made.iso") == "the old one");
  for (const auto& entry : std::filesystem::directory_iterator(world.folder.path()))
    CHECK_FALSE(entry.path().filename().string().starts_with("."));
}

TEST_CASE("An image takes more files than a process may hold open") {
  ImageWorld world;
  constexpr int many = 300;
  for (int at = 0; at < many; ++at) CHECK(world.add("\\" + std::to_string(at) + ".mp3", "x"));
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit fewer{.rlim_cur = many, .rlim_max = before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &fewer);
  CHECK(world.make());
  ::setrlimit(RLIMIT_NOFILE, &before);
  CHECK(world.tree("-J").size() == many);
}

TEST_CASE("Ten thousand files of one folder make an image") {
  ImageWorld world;
  const HostPath source = world.folder.file("same", "x");
  for (int at = 0; at < 10000; ++at)
    REQUIRE(world.writer->AddDataFile(DiscPath("\\Many\\" + std::to_string(at) + ".mp3"), source));
  CHECK(world.writer->DataQueueBlocks() == 10000);
  REQUIRE(world.make());
  CHECK(world.tree("-J").size() == 10001);
}

}  // namespace trackloom::engines::writer
