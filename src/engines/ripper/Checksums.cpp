#include "engines/ripper/Checksums.h"

#include <zlib.h>

namespace trackloom::engines::ripper {

namespace {

constexpr std::uint64_t samplesASector = 588;
/// Drives differ in what they give of a disc's very ends.
constexpr std::uint64_t endSamples = 5 * samplesASector;
constexpr std::size_t sampleBytes = 4;

std::uint32_t littleEndian(std::span<const std::byte> bytes) {
  std::uint32_t value = 0;
  for (std::size_t at = sampleBytes; at-- > 0;) value = value << 8U | std::to_integer<std::uint32_t>(bytes[at]);
  return value;
}

}  // namespace

Checksums::Checksums(TrackPlace place, std::int32_t sectors)
    : lastCounted_(static_cast<std::uint64_t>(sectors) * samplesASector) {
  if (place.first) firstCounted_ = endSamples;
  if (place.last) lastCounted_ = lastCounted_ < endSamples ? 0 : lastCounted_ - endSamples;
}

void Checksums::add(std::span<const std::byte> sound) {
  crc_ = static_cast<std::uint32_t>(
      ::crc32(crc_, reinterpret_cast<const unsigned char*>(sound.data()), static_cast<unsigned>(sound.size())));
  for (std::size_t at = 0; at + sampleBytes <= sound.size(); at += sampleBytes) {
    if (++position_ < firstCounted_ || position_ > lastCounted_) continue;
    const std::uint64_t product = position_ * littleEndian(sound.subspan(at, sampleBytes));
    low_ += static_cast<std::uint32_t>(product);
    high_ += static_cast<std::uint32_t>(product >> 32U);
  }
}

}  // namespace trackloom::engines::ripper
