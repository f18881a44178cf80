#include <catch2/catch.hpp>

#include "engines/helpfile/Chm.h"
#include "engines/helpfile/HelpSources.h"

namespace trackloom::engines::helpfile {

namespace {

using namespace std::string_literals;

std::string number(std::uint64_t value, int bytes) {
  std::string little;
  for (; bytes > 0; --bytes, value /= 256) little += static_cast<char>(value % 256);
  return little;
}

std::string words(const std::vector<std::uint32_t>& numbers) {
  std::string all;
  for (const std::uint32_t value : numbers) all += number(value, 4);
  return all;
}

std::uint64_t numberAt(const std::string& bytes, std::size_t place, int length = 4) {
  std::uint64_t value = 0;
  while (length-- > 0)
    value = value * 256 + static_cast<unsigned char>(bytes.at(place + static_cast<std::size_t>(length)));
  return value;
}

std::string zeros(std::size_t count) {
  return std::string(count, '\0');
}

constexpr std::uint32_t NoChunk = 0xFFFFFFFF;
constexpr std::size_t DirectoryStart = 0x78;
constexpr std::size_t FirstChunk = DirectoryStart + 0x54;
constexpr std::size_t ChunkBytes = 0x1000;

/// The header of the format's public description: version 3, English, the directory behind it, the contents behind
/// that.
std::string expectedHeader(std::uint64_t directory, std::uint64_t contents) {
  const std::uint64_t start = DirectoryStart + directory;
  return "ITSF" + words({3, 0x60, 1, 0, 0x409}) +
         "\x10\xFD\x01\x7C\xAA\x7B\xD0\x11\x9E\x0C\x00\xA0\xC9\x22\xE6\xEC"s
         "\x11\xFD\x01\x7C\xAA\x7B\xD0\x11\x9E\x0C\x00\xA0\xC9\x22\xE6\xEC"s +
         number(0x60, 8) + number(0x18, 8) + number(DirectoryStart, 8) + number(directory, 8) + number(start, 8) +
         words({0x1FE, 0}) + number(start + contents, 8) + zeros(8);
}

std::string expectedDirectoryHeader(std::uint32_t listings, bool indexed) {
  return "ITSP" + words({1, 0x54, 10, 0x1000, 2, indexed ? 2U : 1U, indexed ? listings : NoChunk, 0, listings - 1}) +
         words({NoChunk, listings + (indexed ? 1U : 0U), 0x409}) +
         "\x6A\x92\x02\x5D\x2E\x21\xD0\x11\x9D\xF9\x00\xA0\xC9\x22\xE6\xEC"s + words({0x54, NoChunk, NoChunk, NoChunk});
}

const std::string NameList = "\x10\0\1\0\x0C\0U\0n\0c\0o\0m\0p\0r\0e\0s\0s\0e\0d\0\0\0"s;

/// Walks over one chunk of a directory as the format's description says, and checks all that stands in it.
class ChunkWalk {
 public:
  ChunkWalk(const std::string& file, std::size_t number, std::size_t header)
      : chunk_(file.substr(FirstChunk + number * ChunkBytes, ChunkBytes)), header_(header), at_(header) {}

  bool atEnd() const { return at_ == ChunkBytes - free(); }
  std::string name() {
    places_.push_back(at_ - header_);
    const std::size_t length = group();
    at_ += length;
    return chunk_.substr(at_ - length, length);
  }
  std::size_t group() {
    std::size_t value = 0;
    while (chunk_.at(at_) < 0) value = value * 128 + static_cast<std::size_t>(chunk_.at(at_++) & 0x7F);
    return value * 128 + static_cast<std::size_t>(chunk_.at(at_++));
  }
  std::uint64_t header(std::size_t place) const { return numberAt(chunk_, place); }
  std::string kind() const { return chunk_.substr(0, 4); }

  /// At the end stand the number of entries and before it the place of each fifth; what is left between is empty.
  void checkEnd() const {
    std::string end = number(places_.size(), 2);
    for (std::size_t entry = 5; entry < places_.size(); entry += 5) end = number(places_[entry], 2) + end;
    CHECK(chunk_.substr(at_) == zeros(ChunkBytes - at_ - end.size()) + end);
  }

 private:
  std::size_t free() const { return numberAt(chunk_, 4); }

