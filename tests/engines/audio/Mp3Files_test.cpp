#include <unistd.h>

#include <algorithm>
#include <catch2/catch.hpp>
#include <filesystem>
#include <fstream>
#include <string>

#include "engines/audio/SoundFiles.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::audio {

namespace {

constexpr std::size_t SourceFrames = 100'003;

/// A folder in which the sound that encoders are given stands ready as source.wav.
struct Mp3Folder : SoundFolder {
  Mp3Folder() { write("source.wav", wavBytes(bytesOf(music(SourceFrames)))); }

  std::string encoded(const std::string& lameOptions) const {
    run("lame " + lameOptions + " source.wav encoded.mp3");
    return read("encoded.mp3");
  }
};

// All bytes that this process has asked the system for so far.
std::uint64_t bytesRead() {
  std::ifstream statistics("/proc/self/io");
  std::string name;
  std::uint64_t count = 0;
  statistics >> name >> count;
  return count;
}

std::size_t xingAt(const std::string& mp3) {
  return std::min(mp3.find("Xing"), mp3.find("Info"));
}

// Where LAME's extension begins, behind a Xing header with all four of its fields.
std::size_t extensionAt(const std::string& mp3) {
  return xingAt(mp3) + 120;
}

std::string apeTag() {
  const std::string item("\x04\0\0\0\0\0\0\0Title\0Long", 18);
  const auto header = [&](char flags) {
    return std::string("APETAGEX\xD0\x07\0\0\x32\0\0\0\x01\0\0\0\0\0\0", 23) + flags + std::string(8, '\0');
  };
  return header('\xA0') + item + header('\x80');
}

}  // namespace

TEST_CASE_METHOD(Mp3Folder, "An MP3 file has the length and the samples that ffmpeg finds, whatever encoder made it") {
  const std::string command = GENERATE(as<std::string>{},                                           //
                                       "lame -b 128 source.wav sound.mp3",                          //
                                       "lame -b 320 source.wav sound.mp3",                          //
                                       "lame -V 2 source.wav sound.mp3",                            //
                                       "lame -V 5 -p source.wav sound.mp3",                         //
                                       "lame --abr 160 source.wav sound.mp3",                       //
                                       "lame -m j source.wav sound.mp3",                            //
                                       "lame -m s source.wav sound.mp3",                            //
                                       "lame -m d source.wav sound.mp3",                            //
                                       "lame -t -V 2 source.wav sound.mp3",                         //
                                       "lame -t -b 192 source.wav sound.mp3",                       //
                                       "lame --tt Title --add-id3v2 source.wav sound.mp3",          //
                                       "lame --tt Title --id3v1-only source.wav sound.mp3",         //
                                       "sox source.wav sound.mp3",                                  //
                                       "ffmpeg -i source.wav -c:a libmp3lame -b:a 192k sound.mp3",  //
                                       "ffmpeg -i source.wav -c:a libmp3lame -q:a 2 sound.mp3",     //
                                       "ffmpeg -i source.wav -c:a libmp3lame -write_xing 0 sound.mp3");
  INFO(command);
  run(command);
  const Samples expected = decodedByFfmpeg("sound.mp3");

  AudioFiles files;
  CHECK(files.blocks(at("sound.mp3")) == blocksFor(expected.size() / 2));
  const auto stream = files.open(at("sound.mp3"));
  CHECK(stream->blocks() == blocksFor(expected.size() / 2));
  const Samples samples = readAll(*stream);
  CHECK(samples.size() == static_cast<std::size_t>(stream->blocks()) * SectorSamples);
  CHECK(largestDifference(samples, expected) <= 2);
}

TEST_CASE_METHOD(Mp3Folder, "Free format has the length of its source and the samples that lame decodes") {
  const std::string options = GENERATE("--freeformat -b 400", "--freeformat -b 330");
  run("lame " + options + " source.wav free.mp3 && lame --decode free.mp3 free.wav");
  const Samples expected = decodedByFfmpeg("free.wav");

  AudioFiles files;
  CHECK(files.blocks(at("free.mp3")) == blocksFor(SourceFrames));
  CHECK(largestDifference(readAll(*files.open(at("free.mp3"))), expected) <= 2);
}

