#include <unistd.h>

#include <algorithm>
#include <catch2/catch.hpp>
#include <cmath>
#include <cstdlib>
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

  // As long as ffmpeg makes of it, which plays on behind all damage, give or take one frame; and just as long in blocks
  // as it was proven to be.
  void checkEqualLength(const std::string& name) const {
    const auto expected = static_cast<std::int64_t>(decodedByFfmpeg(name).size() / 2);
    AudioFiles files;
    const auto stream = files.open(at(name));
    const auto blocks = static_cast<std::int64_t>(readAll(*stream).size() / SectorSamples);
    CHECK(blocks == stream->blocks());
    CHECK(std::abs(blocks * 588 - expected) <= 1152 + 588);
  }

  std::string encoded(const std::string& lameOptions) const {
    run("lame " + lameOptions + " source.wav encoded.mp3");
    return read("encoded.mp3");
  }
};

std::size_t xingAt(const std::string& mp3) {
  return std::min(mp3.find("Xing"), mp3.find("Info"));
}

// Where LAME's extension begins, behind a Xing header with all four of its fields.
std::size_t extensionAt(const std::string& mp3) {
  return xingAt(mp3) + 120;
}

void putNumber(std::string& bytes, std::size_t at, std::uint32_t number) {
  for (int byte = 0; byte < 4; ++byte)
    bytes[at + static_cast<std::size_t>(byte)] = static_cast<char>(number >> (24 - 8 * byte));
}

void putSkips(std::string& mp3, int delay, int padding) {
  const std::size_t skips = extensionAt(mp3) + 21;
  mp3[skips] = static_cast<char>(delay >> 4);
  mp3[skips + 1] = static_cast<char>((delay & 15) << 4 | padding >> 8);
  mp3[skips + 2] = static_cast<char>(padding & 0xFF);
}