  std::string chunk_;
  std::size_t header_;
  std::size_t at_;
  std::vector<std::size_t> places_;
};

/// Names of two groups' length, so that the directory has many chunks.
ChmFiles longNames() {
  ChmFiles files;
  for (int i = 100; i < 400; ++i)
    files["page" + std::to_string(i) + std::string(150, 'n')] = std::string(static_cast<std::size_t>(i), 'x');
  return files;
}

HelpBook book() {
  HelpBook book;
  book.title = "Test Help";
  book.firstPage = "start.htm";
  book.windows = {"main", "second"};
  book.contents = {{0, "A <b> & \"c\"", "start.htm"}, {2, "it's", "more.htm#end"}, {0, "Last", "more.htm"}};
  book.index = {{0, "blank disc", "more.htm"}};
  book.topics = {{69, "more.htm"}, {91, "start.htm"}};
  book.files = {{"start.htm", "First"}};
  return book;
}

std::string line(const std::string& name, const std::string& place) {
  return "<LI><OBJECT type=\"text/sitemap\"><param name=\"Name\" value=\"" + name +
         "\"><param name=\"Local\" value=\"" + place + "\"></OBJECT>\n";
}

/// How many chunks the directory has for these names of empty files.
std::uint64_t chunksFor(const std::vector<std::string>& names) {
  ChmFiles files;
  for (const std::string& name : names) files[name] = "";
  return numberAt(chmBytes(files), DirectoryStart + 0x2C);
}

}  // namespace

TEST_CASE("A small help file is byte for byte what the format's description asks for") {
  const std::string entries =
      "\1/\0\0\0"s + "\6/a.txt\0\0\1"s + "\6/B.txt\0\1\2"s + "\x14::DataSpace/NameList\0\3\x20"s;
  const std::uint32_t room = 0x1000 - 0x14 - static_cast<std::uint32_t>(entries.size());
  const std::string chunk = "PMGL" + words({room, 0, NoChunk, NoChunk}) + entries + zeros(room - 2) + number(4, 2);
  CHECK(chmBytes({{"a.txt", "A"}, {"B.txt", "bb"}}) ==
        expectedHeader(0x1054, 3 + NameList.size()) + expectedDirectoryHeader(1, false) + chunk + "Abb" + NameList);
}

TEST_CASE("Many names make a chain of chunks with an index, as the format's description asks for") {
  const ChmFiles files = longNames();
  const std::string bytes = chmBytes(files);
  std::vector<std::string> firstNames;
  std::vector<std::string> names;
  std::size_t offset = 0;
  for (std::uint32_t number = 0; names.size() < files.size() + 2; ++number) {
    ChunkWalk chunk(bytes, number, 0x14);
    CHECK(chunk.kind() == "PMGL");
    CHECK(chunk.header(8) == 0);
    CHECK(chunk.header(12) == (number == 0 ? NoChunk : number - 1));
    const std::size_t first = names.size();
    while (!chunk.atEnd()) {
      names.push_back(chunk.name());
      CHECK(chunk.group() == 0);
      CHECK(chunk.group() == offset);
      offset += chunk.group();
    }
    firstNames.push_back(names.at(first));
    CHECK(chunk.header(16) == (names.size() < files.size() + 2 ? number + 1 : NoChunk));
    chunk.checkEnd();
  }
  const auto listings = static_cast<std::uint32_t>(firstNames.size());
  REQUIRE(listings > 11);
  const std::size_t directory = 0x54 + (listings + 1) * ChunkBytes;
  CHECK(bytes.substr(0, FirstChunk) == expectedHeader(directory, offset) + expectedDirectoryHeader(listings, true));
  CHECK(bytes.size() == DirectoryStart + directory + offset);

  ChunkWalk index(bytes, listings, 8);
  CHECK(index.kind() == "PMGI");
  for (std::uint32_t number = 0; number < listings; ++number) {
    CHECK(index.name() == firstNames[number]);
    CHECK(index.group() == number);
  }
  CHECK(index.atEnd());
  index.checkEnd();
}

TEST_CASE("A chunk of the directory takes entries to its last byte, and the notes of each fifth with them") {
  // Besides the long name's: the root, the kinds of content, and `more` short ones.
  for (const std::size_t more : {0U, 1U, 2U, 3U, 7U, 8U}) {
    INFO(more);
    const std::size_t entries = 3 + more;
    const std::size_t notes = 2 + 2 * ((entries - 1) / 5);
    const std::size_t longest = 0x1000 - 0x14 - notes - 5 - 24 - more * 6 - 6;
    std::vector<std::string> names;
    for (std::size_t name = 0; name < more; ++name) names.push_back(std::to_string(name));
    names.emplace_back(longest, 'n');
    CHECK(chunksFor(names) == 1);
    names.back() += 'n';
    CHECK(chunksFor(names) == 3);
  }
}

TEST_CASE("Names that differ in more than case are in the directory as their small letters are") {
  ChmFiles files;
  const std::vector<std::string> order{"[x", "_x", "Ax", "az", "Bx", "bz", "Zx"};
  for (const std::string& name : order) files[name] = "";
  const std::string bytes = chmBytes(files);
  ChunkWalk chunk(bytes, 0, 0x14);
  std::vector<std::string> names;
  while (!chunk.atEnd()) {
    names.push_back(chunk.name().substr(1));
    for (int value = 0; value < 3; ++value) chunk.group();
  }
  CHECK(std::vector<std::string>(names.begin() + 1, names.end() - 1) == order);
}

TEST_CASE("A name that no directory holds is told") {
  const std::string name(4200, 'n');
  CHECK_THROWS_WITH(chmBytes({{name, ""}}), "the help file's directory has no room for /" + name);
}

TEST_CASE("The files of a help book's own are byte for byte what their descriptions ask for") {
  const ChmFiles files = readChm(helpFileBytes(book()));
  CHECK(files.at("#SYSTEM") == words({3}) + "\0\0\x0E\0Trackloom.hhc\0"s + "\1\0\x0E\0Trackloom.hhk\0"s +
                                   "\2\0\x0A\0start.htm\0"s + "\3\0\x0A\0Test Help\0"s + "\4\0\x24\0"s +
                                   words({0x409}) + zeros(0x20) + "\5\0\5\0main\0"s + "\6\0\x0A\0trackloom\0"s);
  const std::string window = "start.htm\0main\0Test Help\0Trackloom.hhc\0Trackloom.hhk\0"s;
  const std::string second = "start.htm\0second\0Test Help\0Trackloom.hhc\0Trackloom.hhk\0"s;
  CHECK(files.at("#STRINGS") == "\0"s + window + second + "more.htm\0start.htm\0"s);
  // The members that are told, three panes, the pane's width, the buttons of the bar.
  const auto record = [](std::uint32_t base, std::uint32_t name) {
    return words({0xC4, 0, base + 10, 0x536, 0x63520, base + 10 + name}) + zeros(0x4C - 0x18) + words({240}) +
           zeros(0x10) + words({base + 20 + name, base + 34 + name, base, base, 0x387E}) + zeros(0xC4 - 0x74);
  };
  CHECK(files.at("#WINDOWS") == words({2, 0xC4}) + record(1, 5) + record(54, 7));
  CHECK(files.at("#IVB") == words({16, 69, 109, 91, 118}));
}

TEST_CASE("A book without windows names none as its own") {
  HelpBook none = book();
  none.windows.clear();
  const ChmFiles files = readChm(helpFileBytes(none));
  CHECK(files.at("#SYSTEM").substr(files.at("#SYSTEM").size() - 14) == "\6\0\x0A\0trackloom\0"s);
  CHECK(files.at("#SYSTEM").find("\5\0\5\0"s) == std::string::npos);
  CHECK(files.at("#WINDOWS") == words({0, 0xC4}));
}

TEST_CASE("Contents and index are written as lists in each other") {
  const ChmFiles files = readChm(helpFileBytes(book()));
  const std::string head = "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\">\n<HTML><BODY>\n";
  CHECK(files.at("Trackloom.hhc") == head + "<UL>\n" + line("A &lt;b&gt; &amp; &quot;c&quot;", "start.htm") +
                                         "<UL>\n<UL>\n" + line("it&#39;s", "more.htm#end") + "</UL>\n</UL>\n" +
                                         line("Last", "more.htm") + "</UL>\n</BODY></HTML>\n");
  CHECK(files.at("Trackloom.hhk") == head + "<UL>\n" + line("blank disc", "more.htm") + "</UL>\n</BODY></HTML>\n");
}

}  // namespace trackloom::engines::helpfile
