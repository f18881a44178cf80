#include "runtime/IniFile.h"

#include <catch2/catch.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

using trackloom::HostPath;
using trackloom::IniFile;
using trackloom::IniWriter;

namespace {

const char* const sample =
    "\xEF\xBB\xBF; comment\r\n"
    "early = 1\r\n"
    "[Disc]\r\n"
    "  Medium =  CD-R \r\n"
    "# another\n"
    "blocks=359849\n"
    "\n"
    "no equals sign\n"
    "empty =\n"
    "sum = a = b ; kept\n"
    "[ disc ]\n"
    "blocks = 333000\n"
    "[unclosed\n"
    "x = 1\n"
    "on = YES\n"
    "off = 0\n"
    "flag = maybe";

class TempFile {
 public:
  TempFile() : folder_(std::filesystem::temp_directory_path() / "trackloom-ini-XXXXXX") {
    std::string name = folder_.string();
    REQUIRE(mkdtemp(name.data()) != nullptr);
    folder_ = name;
  }
  ~TempFile() { std::filesystem::remove_all(folder_); }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  HostPath path() const { return HostPath((folder_ / "file.ini").string()); }
  HostPath folder() const { return HostPath(folder_.string()); }

 private:
  std::filesystem::path folder_;
};

}  // namespace

TEST_CASE("A settings file gives its values by section and key, whatever their case and line ends") {
  const IniFile file = IniFile::parse(sample);
  CHECK(file.value("disc", "medium") == "CD-R");
  CHECK(file.value("DISC", "MEDIUM") == "CD-R");
  CHECK(file.value("", "early") == "1");
  CHECK(file.value("disc", "empty") == "");
  CHECK(file.value("disc", "sum") == "a = b ; kept");
  CHECK_FALSE(file.value("disc", "early"));
  CHECK_FALSE(file.value("other", "medium"));
  CHECK_FALSE(file.value("disc", "no equals sign"));
}

TEST_CASE("Of a key that comes twice the last value holds, also in a section that comes twice") {
  CHECK(IniFile::parse(sample).value("disc", "blocks") == "333000");
}

TEST_CASE("A heading without its second bracket begins no section") {
  const IniFile file = IniFile::parse(sample);
  CHECK(file.sections() == std::vector<std::string>{"disc"});
  CHECK(file.value("disc", "x") == "1");
}

TEST_CASE("Numbers are whole, decimal and within their bounds, or they are none") {
  const IniFile file = IniFile::parse(
      "[n]\na = 12\nb = -3\nc = 12x\nd = 99999999999999999999\ne = 0x10\nf =\ng = 1.5\nh = 100\ni = +5\nj = 1 2");
  CHECK(file.number("n", "a", 0, 100) == 12);
  CHECK(file.number("n", "b", -3, 100) == -3);
  CHECK(file.number("n", "h", 0, 100) == 100);
  CHECK_FALSE(file.number("n", "b", 0, 100));
  CHECK_FALSE(file.number("n", "h", 0, 99));
  for (const char* key : {"c", "d", "e", "f", "g", "i", "j", "missing"}) CHECK_FALSE(file.number("n", key, -100, 100));
}

TEST_CASE("Flags know eight words and nothing else") {
  const IniFile file = IniFile::parse(sample);
  CHECK(file.flag("disc", "on") == true);
  CHECK(file.flag("disc", "off") == false);
  CHECK_FALSE(file.flag("disc", "flag"));
  CHECK_FALSE(file.flag("disc", "missing"));
}

TEST_CASE("A text beyond the size limit has no values, and one at the limit has") {
  std::string text = "[a]\nkey = 1\n;";
  text.append(IniFile::sizeLimit - text.size(), 'x');
  CHECK(IniFile::parse(text).value("a", "key") == "1");
  CHECK_FALSE(IniFile::parse(text + "x").value("a", "key"));
}

TEST_CASE("A settings file is loaded from a regular file only") {
  const TempFile temp;
  CHECK_FALSE(IniFile::load(temp.path()));
  CHECK_FALSE(IniFile::load(temp.folder()));
  std::ofstream(temp.path().text) << sample;
  const auto file = IniFile::load(temp.path());
  REQUIRE(file);
  CHECK(file->value("disc", "medium") == "CD-R");
  std::ofstream(temp.path().text) << std::string(IniFile::sizeLimit + 1, ';');
  CHECK_FALSE(IniFile::load(temp.path()));
}

TEST_CASE("What the writer puts together is plain lines, and no value breaks out of its line") {
  IniWriter ini;
  ini.comment("words").section("disc").entry("text", "a\r\n[evil]\nb = 1").entry("number", -7);
  CHECK(ini.text() == "; words\n\n[disc]\ntext = a  [evil] b = 1\nnumber = -7\n");
}

