#include "engines/encoder/LameEncoders.h"

#include <algorithm>
#include <array>
#include <catch2/catch.hpp>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "engines/ground/EngineError.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::encoder {

namespace {

constexpr int framesASector = 588;

using Sound = std::vector<std::int16_t>;

/// Two tones and a little noise, which no coder takes for silence.
Sound soundOf(int sectors) {
  Sound sound;
  std::uint32_t noise = 1;
  for (int at = 0; at < sectors * framesASector; ++at) {
    noise = noise * 1664525U + 1013904223U;
    const double rough = static_cast<double>(noise >> 22);
    sound.push_back(static_cast<std::int16_t>(9000 * std::sin(at * 0.0627) + rough));
    sound.push_back(static_cast<std::int16_t>(7000 * std::sin(at * 0.0913) - rough));
  }
  return sound;
}

std::string textOf(const std::vector<std::byte>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The whole file as a rip puts it together, fed in pieces of that many sectors.
std::string encoded(Mp3Stream& stream, std::int32_t kbps, const Sound& sound, std::size_t sectorsAtOnce = 20) {
  const auto track = stream.begin(kbps);
  std::string file;
  const std::size_t step = sectorsAtOnce * framesASector * 2;
  for (std::size_t at = 0; at < sound.size(); at += step)
    file += textOf(track->feed(std::span(sound).subspan(at, std::min(step, sound.size() - at))));
  file += textOf(track->finish());
  const std::string info = textOf(track->infoFrame());
  return info + file.substr(info.size());
}

/// What foreign decoders make of it: bytes of 16-bit stereo, gaps taken out.
std::int64_t decodedByFfmpeg(const std::string& file) {
  return std::ssize(fakes::outputOf("ffmpeg -v error -i '" + file + "' -f s16le -"));
}
std::int64_t decodedByMpg123(const std::string& file) {
  return std::ssize(fakes::outputOf("mpg123 -q --no-resync -e s16 -s '" + file + "'"));
}

/// Bare, and with the room that a rip leaves for a tag. Of two frames ffmpeg takes the second and zeros behind it for
/// one that is broken; no track of a disc is that short.
void checkLengths(const std::string& bytes, const Sound& sound) {
  const fakes::TempFolder folder;
  const std::string bare = folder.file("bare.mp3", bytes).text;
  const std::string ripped = folder.file("ripped.mp3", bytes + std::string(128, '\0')).text;
  const std::int64_t fed = std::ssize(sound) * 2;
  CHECK(decodedByFfmpeg(bare) == fed);
  CHECK(decodedByMpg123(bare) == fed);
  if (sound.size() > 2 * framesASector) CHECK(decodedByFfmpeg(ripped) == fed);
  CHECK(decodedByMpg123(ripped) == fed);
}

/// The rates in kbps that the headers of all frames say, for MPEG 1 layer III at 44.1 kHz (ISO/IEC 11172-3, 2.4.2.3).
std::vector<int> ratesOf(const std::string& file) {
  constexpr std::array<int, 15> rates{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
  std::vector<int> found;
  std::size_t at = 0;
  while (at + 4 <= file.size()) {
    const auto byte = [&](std::size_t place) { return static_cast<unsigned char>(file[at + place]); };
    REQUIRE((byte(0) == 0xFF && (byte(1) & 0xFEU) == 0xFA && (byte(2) & 0x0CU) == 0 && (byte(3) >> 6U) != 3));
    const int rate = rates.at(byte(2) >> 4U);
    if (found.empty() || found.back() != rate) found.push_back(rate);
    at += static_cast<std::size_t>(144000 * rate / 44100) + ((byte(2) >> 1U) & 1U);
  }
  CHECK(at == file.size());
  return found;
}

}  // namespace

TEST_CASE("Every rate gives a plain stream of that rate and of the whole length") {
  const auto encoder = LameEncoders().create();
  for (const std::int32_t kbps : {64, 96, 112, 128, 160, 192, 224, 256, 320}) {
    CAPTURE(kbps);
    encoder->SetBitRate(kbps);
    CHECK(encoder->Encoder().BitRate() == kbps);
    const Sound sound = soundOf(301);
    const std::string file = encoded(encoder->Encoder(), kbps, sound);
    CHECK(ratesOf(file) == std::vector<int>{kbps});
    checkLengths(file, sound);
  }
}

TEST_CASE("Any number of sectors decodes to as many frames as were fed") {
  const auto encoder = LameEncoders().create();
  for (const int sectors : {1, 2, 3, 4, 5, 7, 74, 75, 76, 1000, 9001}) {
    CAPTURE(sectors);
    const Sound sound = soundOf(sectors);
    checkLengths(encoded(encoder->Encoder(), 192, sound), sound);
  }
}

TEST_CASE("The first frame is an Info header that tells the stream's length, and no tag follows the last") {
  const auto encoder = LameEncoders().create();
  const std::string file = encoded(encoder->Encoder(), 128, soundOf(200));
  // MPEG 1 stereo: 4 bytes of header, 32 of side information.
  CHECK(file.substr(36, 4) == "Info");
  const auto number = [&](std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t place = 0; place < 4; ++place) value = value << 8U | static_cast<unsigned char>(file[at + place]);
    return value;
  };
  CHECK(number(48) == file.size());
  CHECK(file.find("TAG", file.size() - 128) == std::string::npos);
  CHECK_FALSE(file.starts_with("ID3"));
}

TEST_CASE("Tracks that are encoded at the same time are those that are encoded alone") {
  const auto encoder = LameEncoders().create();
  const std::vector<Sound> sounds{soundOf(400), soundOf(350), soundOf(300), soundOf(401)};
  std::vector<std::string> together(sounds.size());
  {
    std::vector<std::jthread> threads;
    for (std::size_t at = 0; at < sounds.size(); ++at)
      threads.emplace_back([&, at] { together[at] = encoded(encoder->Encoder(), 160, sounds[at]); });
  }
  for (std::size_t at = 0; at < sounds.size(); ++at)
    CHECK(together[at] == encoded(encoder->Encoder(), 160, sounds[at], 1));
}

TEST_CASE("The rate is 128 until it is set, as it is for a new encoder beside one that has another") {
  const auto encoder = LameEncoders().create();
  CHECK(encoder->Encoder().BitRate() == 128);
  encoder->SetBitRate(256);
  CHECK(encoder->Encoder().BitRate() == 256);
  CHECK(LameEncoders().create()->Encoder().BitRate() == 128);
}

TEST_CASE("A track outlives its encoder") {
  auto encoder = LameEncoders().create();
  const auto track = encoder->Encoder().begin(256);
  encoder.reset();
  CHECK_FALSE(track->feed(soundOf(20)).empty());
  CHECK_FALSE(track->finish().empty());
}

TEST_CASE("The encoder tells its name and version") {
  CHECK(LameEncoders().create()->Encoder().Words().starts_with("LAME 3."));
}

}  // namespace trackloom::engines::encoder