TEST_CASE_METHOD(Mp3Folder, "A truncated MP3 file has the frames it still holds, whatever its header says") {
  const auto path = write("cut.mp3", encoded("-b 128").substr(0, 20'000));

  // 144 * 128000 / 44100 = 417.96 bytes a frame: 47 whole ones, the header's among them. The header's skips count no
  // more.
  CHECK(AudioFiles().blocks(path) == blocksFor(std::size_t{46} * 1152));
}

TEST_CASE_METHOD(Mp3Folder, "A seek header without the encoder's delay counts all frames but the decoder's delay") {
  std::string mp3 = encoded("-V 2");
  const std::size_t extension = extensionAt(mp3);
  std::fill_n(mp3.begin() + static_cast<std::ptrdiff_t>(extension), 36, '\0');
  const std::size_t frames = decodedByFfmpeg((write("xing.mp3", mp3), "xing.mp3")).size() / 2;

  CHECK(AudioFiles().blocks(at("xing.mp3")) == blocksFor(frames - 529));
}

TEST_CASE_METHOD(Mp3Folder, "The encoder's delay and padding are honoured to the sample") {
  struct Skips {
    int delay, padding;
  };
  const auto skips = GENERATE(as<Skips>{}, Skips{0, 0}, Skips{576, 0}, Skips{576, 528}, Skips{576, 530}, Skips{1105, 1},
                              Skips{4095, 4095});
  INFO(skips.delay << " " << skips.padding);
  std::string mp3 = encoded("-b 160");
  const std::size_t extension = extensionAt(mp3);
  mp3[extension + 21] = static_cast<char>(skips.delay >> 4);
  mp3[extension + 22] = static_cast<char>((skips.delay & 15) << 4 | skips.padding >> 8);
  mp3[extension + 23] = static_cast<char>(skips.padding & 0xFF);
  write("skips.mp3", mp3);
  const Samples expected = decodedByFfmpeg("skips.mp3");

  AudioFiles files;
  CHECK(files.blocks(at("skips.mp3")) == blocksFor(expected.size() / 2));
  CHECK(largestDifference(readAll(*files.open(at("skips.mp3"))), expected) <= 2);
}

TEST_CASE_METHOD(Mp3Folder, "A header with an impossible frame count is not believed") {
  std::string mp3 = encoded("-b 128");
  mp3[xingAt(mp3) + 8] = '\x7F';

  CHECK(AudioFiles().blocks(write("wild.mp3", mp3)).value() < 200);
}

TEST_CASE_METHOD(Mp3Folder, "Tags around the sound change nothing of its length") {
  const std::string sound = encoded("-V 4");
  const std::string id3v1 = "TAG" + std::string(125, ' ');
  const std::string lyrics = "LYRICSBEGININD0000200000021LYRICS200";
  const std::string tagged = GENERATE_COPY(as<std::string>{}, sound + id3v1, sound + apeTag() + id3v1, sound + apeTag(),
                                           sound + lyrics + id3v1, id3v2Tag(300, 300) + sound,
                                           id3v2Tag(300, 300) + id3v2Tag(20, 20) + sound + apeTag() + id3v1);

  AudioFiles files;
  CHECK(files.blocks(write("tagged.mp3", tagged)) == blocksFor(SourceFrames));
  const Samples bare = readAll(*files.open(write("bare.mp3", sound)));
  CHECK(largestDifference(readAll(*files.open(at("tagged.mp3"))), bare) == 0);
}

TEST_CASE_METHOD(Mp3Folder, "A picture of 12 MB before the sound is skipped, not read") {
  const std::string sound = GENERATE_COPY(as<std::string>{}, encoded("-V 4"), encoded("-t -b 128"));
  const auto bare = AudioFiles().blocks(write("bare.mp3", sound));
  const auto path = write("picture.mp3", id3v2Tag(12'000'000, 12'000'000) + sound);

  const std::uint64_t before = bytesRead();
  const auto blocks = AudioFiles().blocks(path);
  CHECK(bytesRead() - before < 3 * sound.size() + 200'000);
  CHECK(blocks == bare);
}

TEST_CASE_METHOD(Mp3Folder, "An ID3v2 tag that lies about its size hides nothing") {
  const std::string sound = encoded("-V 4");
  for (const std::uint32_t announced : {0U, 10U, 0x0FFF'FFFFU}) {
    INFO(announced);
    CHECK(AudioFiles().blocks(write("lying.mp3", id3v2Tag(500, announced) + sound)) == blocksFor(SourceFrames));
  }
}

TEST_CASE_METHOD(Mp3Folder, "Junk of up to 64 KiB before the first frame is passed over") {
  std::string junk;
  for (const std::int16_t sample : music(8'000, 7)) junk += static_cast<char>(sample & 0xFF);
  const std::string sound = encoded("-V 2");

  CHECK(AudioFiles().blocks(write("junk.mp3", junk + sound)) == blocksFor(SourceFrames));
  CHECK(AudioFiles().blocks(write("zeros.mp3", std::string(60'000, '\0') + sound)) == blocksFor(SourceFrames));
  CHECK_FALSE(AudioFiles().blocks(write("lost.mp3", std::string(70'000, '\0') + sound)));
}

TEST_CASE_METHOD(Mp3Folder, "Two MP3 files in a row play both") {
  const std::string bare = encoded("-t -b 128");
  write("bare.mp3", bare + bare);
  CHECK(AudioFiles().blocks(at("bare.mp3")) == blocksFor(decodedByFfmpeg("bare.mp3").size() / 2));

  // The second header plays as one silent frame; ffmpeg also plays the first file's padding, 1152 samples less at the
  // most.
  const std::string tagged = encoded("-V 2");
  write("tagged.mp3", tagged + tagged);
  AudioFiles files;
  const auto blocks = files.blocks(at("tagged.mp3"));
  CHECK(blocks.value() > blocksFor(2 * SourceFrames));
  CHECK(blocks.value() >= blocksFor(decodedByFfmpeg("tagged.mp3").size() / 2) - 2);
  CHECK(readAll(*files.open(at("tagged.mp3"))).size() == static_cast<std::size_t>(*blocks) * SectorSamples);
}

TEST_CASE_METHOD(Mp3Folder, "The shortest MP3 files play") {
  write("source.wav", wavBytes(bytesOf(music(100))));
  write("tiny.mp3", encoded("-b 128"));
  CHECK(AudioFiles().blocks(at("tiny.mp3")) == 1);
  CHECK(decodedByFfmpeg("tiny.mp3").size() / 2 == 100);

  // 144 * 128000 / 44100 = 417 bytes a frame, and one more in a frame with padding, as the second is.
  write("two.mp3", encoded("-t -b 128").substr(0, 417 + 418));
  CHECK(AudioFiles().blocks(at("two.mp3")) == blocksFor(decodedByFfmpeg("two.mp3").size() / 2));
}

TEST_CASE_METHOD(Mp3Folder, "A damaged tail plays as far as it can be decoded, and silence from there on") {
  std::string mp3 = encoded("-b 128");
  const std::size_t half = mp3.size() / 2;
  std::fill(mp3.begin() + static_cast<std::ptrdiff_t>(half), mp3.end(), '\0');
  AudioFiles files;

  const Samples samples = readAll(*files.open(write("damaged.mp3", mp3)));
  CHECK(samples.size() == SectorSamples * static_cast<std::size_t>(blocksFor(SourceFrames)));
  const auto isSound = [](std::int16_t sample) { return sample != 0; };
  CHECK(std::count_if(samples.begin(), samples.end(), isSound) > static_cast<std::ptrdiff_t>(samples.size() * 4 / 10));
  CHECK(std::none_of(samples.begin() + static_cast<std::ptrdiff_t>(samples.size() * 6 / 10), samples.end(), isSound));
}

TEST_CASE_METHOD(Mp3Folder, "A change of sample rate or channels on the way is an error with words") {
  const std::string good = encoded("-t -b 128");
  const std::string other = GENERATE_COPY(as<std::string>{}, encoded("-t -m m -b 128"), encoded("-t --resample 48"));
  AudioFiles files;
  const auto stream = files.open(write("mixed.mp3", good + other));

  CHECK_THROWS_WITH(readAll(*stream),
                    Catch::Contains("mixed.mp3") && Catch::Contains("changes to another sample rate"));
}

TEST_CASE_METHOD(Mp3Folder, "An MP3 file is known by its contents, not by its name") {
  AudioFiles files;
  const auto path = write("music.wav", encoded("-V 2"));
  CHECK(files.blocks(path) == blocksFor(SourceFrames));
  CHECK(largestDifference(readAll(*files.open(path)), decodedByFfmpeg("encoded.mp3")) <= 2);
}

}  // namespace trackloom::engines::audio