TEST_CASE("Each of the eight words is a flag in any case, and no other word is") {
  const IniFile file =
      IniFile::parse("[f]\na = yes\nb = True\nc = ON\nd = 1\ne = no\nf = False\ng = OFF\nh = 0\ni = 2\nj =\nk = ~yes");
  for (const char* key : {"a", "b", "c", "d"}) CHECK(file.flag("f", key) == true);
  for (const char* key : {"e", "f", "g", "h"}) CHECK(file.flag("f", key) == false);
  for (const char* key : {"i", "j", "k"}) CHECK(file.flag("f", key) == std::nullopt);
}

TEST_CASE("Every ASCII letter of a name has two cases, and what stands beside the alphabet has one") {
  const IniFile file = IniFile::parse("[ABYZ@[]\nABYZ@[ = 1\n");
  CHECK(file.value("abyz@[", "abyz@[") == "1");
  CHECK_FALSE(file.value("abyz`{", "abyz@["));
  CHECK_FALSE(file.value("abyz@[", "abyz`{"));
}

TEST_CASE("All blanks around names and values fall away, and none within") {
  const IniFile file = IniFile::parse(" \t\f\v[ \t a b \v] \r\n\f\tkey one\t=\v\tvalue  two \t\r\n");
  CHECK(file.sections() == std::vector<std::string>{"a b"});
  CHECK(file.value("a b", "key one") == "value  two");
}

TEST_CASE("A section without keys is there, keys before the first heading are in none, and a comment is neither") {
  const IniFile file = IniFile::parse("first = 1\n[empty]\n;[not]\n#x = 1\n[last]\n= nothing\nz=1\n;z=2");
  CHECK(file.sections() == std::vector<std::string>{"empty", "last"});
  CHECK(file.value("", "first") == "1");
  CHECK(file.value("last", "") == "nothing");
  CHECK(file.value("last", "z") == "1");
  CHECK_FALSE(file.value("last", ";z"));
  CHECK_FALSE(file.value("empty", "#x"));
  CHECK_FALSE(file.value("empty", "z"));
}

TEST_CASE("A byte order mark is passed over at the start alone") {
  CHECK(IniFile::parse("\xEF\xBB\xBFkey=1").value("", "key") == "1");
  CHECK(IniFile::parse("key=1").value("", "key") == "1");
  CHECK(IniFile::parse("a=1\n\xEF\xBB\xBFkey=1").value("", "\xEF\xBB\xBFkey") == "1");
}

TEST_CASE("A heading with anything behind it is no heading, and one of a bracket alone neither") {
  const IniFile file = IniFile::parse("[a] x\n[\nk=1\n[b]\n[c = 2\n");
  CHECK(file.sections() == std::vector<std::string>{"b"});
  CHECK(file.value("", "k") == "1");
  CHECK_FALSE(file.value("b", "[c"));
}

TEST_CASE("A number at either of its bounds is within them") {
  const IniFile file = IniFile::parse("[n]\nlow = 5\nhigh = 9\nnone = 0\n");
  CHECK(file.number("n", "low", 5, 9) == 5);
  CHECK(file.number("n", "high", 5, 9) == 9);
  CHECK(file.number("n", "none", 0, 0) == 0);
  CHECK_FALSE(file.number("n", "low", 6, 9));
  CHECK_FALSE(file.number("n", "high", 5, 8));
}

TEST_CASE("A file of just the size limit is loaded") {
  const TempFile temp;
  std::string text = "[a]\nkey = 1\n;";
  text.append(IniFile::sizeLimit - text.size(), 'x');
  std::ofstream(temp.path().text) << text;
  const auto file = IniFile::load(temp.path());
  REQUIRE(file);
  CHECK(file->value("a", "key") == "1");
  CHECK(IniFile::sizeLimit == 65536);
}

TEST_CASE("No bytes whatever make the reader of settings fail") {
  std::mt19937 random(20240517);
  const std::string base = sample;
  for (int round = 0; round < 3000; ++round) {
    std::string text = base;
    for (std::uint32_t change = 0; change < 1 + random() % 20; ++change) {
      const std::size_t at = random() % text.size();
      if (random() % 3 == 0)
        text.insert(at, text.substr(random() % text.size(), random() % 40));
      else if (random() % 2 == 0 && text.size() > 8)
        text.erase(at, random() % 8);
      else
        text[at] = static_cast<char>(random());
    }
    const IniFile file = IniFile::parse(text);
    for (const std::string& section : file.sections()) {
      file.flag(section, "on");
      file.number(section, "blocks", 0, 10);
    }
  }
  SUCCEED();
}
