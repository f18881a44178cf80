#include "engines/audio/Mp3Header.h"

#include <array>

namespace trackloom::engines::audio {

namespace {

constexpr std::size_t ShortestFreeFrame = 36;  // bytes of header and side information

bool framesFollow(Bytes bytes, std::size_t at, std::size_t freeSize) {
  for (int seen = 0; seen < 4; ++seen) {
    if (at > bytes.size() || bytes.size() - at < HeaderSize) return seen >= 2;
    const auto header = headerAt(bytes, at);
    const auto size = header ? header->size(freeSize) : std::nullopt;
    if (!size) return false;
    at += *size;
  }
  return true;
}

}  // namespace

std::optional<std::size_t> FrameHeader::size(std::size_t freeSize) const {
  if (isFree() != (freeSize != 0)) return std::nullopt;
  return (isFree() ? freeSize : 144'000 * kilobits / 44'100) + padding;
}

std::optional<FrameHeader> headerAt(Bytes bytes, std::size_t at) {
  constexpr std::array<std::uint16_t, 15> kilobits{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
  if (at > bytes.size() || bytes.size() - at < HeaderSize) return std::nullopt;
  const Bytes header = bytes.subspan(at, HeaderSize);
  const bool mpeg1Layer3 = header[0] == 0xFF && (header[1] & 0xFE) == 0xFA;
  const unsigned bitrateIndex = header[2] >> 4;
  const bool rate44100 = (header[2] >> 2 & 3) == 0;
  const bool mono = header[3] >> 6 == 3;
  if (!mpeg1Layer3 || bitrateIndex >= kilobits.size() || !rate44100 || mono) return std::nullopt;
  return FrameHeader{.kilobits = kilobits.at(bitrateIndex), .padding = header[2] >> 1U & 1U};
}

std::optional<std::size_t> streamBeginsAt(Bytes bytes, std::size_t at) {
  const auto header = headerAt(bytes, at);
  if (!header) return std::nullopt;
  if (!header->isFree()) return framesFollow(bytes, at, 0) ? std::optional<std::size_t>(0) : std::nullopt;
  for (std::size_t size = ShortestFreeFrame; size <= FreeFrameLimit; ++size)
    if (headerAt(bytes, at + size) && framesFollow(bytes, at, size - header->padding)) return size - header->padding;
  return std::nullopt;
}

}  // namespace trackloom::engines::audio
