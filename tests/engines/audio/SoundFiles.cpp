#include "engines/audio/SoundFiles.h"

#include <catch2/catch.hpp>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <random>

#include "fakes/TestFiles.h"

namespace trackloom::engines::audio {

namespace {

std::string littleEndian(std::uint32_t value, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
  return bytes;
}

Samples samplesOf(const std::string& bytes) {
  Samples samples(bytes.size() / 2);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const auto low = static_cast<std::uint8_t>(bytes[2 * i]);
    const auto high = static_cast<std::uint8_t>(bytes[2 * i + 1]);
    samples[i] = static_cast<std::int16_t>(high << 8 | low);
  }
  return samples;
}

}  // namespace

Samples music(std::size_t frames, unsigned seed) {
  std::mt19937 random(seed);
  Samples samples;
  samples.reserve(2 * frames);
  for (std::size_t i = 0; i < frames; ++i) {
    const double time = static_cast<double>(i) / 44100 * 2 * std::numbers::pi;
    const double noise = static_cast<double>(random() % 4001) - 2000;
    samples.push_back(static_cast<std::int16_t>(9000 * std::sin(440 * time) + noise));
    samples.push_back(static_cast<std::int16_t>(7000 * std::sin(1234 * time) + noise / 2));
  }
  return samples;
}

std::string bytesOf(const Samples& samples) {
  std::string bytes;
  bytes.reserve(2 * samples.size());
  for (const std::int16_t sample : samples) {
    bytes += static_cast<char>(sample & 0xFF);
    bytes += static_cast<char>(sample >> 8);
  }
  return bytes;
}

std::string wavBytes(const std::string& body, const WavHeader& header) {
  const auto frameSize = static_cast<std::uint32_t>(header.channels * header.bits / 8);
  const auto bodySize = static_cast<std::uint32_t>(body.size());
  return header.magic + littleEndian(header.riffSize.value_or(36 + bodySize), 4) + "WAVEfmt " + littleEndian(16, 4) +
         littleEndian(header.tag, 2) + littleEndian(header.channels, 2) + littleEndian(header.rate, 4) +
         littleEndian(header.rate * frameSize, 4) + littleEndian(frameSize, 2) + littleEndian(header.bits, 2) + "data" +
         littleEndian(header.dataSize.value_or(bodySize), 4) + body;
}

std::string id3v2Tag(std::uint32_t payload, std::uint32_t announced) {
  std::string tag("ID3\x04\x00\x00", 6);
  for (const int shift : {21, 14, 7, 0}) tag += static_cast<char>(announced >> shift & 0x7F);
  return tag + std::string(payload, '\0');
}

SoundFolder::SoundFolder() : path_(std::filesystem::temp_directory_path() / "trackloom-sound-XXXXXX") {
  REQUIRE(mkdtemp(path_.data()) != nullptr);
}

SoundFolder::~SoundFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

HostPath SoundFolder::write(const std::string& name, const std::string& bytes) const {
  std::ofstream(at(name).text, std::ios::binary) << bytes;
  return at(name);
}

std::string SoundFolder::read(const std::string& name) const {
  return fakes::contentOf(at(name).text);
}

void SoundFolder::run(const std::string& command) const {
  INFO(command);
  REQUIRE(std::system(("cd '" + path_ + "' && { " + command + "; } > /dev/null 2>&1").c_str()) == 0);
}

Samples SoundFolder::decodedByFfmpeg(const std::string& name) const {
  run("ffmpeg -nostdin -y -i '" + name + "' -f s16le decoded.raw");
  return samplesOf(read("decoded.raw"));
}

std::uint64_t bytesRead() {
  std::ifstream statistics("/proc/self/io");
  std::string name;
  std::uint64_t count = 0;
  statistics >> name >> count;
  return count;
}

std::int32_t blocksFor(std::size_t frames) {
  return static_cast<std::int32_t>((frames + 587) / 588);
}

Samples readAll(AudioStream& stream) {
  std::string bytes;
  std::vector<std::byte> portion(SectorBytes * 7 + 100);
  while (const std::size_t got = stream.read(portion)) bytes.append(reinterpret_cast<const char*>(portion.data()), got);
  return samplesOf(bytes);
}

int largestDifference(const Samples& left, const Samples& right) {
  int largest = 0;
  for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
    const int one = i < left.size() ? left[i] : 0;
    const int other = i < right.size() ? right[i] : 0;
    largest = std::max(largest, std::abs(one - other));
  }
  return largest;
}

}  // namespace trackloom::engines::audio
