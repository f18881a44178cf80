#include <catch2/catch.hpp>
#include <random>

#include "engines/helpfile/Chm.h"
#include "engines/helpfile/Damaged.h"
#include "engines/helpfile/HelpBookFile.h"
#include "engines/helpfile/HelpSources.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"

namespace trackloom::engines::helpfile {

namespace {

using fakes::TempFolder;

/// What another program says about the file, or leaves in a folder.
void run(const std::string& command) {
  INFO(command);
  REQUIRE(std::system((command + " > /dev/null 2>&1").c_str()) == 0);
}

/// As many files as take several chunks of the directory.
ChmFiles manyFiles() {
  ChmFiles files;
  for (int i = 0; i < 700; ++i)
    files["Page " + std::to_string(i * 7919 % 700) + ".htm"] = std::string(static_cast<std::size_t>(i % 90), 'x') + "p";
  files["empty.txt"] = "";
  files["big.bin"] = std::string(100000, 'b');
  return files;
}

HelpBook smallBook() {
  HelpBook book;
  book.title = "Test Help";
  book.firstPage = "start.htm";
  book.windows = {"main"};
  book.contents = {{0, "Start", "start.htm"}, {1, "More", "more.htm#end"}};
  book.index = {{0, "Blank & empty", "more.htm"}};
  book.topics = {{69, "more.htm"}, {91, "start.htm"}};
  book.files = {{"start.htm", "<html><head><title>Start &amp; go</title></head><body>First <b>words</b></body></html>"},
                {"more.htm", "<html><head><title></title></head><body>More</body></html>"},
                {"picture.png", "PNG"}};
  return book;
}

bool isDamaged(std::string_view bytes) {
  try {
    helpBook(bytes);
    return false;
  } catch (const Damaged&) {
    return true;
  }
}

}  // namespace

TEST_CASE("What is put into a help file comes out of it") {
  CHECK(readChm(chmBytes({})).empty());
  const ChmFiles files = manyFiles();
  CHECK(readChm(chmBytes(files)) == files);
}

TEST_CASE("Other programs take the same files out of a help file") {
  const ChmFiles files = manyFiles();
  TempFolder folder;
  folder.write("many.chm", chmBytes(files));
  run("7z x -y '-o" + (folder / "by-7z") + "' '" + (folder / "many.chm") + "'");
  run("extract_chmLib '" + (folder / "many.chm") + "' '" + (folder / "by-chmlib") + "'");
  for (const auto& [name, bytes] : files)
    for (const char* reader : {"by-7z/", "by-chmlib/"}) {
      INFO(reader + name);
      REQUIRE(folder.has(reader + name));
      REQUIRE(folder.read(reader + name) == bytes);
    }
}

TEST_CASE("The directory is in order whatever the case of its names, and each chunk tells how many it holds") {
  const std::string bytes = chmBytes({{"By.htm", "1"}, {"ca.htm", "2"}, {"Zebra.htm", "3"}, {"apple.htm", "4"}});
  const std::size_t chunk = bytes.find("PMGL");
  REQUIRE(chunk != std::string::npos);
  const std::string directory = bytes.substr(chunk, 4096);
  std::size_t last = 0;
  for (const char* name : {"/apple.htm", "/By.htm", "/ca.htm", "/Zebra.htm"}) {
    INFO(name);
    const std::size_t place = directory.find(name);
    REQUIRE(place != std::string::npos);
    CHECK(place > last);
    last = place;
  }
  // With the root and the names of the kinds of content there are six; the number ends the chunk, low byte first.
  CHECK(directory.substr(4094) == std::string("\6\0", 2));
}

TEST_CASE("The file tells its own name, its first page and its window") {
  const std::string bytes = helpFileBytes(smallBook());
  // The records of #SYSTEM: code, length, text with its NUL.
  CHECK(bytes.find(std::string("\6\0\xA\0trackloom\0", 14)) != std::string::npos);
  CHECK(bytes.find(std::string("\2\0\xA\0start.htm\0", 14)) != std::string::npos);
  CHECK(bytes.find(std::string("\5\0\5\0main\0", 9)) != std::string::npos);
}

TEST_CASE("The same pages give the same file, whenever and wherever it is made") {
  CHECK(helpFileBytes(smallBook()) == helpFileBytes(smallBook()));
  CHECK(helpFileBytes(smallBook()).find('/' + std::string("tmp")) == std::string::npos);
}

TEST_CASE("A book that was written reads back whole") {
  const HelpBook book = helpBook(helpFileBytes(smallBook()));
  CHECK(book.title == "Test Help");
  CHECK(book.firstPage == "start.htm");
  CHECK(book.windows == std::vector<std::string>{"main"});
  CHECK(book.topics == smallBook().topics);
  REQUIRE(book.contents.size() == 2);
  CHECK((book.contents[1].depth == 1 && book.contents[1].name == "More" && book.contents[1].place == "more.htm#end"));
  REQUIRE(book.index.size() == 1);
  CHECK(book.index[0].name == "Blank & empty");
  REQUIRE(book.pages.size() == 2);
  CHECK((book.pages[0].file == "more.htm" && book.pages[0].title.empty() && book.pages[0].text == "More "));
  CHECK((book.pages[1].title == "Start & go" && book.pages[1].text == "First words "));
  CHECK(book.files.at("picture.png") == "PNG");
}

TEST_CASE("A file that is no help file, is cut or lies about itself is refused") {
  const std::string whole = helpFileBytes(smallBook());
  CHECK_FALSE(isDamaged(whole));
  // The last file of all only names the kinds of content, and is not read.
  const std::size_t read = whole.rfind("</HTML>");
  for (std::size_t length = 0; length < read; length += 7) {
    INFO(length);
    CHECK(isDamaged(whole.substr(0, length)));
  }
  CHECK(isDamaged("no help file"));
  CHECK(isDamaged(chmBytes({{"start.htm", "x"}})));
}

TEST_CASE("A help file with any bytes changed is read or refused, and nothing else") {
  const std::string whole = helpFileBytes(smallBook());
  std::mt19937 dice(20);
  for (int run = 0; run < 3000; ++run) {
    std::string changed = whole;
    for (int hit = 0; hit < 4; ++hit) {
      const std::size_t place = dice() % (hit == 0 ? 0x1100 : changed.size());
      changed[place] = static_cast<char>(dice());
    }
    isDamaged(changed);
  }
  SUCCEED();
}

TEST_CASE("A directory that names one file many times holds no more than a whole help file") {
  ChmFiles files;
  const std::string bytes(1U << 20U, 'x');
  for (int i = 0; i < 40; ++i) files["file" + std::to_string(10 + i)] = "";
  std::string file = chmBytes(files);
  // Each entry's offset and length, two zeros behind its name, point at what is appended.
  for (int i = 0; i < 40; ++i) {
    const std::size_t entry = file.find("/file" + std::to_string(10 + i)) + 7;
    file.replace(entry, 3, std::string("\0\0\x7f", 3));
  }
  CHECK(readChm(file + bytes).size() == 40);
}

TEST_CASE("A book comes without the pages that cannot be shown, and without its first one it is none") {
  HelpBook book = smallBook();
  book.files["more.htm"] = std::string(2000, 'x');
  const HelpBook read = helpBook(helpFileBytes(book));
  CHECK_FALSE(read.files.contains("more.htm"));
  CHECK(read.pages.size() == 1);
  book.files["start.htm"] = std::string(2000, 'x');
  CHECK(isDamaged(helpFileBytes(book)));
}

TEST_CASE("A file on the disk is read as a book, and what is none as nothing") {
  TempFolder folder;
  const auto book = readHelpBook(folder.file("a.chm", helpFileBytes(smallBook())));
  REQUIRE(book != nullptr);
  CHECK(book->title == "Test Help");
  CHECK(readHelpBook(folder.file("empty.chm", "")) == nullptr);
  CHECK(readHelpBook(folder.file("damaged.chm", "ITSF")) == nullptr);
  CHECK(readHelpBook(folder.host("gone.chm")) == nullptr);
  CHECK(readHelpBook(HostPath(folder.path())) == nullptr);
}

TEST_CASE("A file larger than any help file of ours is not read") {
  TempFolder folder;
  const HostPath path = folder.file("huge.chm", helpFileBytes(smallBook()));
  std::filesystem::resize_file(path.text, LargestHelpFile);
  CHECK(readHelpBook(path) != nullptr);
  std::filesystem::resize_file(path.text, LargestHelpFile + 1);
  CHECK(readHelpBook(path) == nullptr);
}

TEST_CASE("A file that is read aside is waited for with patience, and is the same book") {
  const fakes::TempFolder folder;
  fakes::FakePatience patience;
  const HelpBookReader read = patientReader(patience);
  const auto book = read(folder.file("a.chm", helpFileBytes(smallBook())));
  REQUIRE(book != nullptr);
  CHECK(book->title == readHelpBook(folder.host("a.chm"))->title);
  CHECK(read(folder.host("gone.chm")) == nullptr);
  CHECK(patience.waits == 2);
}

TEST_CASE("The sources of a book are pages beside three lists") {
  TempFolder folder;
  folder.write("contents.txt", "start.htm Getting started\n\n  more.htm#x  More of it\nstart.htm Again\n");
  folder.write("index.txt", "more.htm blank disc\n");
  folder.write("topics.txt", "69 start.htm\n");
  folder.write("start.htm", "one");
  folder.write("more.htm", "two");
  const HelpBook book = readHelpSources(HostPath(folder.path()));
  CHECK(book.title == "Trackloom Help");
  CHECK(book.windows == std::vector<std::string>{"main"});
  CHECK(book.firstPage == "start.htm");
  REQUIRE(book.contents.size() == 3);
  CHECK(
      (book.contents[1].depth == 1 && book.contents[1].name == "More of it" && book.contents[1].place == "more.htm#x"));
  CHECK((book.contents[2].depth == 0 && book.contents[2].name == "Again"));
  REQUIRE(book.index.size() == 1);
  CHECK(book.index[0].name == "blank disc");
  CHECK(book.topics == std::map<std::int32_t, std::string>{{69, "start.htm"}});
  CHECK(book.files == std::map<std::string, std::string>{{"start.htm", "one"}, {"more.htm", "two"}});
}

TEST_CASE("Sources without contents, or with a line that says nothing, make no book") {
  TempFolder folder;
  for (const char* list : {"contents.txt", "index.txt", "topics.txt"}) folder.write(list, "");
  CHECK_THROWS_AS(readHelpSources(HostPath(folder.path())), std::invalid_argument);
  folder.write("contents.txt", "start.htm\n");
  CHECK_THROWS_AS(readHelpSources(HostPath(folder.path())), std::invalid_argument);
}

TEST_CASE("A name that no directory holds makes no help file") {
  CHECK_THROWS_AS(chmBytes({{std::string(5000, 'n'), ""}}), std::length_error);
}

}  // namespace trackloom::engines::helpfile
