#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "printing/clsMP3Info.h"

namespace trackloom {

using fakes::LayoutMachine;

namespace {

using Pair = std::pair<std::string, std::string>;

std::string field(std::string text, char padding = ' ') {
  text.resize(30, padding);
  return text;
}

std::string tag(const std::string& title, const std::string& artist, char padding = ' ') {
  return "TAG" + field(title, padding) + field(artist, padding) + std::string(65, '\xFF');
}

/// A machine on which one object reads tag after tag.
class Reader : public LayoutMachine {
 public:
  Reader() : LayoutMachine(Mp3Layout) {}

  clsMP3Info info{session()};

  /// Title and artist of a file of these bytes.
  Pair read(const std::string& bytes) {
    folder.write("music/a.mp3", bytes);
    return readPath(folder / "music/a.mp3");
  }
  Pair readPath(const std::string& path) {
    info.SetFileName(HostPath(path));
    CHECK(info.FileName() == HostPath(path));
    return {info.Title(), info.Artist()};
  }
};

const Pair Unknown{"Unknown", "Unknown"};

}  // namespace

TEST_CASE("E126: A file shorter than 128 bytes reads as Unknown twice, and the missing tag is noted") {
  Reader reader;
  CHECK(reader.read(tag("Aubade", "Anna").substr(0, 127)) == Unknown);
  CHECK(reader.mod().TagsMissing);
  reader.mod().TagsMissing = false;
  CHECK(reader.read("") == Unknown);
  CHECK(reader.mod().TagsMissing);
}

TEST_CASE("E127: A file of exactly 128 bytes that begins with TAG is read as a tag") {
  Reader reader;
  CHECK(reader.read(tag("Aubade", "Anna")) == Pair("Aubade", "Anna"));
  CHECK_FALSE(reader.mod().TagsMissing);
}

TEST_CASE("E128: A title of 30 blanks reads as an empty text, and nothing is missing") {
  Reader reader;
  CHECK(reader.read(tag("", "")) == Pair("", ""));
  CHECK_FALSE(reader.mod().TagsMissing);
}

TEST_CASE("The tag is the last 128 bytes of a file, and fills no more than its two fields") {
  Reader reader;
  const std::string thirty = "123456789012345678901234567890";
  CHECK(reader.read(std::string(5000, 'x') + tag(thirty, thirty)) == Pair(thirty, thirty));
  CHECK(reader.read(tag("Aubade", "Anna") + "x") == Unknown);
  CHECK(reader.read(std::string(5000, 'x') + "tag" + field("Aubade") + field("Anna") + std::string(65, ' ')) ==
        Unknown);
}

TEST_CASE("A file too short for a tag is Unknown also behind a tagged one, and a tagged one behind it is read") {
  Reader reader;
  CHECK(reader.read(tag("Aubade", "Anna")) == Pair("Aubade", "Anna"));
  CHECK(reader.read("short") == Unknown);
  CHECK(reader.read(tag("Round dance", "Ben")) == Pair("Round dance", "Ben"));
  CHECK(reader.mod().TagsMissing);
}

TEST_CASE("What cannot be read as a file is Unknown") {
  Reader reader;
  CHECK(reader.readPath(reader.folder / "music/gone.mp3") == Unknown);
  CHECK(reader.readPath(reader.folder.path()) == Unknown);
  CHECK(reader.readPath("") == Unknown);
  CHECK(reader.mod().TagsMissing);
}

TEST_CASE("Blanks are trimmed at both ends, zero bytes are not, and blanks before zero bytes stay") {
  Reader reader;
  CHECK(reader.read(tag("  Aubade", "   Anna  B")) == Pair("Aubade", "Anna  B"));
  const std::string padded = "Aubade" + std::string(24, '\0');
  CHECK(reader.read(tag("Aubade", "Aubade", '\0')) == Pair(padded, padded));
  CHECK(reader.read(tag("Aubade \t", "\tAnna")) == Pair("Aubade \t", "\tAnna"));
}

TEST_CASE("Bytes beyond ASCII are Windows-1252, unless characters of several bytes say UTF-8") {
  Reader reader;
  CHECK(reader.read(tag("Caf\xE9 \x80", "Bj\xF6rk")) == Pair("Café €", "Björk"));
  CHECK(reader.read(tag("Café", "Björk")) == Pair("Café", "Björk"));
  CHECK(reader.read(tag("Ночь", "夜")) == Pair("Ночь", "夜"));
}

TEST_CASE("A last character that a field of UTF-8 cuts is left out, and one byte there is no such character") {
  Reader reader;
  // 29 bytes are left of fourteen characters of two bytes and one of which only the first byte fits.
  const std::string cut = "a" + std::string("ННННННННННННННН").substr(0, 29);
  CHECK(reader.read(tag(cut, "Anna")).first == "aНННННННННННННН");
  const std::string threeBytes = "ab" + std::string("夜夜夜夜夜夜夜夜夜夜").substr(0, 28);
  CHECK(reader.read(tag(threeBytes, "Anna")).first == "ab夜夜夜夜夜夜夜夜夜");
  const std::string accented = std::string(29, 'e') + "\xE9";
  CHECK(reader.read(tag(accented, "Anna")).first == std::string(29, 'e') + "é");
}

}  // namespace trackloom
