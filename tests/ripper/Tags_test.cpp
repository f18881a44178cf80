#include <catch2/catch.hpp>
#include <fstream>

#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"
#include "ripper/Ripping.h"
#include "ripper/TagText.h"
#include "ripper/modWriteMP3.h"

namespace trackloom {

using fakes::TempFolder;
using Lines = std::vector<std::string>;

namespace {

/// The table of genres, one a line from number 0 on.
Lines writtenGenres() {
  std::ifstream file(std::string(TRACKLOOM_SOURCE_DIR) + "/tests/ripper/genres.txt");
  Lines genres;
  for (std::string line; std::getline(file, line);) genres.push_back(line);
  return genres;
}

ID3Tag sampleTag() {
  return {
      .Title = "Aubade", .Artist = "Bj\xC3\xB6rk", .Album = "Vespertine", .Year = "2001", .Comment = {}, .Genre = 42};
}

const std::string SampleText = tagText("Aubade", "Bj\xF6rk", "Vespertine", "2001");

}  // namespace

TEST_CASE("The table of genres has its 149 rows, and nothing behind them") {
  const Lines genres = writtenGenres();
  REQUIRE(genres.size() == 149);
  for (int index = 0; index <= 255; ++index) {
    INFO(index);
    const std::string due = index < 149 ? genres[static_cast<std::size_t>(index)] : "";
    CHECK(GenreName(static_cast<std::uint8_t>(index)) == due);
  }
}

TEST_CASE("Every row is found by its name, the second of two equal ones never") {
  const Lines genres = writtenGenres();
  for (std::size_t index = 0; index < genres.size(); ++index) {
    INFO(genres[index]);
    CHECK(GenreIndexFromName(genres[index]) == (index == 40 ? 17 : index));
    CHECK(GenreIndexFromName("  " + genres[index] + " ") == (index == 40 ? 17 : index));
  }
  CHECK(GenreIndexFromName("") == 149);
}

TEST_CASE("E167: A genre is found in any case of its letters, and in no other words") {
  CHECK(GenreIndexFromName("rock") == 17);
  CHECK(GenreIndexFromName("ROCK") == 17);
  CHECK(GenreIndexFromName("gangsta RAP") == 60);
  CHECK(GenreIndexFromName("Gangsta") == 255);
  CHECK(GenreIndexFromName("Roc") == 255);
  CHECK(GenreIndexFromName("Rock\t") == 255);
}

TEST_CASE("A tag takes the last 128 bytes of its file, whatever they are, and the length stays") {
  const TempFolder folder;
  const std::string music = fakes::noise(1000, 3);
  folder.write("a.wav", music);
  WriteID3Tag(sampleTag(), folder.host("a.wav"));
  const std::string tagged = folder.read("a.wav");
  REQUIRE(tagged.size() == 1000);
  CHECK(tagged.substr(0, 872) == music.substr(0, 872));
  CHECK(tagged.substr(872) == SampleText + "\x2A");
  WriteID3Tag(sampleTag(), folder.host("a.wav"));
  CHECK(folder.read("a.wav") == tagged);
}

TEST_CASE("Other programs read what is in a tag, and from Bass on the genre one behind it") {
  const TempFolder folder;
  REQUIRE(std::system(("ffmpeg -loglevel error -f lavfi -i sine=440:duration=1 -id3v2_version 0 " + (folder / "a.mp3"))
                          .c_str()) == 0);
  std::ofstream(folder / "a.mp3", std::ios::app | std::ios::binary) << std::string(128, '\0');
  ID3Tag tag = sampleTag();
  for (const auto& [genre, told] : {std::pair("noise", "Noise"), std::pair("Bass", "Soul")}) {
    tag.Genre = GenreIndexFromName(genre);
    WriteID3Tag(tag, folder.host("a.mp3"));
    const std::string tags =
        fakes::outputOf("ffprobe -v error -show_entries format_tags -of default=nw=1 " + (folder / "a.mp3"));
    for (const std::string& line : {std::string("title=Aubade"), std::string("album=Vespertine"),
                                    std::string("date=2001"), std::string("genre=") + told})
      CHECK(tags.find("TAG:" + line + "\n") != std::string::npos);
  }
}

TEST_CASE("E162: A file of exactly 128 bytes becomes its tag") {
  const TempFolder folder;
  folder.write("a.wav", fakes::noise(128, 1));
  WriteID3Tag(sampleTag(), folder.host("a.wav"));
  CHECK(folder.read("a.wav") == SampleText + "\x2A");
}

TEST_CASE("E163: A file of fewer than 128 bytes gets no tag and keeps its content") {
  const TempFolder folder;
  for (const std::size_t length : {127U, 1U, 0U}) {
    folder.write("a.wav", fakes::noise(length, 1));
    WriteID3Tag(sampleTag(), folder.host("a.wav"));
    CHECK(folder.read("a.wav") == fakes::noise(length, 1));
  }
}

TEST_CASE("E164: A track name longer than 30 characters is cut in the tag alone") {
  Ripping machine;
  const std::string name = "A nocturne in E minor for two guitars";
  machine.know("Anna", "Evenings", {name});
  machine.read();
  machine.check({1});
  machine.extract();
  CHECK(tagOf(machine.folder.read("rips/" + name + ".wav")).first ==
        tagText("A nocturne in E minor for two ", "Anna", "Evenings"));
}

TEST_CASE("E165: A file that has gone is left behind empty, and one in a folder that is not there is not made") {
  const TempFolder folder;
  WriteID3Tag(sampleTag(), folder.host("gone.mp3"));
  CHECK(folder.has("gone.mp3"));
  CHECK(folder.read("gone.mp3").empty());
  WriteID3Tag(sampleTag(), folder.host("none/gone.mp3"));
  CHECK_FALSE(folder.has("none"));
  WriteID3Tag(sampleTag(), HostPath());
}

TEST_CASE("E166: A year of fewer than four characters is filled up with blanks, and none is four of them") {
  const TempFolder folder;
  folder.write("a.wav", std::string(200, 'x'));
  ID3Tag tag = sampleTag();
  for (const auto& [year, due] : {std::pair("85", "85  "), std::pair("", "    "), std::pair("20011", "2001")}) {
    tag.Year = year;
    WriteID3Tag(tag, folder.host("a.wav"));
    CHECK(folder.read("a.wav").substr(72 + 93, 4) == due);
  }
}

TEST_CASE("A tag has one byte for each character, and question marks for those of other alphabets") {
  const TempFolder folder;
  folder.write("a.wav", std::string(128, 'x'));
  ID3Tag tag;
  tag.Title = "\xD0\x96\xD0\xB0\xE2\x82\xAC";
  // Forty umlauts are cut to thirty.
  for (int n = 0; n < 40; ++n) tag.Artist = Trim(tag.Artist.get()) + "\xC3\xA4";
  WriteID3Tag(tag, folder.host("a.wav"));
  CHECK(folder.read("a.wav") == tagText("??\x80", std::string(30, '\xE4')) + std::string(1, '\0'));
}

TEST_CASE("E168: All tags of one rip differ in their titles alone, also those of WAV files") {
  Ripping machine;
  machine.know("Anna", "Evenings", {"One", "Two", "Three"}, "rock", "1999");
  machine.read();
  const bool mp3 = GENERATE(false, true);
  machine.extractAll([mp3](frmRipOptions& options) {
    if (mp3) options.chkMP3.click();
  });
  for (const char* title : {"One", "Two", "Three"}) {
    const std::string bytes = machine.folder.read(std::string("rips/") + title + (mp3 ? ".mp3" : ".wav"));
    CHECK(bytes.size() == 1000);
    CHECK(tagOf(bytes) == std::pair(tagText(title, "Anna", "Evenings", "1999"), 17));
  }
}

}  // namespace trackloom
