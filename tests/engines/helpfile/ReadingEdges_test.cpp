#include <catch2/catch.hpp>

#include "engines/helpfile/ByteReader.h"
#include "engines/helpfile/Chm.h"
#include "engines/helpfile/HelpBookFile.h"
#include "engines/helpfile/HelpSources.h"
#include "engines/helpfile/Markup.h"
#include "fakes/TempFolder.h"

namespace trackloom::engines::helpfile {

namespace {

using namespace std::string_literals;
using fakes::TempFolder;

constexpr std::size_t HelpFileLimit = 33'554'432;
constexpr std::size_t DirectoryStart = 0x78;
constexpr std::size_t FirstChunk = DirectoryStart + 0x54;

std::string number(std::uint64_t value, int bytes) {
  std::string little;
  for (; bytes > 0; --bytes, value /= 256) little += static_cast<char>(value % 256);
  return little;
}

/// The same bytes with others from a place on.
std::string with(std::string bytes, std::size_t place, const std::string& others) {
  return bytes.replace(place, others.size(), others);
}

/// The files that are read, or nothing where they are refused.
std::optional<ChmFiles> filesOf(std::string_view bytes) {
  try {
    return readChm(bytes);
  } catch (const Damaged&) {
    return std::nullopt;
  }
}

bool isBook(std::string_view bytes) {
  try {
    helpBook(bytes);
    return true;
  } catch (const Damaged&) {
    return false;
  }
}

std::string book(ChmFiles files) {
  files["#SYSTEM"] = number(3, 4) + "\2\0\2\0p\0"s;
  files["p"] = "";
  return chmBytes(files);
}

std::string windowRecord(std::size_t size) {
  return with(std::string(size, '\0'), 8, number(1, 4));
}

std::string times(const std::string& text, std::size_t count) {
  std::string all;
  for (; count > 0; --count) all += text;
  return all;
}

}  // namespace

TEST_CASE("A number of groups has nine at most") {
  CHECK(ByteReader(times("\xFF", 8) + "\x7F").grouped() == 0x7FFF'FFFF'FFFF'FFFF);
  CHECK(ByteReader("\x81\x80\x01").grouped() == 0x4001);
  CHECK_THROWS_AS(ByteReader(times("\x80", 9) + "\x01").grouped(), Damaged);
  CHECK_THROWS_AS(ByteReader("\x80").grouped(), Damaged);
}

TEST_CASE("A reader takes to the last byte and nothing beyond") {
  ByteReader reader("abcd", 1);
  CHECK(reader.take(3) == "bcd");
  CHECK(reader.atEnd());
  CHECK(reader.take(0).empty());
  CHECK_THROWS_AS(reader.take(1), Damaged);
  CHECK_THROWS_AS(ByteReader("abcd", 5).take(0), Damaged);
  CHECK(u32At("\1\2\3\4\5"s, 1) == 0x05040302);
}

TEST_CASE("A text ends with its NUL, with its file, or behind 1024 letters") {
  CHECK(textAt("ab\0c"s, 1) == "b");
  CHECK(textAt("ab", 0) == "ab");
  CHECK(textAt("x" + std::string(1023, 'y'), 0).size() == 1024);
  CHECK(textAt("x" + std::string(1024, 'y'), 0).size() == 1024);
  CHECK_THROWS_AS(textAt("ab", 2), Damaged);
  const std::string title(2000, 't');
  const std::string system = number(3, 4) + "\2\0\2\0p\0\3\0"s + number(2000, 2) + title;
  CHECK(helpBook(chmBytes({{"#SYSTEM", system}, {"p", ""}})).title == title.substr(0, 1024));
}

TEST_CASE("The files of a help file hold what a whole one may have, and not a byte more") {
  // Eight times the first file: each entry's offset, four groups long, is turned to zero.
  const std::size_t part = HelpFileLimit / 8;
  for (const int count : {8, 9}) {
    ChmFiles files{{"a", std::string(part, 'x')}};
    for (int i = 1; i < count; ++i) files["file" + std::to_string(i)] = std::string(part, 'x');
    std::string bytes = chmBytes(files);
    for (int i = 1; i < count; ++i)
      bytes = with(std::move(bytes), bytes.find("/file" + std::to_string(i)) + 7, "\x80\x80\x80\0"s);
    bytes.resize(FirstChunk + 0x1000 + part);
    const auto read = filesOf(bytes);
    CHECK(read.has_value() == (count == 8));
    if (read) CHECK(read->at("file7").size() == part);
  }
}

TEST_CASE("A help file of 32 MiB is read, and one of a byte more is not") {
  std::string bytes = chmBytes({{"a", "x"}});
  bytes.resize(HelpFileLimit);
  CHECK(filesOf(bytes).has_value());
  bytes += 'x';
  CHECK_FALSE(filesOf(bytes).has_value());
}

TEST_CASE("What a help file says of itself is believed to its edge and no further") {
  const std::string whole = chmBytes({{"a", ""}, {"b", ""}});
  const std::size_t contents = FirstChunk + 0x1000;
  const ChmFiles both{{"a", ""}, {"b", ""}};
  struct Case {
    const char* what;
    std::string bytes;
    std::optional<ChmFiles> files;
  };
  const std::vector<Case> cases{
      {"as it is", whole, both},
      {"cut where the contents begin", whole.substr(0, contents), both},
      {"the contents begin behind the end", with(whole, 0x58, number(whole.size() + 1, 8)), std::nullopt},
      {"the directory begins behind the end", with(whole, 0x48, number(whole.size() + 1, 8)), std::nullopt},
      {"another mark", with(whole, 0, "ITSX"), std::nullopt},
      {"another mark of the directory", with(whole, DirectoryStart, "ITSX"), std::nullopt},
      {"a chunk that lists nothing", with(whole, FirstChunk, "PMGI"), ChmFiles{}},
      {"no chunk", with(whole, DirectoryStart + 0x2C, number(0, 4)), ChmFiles{}},
      {"a chunk too many", with(whole, DirectoryStart + 0x2C, number(2, 4)), std::nullopt},
      {"an empty chunk", with(whole, FirstChunk + 4, number(0x1000 - 0x14, 4)), ChmFiles{}},
      {"less than an empty chunk", with(whole, FirstChunk + 4, number(0x1000 - 0x13, 4)), std::nullopt},
      {"chunks of a header only",
       with(with(whole, DirectoryStart + 0x10, number(0x14, 4)), FirstChunk + 4, number(0, 4)), ChmFiles{}},
      {"chunks of less than a header", with(whole, DirectoryStart + 0x10, number(0x13, 4)), std::nullopt},
      {"a file of the compressed kind", with(whole, whole.find("/a") + 2, "\1"), ChmFiles{{"b", ""}}},
      {"a folder", with(whole, whole.find("/a"), "a/"), ChmFiles{{"b", ""}}},
      {"a name without a slash", with(whole, whole.find("/a"), "aa"), ChmFiles{{"b", ""}}},
  };
  for (const Case& one : cases) {
    INFO(one.what);
    CHECK(filesOf(one.bytes) == one.files);
  }
}

TEST_CASE("The contents lie where the header says from its third version on, and behind the directory before") {
  std::string bytes = chmBytes({{"a", "12345678"}});
  bytes.insert(FirstChunk + 0x1000, "between!");
  bytes = with(bytes, 0x58, number(FirstChunk + 0x1008, 8));
  CHECK(filesOf(bytes)->at("a") == "12345678");
  CHECK(filesOf(with(bytes, 4, number(4, 4)))->at("a") == "12345678");
  CHECK(filesOf(with(bytes, 4, number(2, 4)))->at("a") == "between!");
}

TEST_CASE("A help file has ten thousand files, topics, windows and lines at most") {
  std::string topics;
  ChmFiles files;
  for (std::size_t i = 0; i < 10'000; ++i) {
    topics += number(i, 4) + number(0, 4);
    files[std::to_string(i)] = "";
  }
  const auto ofTopics = [](const std::string& rows) {
    return book({{"#STRINGS", "t\0w\0"s}, {"#IVB", number(rows.size(), 4) + rows}});
  };
  CHECK(helpBook(ofTopics(topics)).topics.size() == 10'000);
  CHECK_FALSE(isBook(ofTopics(topics + number(10'000, 4) + number(0, 4))));
  CHECK(filesOf(chmBytes(files))->size() == 10'000);
  files["more"] = "";
  CHECK_FALSE(filesOf(chmBytes(files)).has_value());
  const auto ofWindows = [](std::uint64_t count) {
    return book(
        {{"#STRINGS", "t\0w\0"s}, {"#WINDOWS", number(count, 4) + number(0xC4, 4) + times(windowRecord(0xC4), count)}});
  };
  CHECK(helpBook(ofWindows(10'000)).windows.size() == 10'000);
  CHECK_FALSE(isBook(ofWindows(10'001)));
  const std::string line = "<object><param name=\"Name\" value=\"A\"></object>";
  CHECK(siteMap(times(line, 10'000)).size() == 10'000);
  CHECK_THROWS_AS(siteMap(times(line, 10'001)), Damaged);
}

TEST_CASE("Windows come by their names in the order of their records, however large these are") {
  const std::string record = windowRecord(0xC8);
  const ChmFiles files{{"#STRINGS", "?main\0second\0"s},
                       {"#WINDOWS", number(2, 4) + number(0xC8, 4) + record + with(record, 8, number(6, 4))}};
  CHECK(helpBook(book(files)).windows == std::vector<std::string>{"main", "second"});
  CHECK_FALSE(isBook(book({{"#STRINGS", "?a\0"s}, {"#WINDOWS", number(1, 4) + number(0xC3, 4) + windowRecord(0xC3)}})));
}

TEST_CASE("Topics end where their length says, also behind what others have put there") {
  const std::string rows = number(8, 4) + number(69, 4) + number(0, 4);
  CHECK(helpBook(book({{"#STRINGS", "a.htm\0"s}, {"#IVB", rows + "more"}})).topics ==
        std::map<std::int32_t, std::string>{{69, "a.htm"}});
  CHECK_FALSE(isBook(book({{"#STRINGS", "a.htm\0"s}, {"#IVB", rows.substr(0, 11)}})));
}

TEST_CASE("The version of a help file's texts is passed over, whatever it is") {
  const ChmFiles files{{"#SYSTEM", number(0x10003, 4) + "\2\0\2\0p\0"s}, {"p", ""}};
  CHECK(helpBook(chmBytes(files)).firstPage == "p");
}

TEST_CASE("The first page may name a place in its file") {
  const std::string system = number(3, 4) + "\2\0\4\0p#q\0"s;
  CHECK(helpBook(chmBytes({{"#SYSTEM", system}, {"p", ""}})).firstPage == "p#q");
  CHECK_FALSE(isBook(chmBytes({{"#SYSTEM", system}, {"q", ""}})));
}

TEST_CASE("A page's title is the text behind its first mark of a title") {
  const std::map<std::string, std::string> titles{{"<title>A &amp; B</title>", "A & B"},
                                                  {"<TITLE>A</TITLE><title>B</title>", "A"},
                                                  {"<p>title</p><title>B</title>", "B"},
                                                  {"<title></title>", ""},
                                                  {"<title>", ""},
                                                  {"title", ""},
                                                  {"", ""},
                                                  {"<title><b>x", ""}};
  for (const auto& [html, title] : titles)
    for (const char* name : {"x.htm", "x.html"}) {
      INFO(html);
      const HelpBook read = helpBook(book({{name, html}}));
      REQUIRE(read.pages.size() == 1);
      CHECK(read.pages.front().title == title);
      CHECK(read.pages.front().file == name);
    }
  CHECK(helpBook(book({{"x.htm.txt", "<title>A</title>"}})).pages.empty());
}

TEST_CASE("A page's words are parted by one blank, whatever stands between them") {
  CHECK(plainText("\t\r\n a\tb\rc\nd  e&nbsp;f<br>\r\n<br>g") == "a b c d e f g");
}

TEST_CASE("Each entity stands for its letter, and what is none for itself") {
  CHECK(withoutEntities("&lt;&gt;&quot;&#39;&nbsp;&amp;&eacute;&") == "<>\"' &&eacute;&");
}

TEST_CASE("A mark's name ends with a blank or a line's end, and is small") {
  for (const char* mark : {"AZ", "az href", "aZ\nhref", "Az\rhref"}) CHECK(markName(mark) == "az");
  CHECK(markName("[@`{") == "[@`{");
  CHECK(markName("").empty());
}

TEST_CASE("An attribute is found by its whole name, and its value ends with its quotation mark") {
  CHECK(attribute("param NAME=\"Local\" value=\"a &amp; B\"", "name") == "Local");
  CHECK(attribute("param NAME=\"Local\" value=\"a &amp; B\"", "value") == "a & B");
  CHECK(attribute("param surname=\"Local\"", "name").empty());
  CHECK(attribute("param name=\"cut", "name") == "cut");
  CHECK(attribute("param name=cut", "name").empty());
}

TEST_CASE("Marks without names, remarks, 5001 marks and the longest word behind another are counted as such") {
  CHECK(isShowable(times("<>", 41)));
  CHECK(isShowable(times("<!remark>", 41)));
  CHECK_FALSE(isShowable(times("<br>", 5001)));
  CHECK(isShowable(times("<b></b>", 2500)));
  CHECK(isShowable(times("<b>", 40) + times("</b>", 40) + times("<b>", 40)));
  CHECK_FALSE(isShowable("a " + times("x", 1001)));
  CHECK_FALSE(isShowable("a\n" + times("x", 1001)));
  CHECK_FALSE(isShowable(times("</b>", 1) + times("<b>", 42)));
}

TEST_CASE("Lists that end too often begin anew, and the first of two places counts") {
  const std::string line =
      "<object><param name=\"Name\" value=\"A\"><param name=\"Local\" value=\"a\"><param name=\"local\" "
      "value=\"b\"></object>";
  const auto lines = siteMap("</ul></ul></ul><ul>" + line + "<ul>" + line + "</ul></ul>" + line);
  REQUIRE(lines.size() == 3);
  CHECK((lines[0].depth == 0 && lines[1].depth == 1 && lines[2].depth == 0));
  CHECK(lines[0].place == "a");
  CHECK(siteMap("<ul><ul></ul>" + line + "<ul>" + line).back().depth == 1);
  CHECK(siteMap(times("<ul>", 17) + line).front().depth == 16);
  CHECK(siteMap(times("<ul>", 16) + line).front().depth == 15);
}

TEST_CASE("Only files are a book's, and a line is parted by any number of blanks") {
  TempFolder folder;
  folder.write("contents.txt", "a.htm   Two  words\n    b.htm Deeper\n");
  folder.write("index.txt", "");
  folder.write("topics.txt", "-1 a.htm\n");
  folder.write("folder/inner.htm", "inner");
  const HelpBook read = readHelpSources(HostPath(folder.path()));
  REQUIRE(read.contents.size() == 2);
  CHECK((read.contents[0].name == "Two  words" && read.contents[0].place == "a.htm"));
  CHECK((read.contents[1].depth == 2 && read.contents[1].place == "b.htm"));
  CHECK(read.topics == std::map<std::int32_t, std::string>{{-1, "a.htm"}});
  CHECK(read.files.empty());
}

TEST_CASE("Sources that make no book say why") {
  TempFolder folder;
  for (const char* list : {"contents.txt", "index.txt", "topics.txt"}) folder.write(list, "");
  CHECK_THROWS_WITH(readHelpSources(HostPath(folder.path())), "the contents are empty");
  folder.write("contents.txt", "  start.htm   \n");
  CHECK_THROWS_WITH(readHelpSources(HostPath(folder.path())), "the line \"  start.htm   \" says nothing");
}

}  // namespace trackloom::engines::helpfile
