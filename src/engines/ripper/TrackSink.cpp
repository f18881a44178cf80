#include "engines/ripper/TrackSink.h"

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engines/ground/Blocks.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines::ripper {

namespace {

constexpr std::size_t tagBytes = 128;
constexpr std::int64_t wavHeaderBytes = 44;
/// The Info frame, and what the encoder adds at both ends.
constexpr std::int64_t mp3ExtraBytes = 8192;

std::string littleEndian(std::uint32_t value, int bytes) {
  std::string text;
  for (int at = 0; at < bytes; ++at) text += static_cast<char>(value >> (8 * at) & 0xFFU);
  return text;
}

std::string wavHeader(std::uint32_t soundBytes) {
  constexpr std::uint32_t rate = 44100;
  constexpr std::uint32_t sampleBytes = 4;
  return "RIFF" + littleEndian(36 + soundBytes, 4) + "WAVEfmt " + littleEndian(16, 4) + littleEndian(1, 2) +
         littleEndian(2, 2) + littleEndian(rate, 4) + littleEndian(rate * sampleBytes, 4) +
         littleEndian(sampleBytes, 2) + littleEndian(16, 2) + "data" + littleEndian(soundBytes, 4);
}

/// An encoder that fails in midst of a track spoils it.
template <class Action>
auto encoded(const Action& action) {
  try {
    return action();
  } catch (const EngineError&) {
    throw TrackFailed{status::aborted};
  }
}

std::vector<std::int16_t> samplesOf(std::span<const std::byte> sound) {
  std::vector<std::int16_t> samples(sound.size() / sizeof(std::int16_t));
  std::memcpy(samples.data(), sound.data(), samples.size() * sizeof(std::int16_t));
  return samples;
}

}  // namespace

std::int64_t roomFor(std::int32_t sectors, std::int32_t kbps) {
  const auto spare = static_cast<std::int64_t>(tagBytes);
  if (kbps == 0) return wavHeaderBytes + std::int64_t{sectors} * static_cast<std::int64_t>(audioSectorBytes) + spare;
  return std::int64_t{sectors} * kbps * 1000 / 8 / blocksASecond + mp3ExtraBytes + spare;
}

TrackSink::TrackSink(RipFile& file, std::unique_ptr<Mp3Track> encoder, std::int32_t sectors)
    : file_(file), encoder_(std::move(encoder)) {
  const auto soundBytes = static_cast<std::uint32_t>(sectors) * static_cast<std::uint32_t>(audioSectorBytes);
  const std::string header = wavHeader(soundBytes);
  if (!encoder_) file_.append(std::as_bytes(std::span(header)));
}

void TrackSink::put(std::span<const std::byte> sound) {
  if (!encoder_) return file_.append(sound);
  file_.append(encoded([&] { return encoder_->feed(samplesOf(sound)); }));
}

void TrackSink::finish() {
  if (encoder_) {
    file_.append(encoded([&] { return encoder_->finish(); }));
    file_.putAtStart(encoded([&] { return encoder_->infoFrame(); }));
  }
  file_.append(std::array<std::byte, tagBytes>{});
}

}  // namespace trackloom::engines::ripper
