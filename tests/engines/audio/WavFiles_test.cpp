#include <unistd.h>

#include <catch2/catch.hpp>
#include <cmath>
#include <cstring>
#include <limits>

#include "engines/audio/SoundFiles.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::audio {

namespace {

std::string floatBytes(const std::vector<float>& values) {
  std::string bytes(values.size() * sizeof(float), '\0');
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

// Samples of every loudness up to both ends of the scale.
Samples loudMusic(std::size_t frames) {
  Samples samples = music(frames);
  for (std::size_t i = 0; i < samples.size(); i += 3) samples[i] = static_cast<std::int16_t>(samples[i] * 7919);
  samples[0] = std::numeric_limits<std::int16_t>::min();
  samples[1] = std::numeric_limits<std::int16_t>::max();
  return samples;
}

}  // namespace

TEST_CASE_METHOD(SoundFolder, "A 16-bit WAV file reaches the disc bit for bit, its last block filled up with silence") {
  const std::size_t frames = GENERATE(1, 587, 588, 589, 44'100);
  const Samples expected = loudMusic(frames);
  AudioFiles files;
  const auto path = write("sound.wav", wavBytes(bytesOf(expected)));

  const auto stream = files.open(path);
  CHECK(stream->blocks() == blocksFor(frames));
  const Samples samples = readAll(*stream);
  CHECK(samples.size() == static_cast<std::size_t>(stream->blocks()) * SectorSamples);
  CHECK(largestDifference(samples, expected) == 0);
}

TEST_CASE_METHOD(SoundFolder, "A stream fills whole sectors only, and gives nothing when it is over") {
  AudioFiles files;
  const auto stream = files.open(write("sound.wav", wavBytes(bytesOf(music(2'940)))));
  std::vector<std::byte> buffer(SectorBytes * 3 + 2351);

  CHECK(stream->read(buffer) == SectorBytes * 3);
  CHECK(stream->read(buffer) == SectorBytes * 2);
  CHECK(stream->read(buffer) == 0);
  CHECK(stream->read(buffer) == 0);
}

TEST_CASE_METHOD(SoundFolder, "Wider samples are rounded to 16 bits as sox does without dither") {
  const std::string encoding = GENERATE("-b 24", "-b 32", "-e floating-point -b 32");
  INFO(encoding);
  write("source.wav", wavBytes(bytesOf(loudMusic(30'000))));
  run("sox -D source.wav " + encoding + " wide.wav vol 0.77");
  run("sox -D wide.wav -b 16 expected.wav");
  AudioFiles files;

  CHECK(files.blocks(at("wide.wav")) == blocksFor(30'000));
  CHECK(largestDifference(readAll(*files.open(at("wide.wav"))), decodedByFfmpeg("expected.wav")) == 0);
}

TEST_CASE_METHOD(SoundFolder, "Float samples beyond full scale are clipped, and no number at all is silence") {
  const float infinite = std::numeric_limits<float>::infinity();
  const std::vector<float> values{
      1.0F, -1.0F, 1.5F, -7.0F, 0.5F, -0.5F, 1e30F, infinite, -infinite, std::nanf(""), 32766.6F / 32768, 0.4F / 32768};
  AudioFiles files;
  Samples samples = readAll(*files.open(write("float.wav", wavBytes(floatBytes(values), {.tag = 3, .bits = 32}))));

  samples.resize(values.size());
  CHECK(samples == Samples{32767, -32768, 32767, -32768, 16384, -16384, 32767, 32767, -32768, 0, 32767, 0});
}

TEST_CASE_METHOD(SoundFolder, "24-bit samples round to the nearest and never over the top") {
  // -1, 127 and 128 of 256 steps, the largest, the smallest, and 1.5 steps of 16 bits.
  const std::string body(
      "\xFF\xFF\xFF"
      "\x7F\x00\x00"
      "\x80\x00\x00"
      "\xFF\xFF\x7F"
      "\x00\x00\x80"
      "\x80\x01\x00",
      18);
  AudioFiles files;
  Samples samples = readAll(*files.open(write("deep.wav", wavBytes(body, {.bits = 24}))));

  samples.resize(6);
  CHECK(samples == Samples{0, 0, 1, 32767, -32768, 2});
}

TEST_CASE_METHOD(SoundFolder, "A WAV file that was cut short has the frames it really holds") {
  const std::string wav = wavBytes(bytesOf(music(10'000)));
  write("cut.wav", wav.substr(0, 44 + 4 * 7'500 + 3));
  AudioFiles files;

  CHECK(files.blocks(at("cut.wav")) == blocksFor(7'500));
  CHECK(largestDifference(readAll(*files.open(at("cut.wav"))), decodedByFfmpeg("cut.wav")) == 0);
}

TEST_CASE_METHOD(SoundFolder, "A streamed WAV file with sizes that were never filled in plays to its end") {
  struct Sizes {
    std::uint32_t riff, data;
  };
  const auto sizes = GENERATE(as<Sizes>{}, Sizes{0xFFFF'FFFF, 0xFFFF'FFFF}, Sizes{0x7FFF'FFFF, 0x7FFF'FFDB},
                              Sizes{8, 0}, Sizes{0, 20'000});
  write("streamed.wav", wavBytes(bytesOf(music(5'000)), {.riffSize = sizes.riff, .dataSize = sizes.data}));

  CHECK(AudioFiles().blocks(at("streamed.wav")) == blocksFor(decodedByFfmpeg("streamed.wav").size() / 2));
}

TEST_CASE_METHOD(SoundFolder, "A WAV file whose header says that it holds nothing is refused") {
  CHECK_FALSE(AudioFiles().blocks(write("nothing.wav", wavBytes(bytesOf(music(500)), {.dataSize = 0}))));
  CHECK_FALSE(AudioFiles().blocks(write("empty.wav", wavBytes(""))));
}

TEST_CASE_METHOD(SoundFolder, "A WAV file is known by its contents, not by its name") {
  CHECK(AudioFiles().blocks(write("sound.mp3", wavBytes(bytesOf(music(5'000))))) == blocksFor(5'000));
}

TEST_CASE_METHOD(SoundFolder, "A WAV file that shrinks while it is read is an error with words") {
  AudioFiles files;
  const auto stream = files.open(write("shrinking.wav", wavBytes(bytesOf(music(200'000)))));
  std::vector<std::byte> sector(SectorBytes);
  CHECK(stream->read(sector) == sector.size());
  REQUIRE(truncate(at("shrinking.wav").text.c_str(), 100'000) == 0);

  CHECK_THROWS_WITH(readAll(*stream),
                    Catch::Contains("shrinking.wav") && Catch::Contains("changed while it was being recorded"));
}

}  // namespace trackloom::engines::audio
