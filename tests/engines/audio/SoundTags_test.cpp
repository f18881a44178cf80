#include "engines/audio/SoundTags.h"

#include <sys/stat.h>

#include <catch2/catch.hpp>

#include "engines/audio/SoundFiles.h"

namespace trackloom::engines::audio {

namespace {

std::string listed(const SoundTags& tags) {
  return tags.title + "|" + tags.artist + "|" + tags.album;
}

}  // namespace

TEST_CASE("Tags of both kinds are read as other programs wrote them") {
  const SoundFolder folder;
  folder.write("a.wav", wavBytes(bytesOf(music(44100))));
  folder.run("lame --quiet a.wav bare.mp3");
  CHECK(listed(tagsOf(folder.at("bare.mp3"))) == "||");
  folder.run("lame --quiet --id3v1-only --tt Title --ta Artist --tl Album a.wav v1.mp3");
  CHECK(listed(tagsOf(folder.at("v1.mp3"))) == "Title|Artist|Album");
  folder.run("lame --quiet --id3v2-only --tt Title --ta Artist --tl Album a.wav v2.mp3");
  CHECK(listed(tagsOf(folder.at("v2.mp3"))) == "Title|Artist|Album");
  folder.run(
      "ffmpeg -v error -i a.wav -write_id3v1 1 -metadata title='Bj\xC3\xB6rk \xE2\x99\xAA' -metadata artist=A "
      "both.mp3");
  CHECK(listed(tagsOf(folder.at("both.mp3"))) == "Bj\xC3\xB6rk \xE2\x99\xAA|A|");
  folder.run("ffmpeg -v error -i a.wav -id3v2_version 3 -metadata title='\xD0\x9C\xD0\xB8\xD1\x80' v23.mp3");
  CHECK(listed(tagsOf(folder.at("v23.mp3"))) == "\xD0\x9C\xD0\xB8\xD1\x80||");
}

TEST_CASE("An old tag fills what the new one leaves out, in Windows-1252 where it is no UTF-8") {
  const SoundFolder folder;
  folder.write("a.wav", wavBytes(bytesOf(music(44100))));
  folder.run("lame --quiet --id3v2-only --tt New a.wav a.mp3");
  const auto field = [](std::string text) { return text + std::string(30 - text.size(), ' '); };
  const std::string old = "TAG" + field("Old") +
                          field(
                              "Bj\xF6rk \x93"
                              "a\x94") +
                          field(std::string("Al\0bum", 6)) + "1999" + field("") + "\x01";
  folder.write("both.mp3", folder.read("a.mp3") + old);
  CHECK(listed(tagsOf(folder.at("both.mp3"))) ==
        "New|Bj\xC3\xB6rk \xE2\x80\x9C"
        "a\xE2\x80\x9D|Al");
}

TEST_CASE("What is no MP3 file, or cannot be read, has no tags") {
  const SoundFolder folder;
  folder.write("a.wav", wavBytes(bytesOf(music(44100))) + "TAG" + std::string(125, 'x'));
  CHECK(listed(tagsOf(folder.at("a.wav"))) == "||");
  folder.write("empty.mp3", "");
  CHECK(listed(tagsOf(folder.at("empty.mp3"))) == "||");
  folder.write("noise.mp3", bytesOf(music(5000, 3)));
  CHECK(listed(tagsOf(folder.at("noise.mp3"))) == "||");
  CHECK(listed(tagsOf(folder.at("gone.mp3"))) == "||");
  REQUIRE(::mkfifo(folder.at("pipe.mp3").text.c_str(), 0600) == 0);
  CHECK(listed(tagsOf(folder.at("pipe.mp3"))) == "||");
}

}  // namespace trackloom::engines::audio