/// Of a file of 128 kbit/s the header and the first frames, whatever the header tells of them.
std::string beginning(const std::string& mp3, int frames, std::uint32_t announced) {
  std::size_t end = 0;
  for (int frame = 0; frame <= frames; ++frame) end += 417 + (static_cast<unsigned char>(mp3[end + 2]) >> 1U & 1U);
  std::string cut = mp3.substr(0, end);
  putNumber(cut, xingAt(cut) + 8, announced);
  putNumber(cut, xingAt(cut) + 12, static_cast<std::uint32_t>(end));
  return cut;
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
  putSkips(mp3, skips.delay, skips.padding);
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

TEST_CASE_METHOD(Mp3Folder, "Frames of every bit rate are found") {
  AudioFiles files;
  for (const int rate : {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}) {
    INFO(rate);
    write("rate.mp3", encoded("--quiet -t --resample 44.1 -b " + std::to_string(rate)));
    const std::size_t frames = decodedByFfmpeg("rate.mp3").size() / 2;
    CHECK(files.open(at("rate.mp3"))->blocks() == blocksFor(frames));
  }
}

TEST_CASE_METHOD(Mp3Folder,
                 "A header that would leave nothing of the sound is not believed, and a file without sound is none") {
  const std::string mp3 = encoded("-b 128");
  std::string lying = beginning(mp3, 2, 1);
  putSkips(lying, 576, 576);
  CHECK(AudioFiles().blocks(write("lying.mp3", lying)) == blocksFor(1152));
  std::string silent = beginning(mp3, 2, 2);
  putSkips(silent, 1152, 1152);
  CHECK_FALSE(AudioFiles().blocks(write("silent.mp3", silent)));
  putSkips(silent, 1152, 1151);
  CHECK(AudioFiles().blocks(write("one.mp3", silent)) == 1);
}

TEST_CASE_METHOD(Mp3Folder, "Tags larger than 64 KiB are passed over at both ends, up to 16 in a row") {
  const std::string sound = encoded("-t -b 128");
  const std::size_t size = 80'000;
  std::string footer = apeTag().substr(apeTag().size() - 32);
  for (std::size_t byte = 0; byte < 4; ++byte) footer[12 + byte] = static_cast<char>((size + 32) >> (8 * byte));
  footer[23] = '\0';
  // Zeros behind the sound are passed over as damage, headers in them would be counted.
  const std::string ape = (sound + sound + sound).substr(0, size) + footer;
  const auto bare = AudioFiles().blocks(write("bare.mp3", sound));
  CHECK(AudioFiles().blocks(write("ape.mp3", sound + ape)) == bare);
  std::string tags;
  for (int tag = 0; tag < 16; ++tag) tags += id3v2Tag(100'000, 100'000);
  CHECK(AudioFiles().blocks(write("16.mp3", tags + sound)) == bare);
  CHECK_FALSE(AudioFiles().blocks(write("17.mp3", tags + id3v2Tag(100'000, 100'000) + sound)));
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

TEST_CASE_METHOD(Mp3Folder, "A damaged tail is passed over, and the length told again as it is") {
  std::string mp3 = encoded("-b 128");
  const std::size_t half = mp3.size() / 2;
  std::fill(mp3.begin() + static_cast<std::ptrdiff_t>(half), mp3.end(), '\0');
  const auto path = write("damaged.mp3", mp3);
  AudioFiles files;
  CHECK(files.blocks(path) == blocksFor(SourceFrames));

  checkEqualLength("damaged.mp3");
}

TEST_CASE_METHOD(Mp3Folder, "Damage in the middle costs only itself") {
  const std::string good = encoded(GENERATE(as<std::string>{}, "-b 128", "-t -b 128"));
  const std::size_t size = GENERATE(as<std::size_t>{}, 900, 9'000, 20'000);
  const char filling = GENERATE('\0', '\xFF', 'x');
  std::string mp3 = good;
  std::fill_n(mp3.begin() + static_cast<std::ptrdiff_t>(mp3.size() / 3), size, filling);
  write("damaged.mp3", mp3);
  INFO(size << " of " << static_cast<int>(filling));

  AudioFiles files;
  const Samples whole = readAll(*files.open(write("good.mp3", good)));
  const Samples damaged = readAll(*files.open(at("damaged.mp3")));
  // A frame is 144 * 128000 / 44100 = 417.96 bytes and 1152 samples.
  const double lost = static_cast<double>(size) / 417.96 * 1152;
  CHECK(std::abs(static_cast<double>(whole.size() - damaged.size()) / 2 - lost) <= 1152 + 588);
  CHECK(damaged.size() / 2 + 1152 + 588 >= decodedByFfmpeg("damaged.mp3").size() / 2);
  const auto end = [](const Samples& samples) {
    const auto last = std::find_if(samples.rbegin(), samples.rend(), [](auto sample) { return sample != 0; });
    return Samples(last.base() - 8'000, last.base());
  };
  CHECK(largestDifference(end(whole), end(damaged)) <= 2);
}

TEST_CASE_METHOD(SoundFolder, "Nine thousand zeros in the middle of a file leave what ffmpeg plays of it") {
  write("source.wav", wavBytes(bytesOf(music(400'000))));
  run("lame -b 128 source.wav good.mp3");
  std::string mp3 = read("good.mp3");
  std::fill_n(mp3.begin() + static_cast<std::ptrdiff_t>(mp3.size() / 2), 9'000, '\0');
  write("zeros.mp3", mp3);
  AudioFiles files;
  const auto blocks = files.open(at("zeros.mp3"))->blocks();
  CHECK(std::abs(blocks * 588 - static_cast<int>(decodedByFfmpeg("zeros.mp3").size() / 2)) <= 1152 + 588);
}

TEST_CASE_METHOD(Mp3Folder, "A header that lies about its frames is believed for the first look only") {
  std::string mp3 = encoded(GENERATE(as<std::string>{}, "-b 128", "-V 2"));
  const std::size_t at = xingAt(mp3) + 8;
  const auto frames =
      static_cast<std::uint32_t>(static_cast<std::uint8_t>(mp3[at + 2]) << 8 | static_cast<std::uint8_t>(mp3[at + 3]));
  const std::uint32_t lie = GENERATE_COPY(frames / 2, frames * 2, frames - 1, frames + 1);
  mp3[at + 2] = static_cast<char>(lie >> 8);
  mp3[at + 3] = static_cast<char>(lie & 0xFF);
  const auto path = write("lie.mp3", mp3);
  INFO(lie << " for " << frames);

  AudioFiles files;
  const auto told = files.find(path);
  REQUIRE(told);
  CHECK(files.provenBlocks(told->source) == blocksFor(SourceFrames));
  CHECK(files.blocks(path) == blocksFor(SourceFrames));
  CHECK(largestDifference(readAll(*files.open(path)), decodedByFfmpeg("encoded.mp3")) <= 2);
  checkEqualLength("lie.mp3");
}

TEST_CASE_METHOD(Mp3Folder, "A file whose length is proven is not walked again before it is decoded") {
  write("source.wav", wavBytes(bytesOf(music(1'000'000))));
  const std::string options = GENERATE("-b 320", "-t -b 320");
  const auto path = write("long.mp3", encoded(options));
  AudioFiles files;
  const auto source = files.find(path)->source;
  CHECK(files.provenBlocks(source) >= blocksFor(1'000'000));

  const std::size_t half = std::filesystem::file_size(path.text) / 2;
  const std::uint64_t before = bytesRead();
  const auto stream = files.open(source);
  std::vector<std::byte> sector(SectorBytes);
  CHECK(stream->read(sector) == SectorBytes);
  CHECK(bytesRead() - before < half);
}

TEST_CASE_METHOD(Mp3Folder, "What looks like another rate or number of channels is passed over") {
  const std::string good = encoded("-t -b 128");
  // MPEG-1 layer III, 128 kbit/s: at 48,000 Hz, 384 bytes a frame; in one channel, 417.
  struct Look {
    std::string header;
    std::size_t frame;
  };
  const auto look = GENERATE(as<Look>{}, Look{"\xFF\xFB\x94\x64", 384}, Look{"\xFF\xFB\x90\xC4", 417},
                             Look{"\xFF\xF3\x90\x64", 417}, Look{"\xFF\xFD\x90\x64", 417});
  std::string other;
  for (int frame = 0; frame < 3; ++frame) other += look.header + std::string(look.frame - 4, '\x11');
  // Behind a whole number of frames: 144 * 128000 / 44100 = 417.96 bytes each.
  std::size_t middle = good.size() / 2;
  while (good.substr(middle, 2) != "\xFF\xFB") ++middle;
  write("mixed.mp3", good.substr(0, middle) + other.substr(0, 900) + good.substr(middle));
  write("good.mp3", good);

  AudioFiles files;
  CHECK(files.blocks(at("mixed.mp3")) == files.blocks(at("good.mp3")));
  CHECK(readAll(*files.open(at("mixed.mp3"))).size() == readAll(*files.open(at("good.mp3"))).size());
}

TEST_CASE_METHOD(Mp3Folder, "Streams of another sample rate or channels that follow are passed over") {
  const std::string good = encoded("-t -b 128");
  const std::string other = GENERATE_COPY(as<std::string>{}, encoded("-t -m m -b 128"), encoded("-t --resample 48"));
  AudioFiles files;
  const auto alone = files.blocks(write("good.mp3", good));
  CHECK(files.blocks(write("mixed.mp3", good + other)) == alone);
  CHECK(readAll(*files.open(at("mixed.mp3"))).size() == static_cast<std::size_t>(alone.value()) * SectorSamples);
}

TEST_CASE_METHOD(Mp3Folder, "An MP3 file is known by its contents, not by its name") {
  AudioFiles files;
  const auto path = write("music.wav", encoded("-V 2"));
  CHECK(files.blocks(path) == blocksFor(SourceFrames));
  CHECK(largestDifference(readAll(*files.open(path)), decodedByFfmpeg("encoded.mp3")) <= 2);
}

}  // namespace trackloom::engines::audio
