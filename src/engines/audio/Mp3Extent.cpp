#include "engines/audio/Mp3Extent.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace trackloom::engines::audio {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::int64_t SamplesPerFrame = 1152;
constexpr std::int64_t DecoderDelay = 529;        // samples that every layer III decoder is late
constexpr std::size_t JunkLimit = 65'536;         // bytes before the first frame
constexpr std::size_t FreeFrameLimit = 3456;      // bytes; the longest that libmpg123 reads
constexpr int TagLimit = 16;                      // at either end; real files have up to three
constexpr std::size_t HeaderSize = 4;             // bytes
constexpr std::size_t FrameAndSideInfoSize = 36;  // bytes; side information takes 32 in two channels

bool startsWith(Bytes bytes, std::string_view magic) {
  return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin(),
                                                    [](char a, auto b) { return static_cast<std::uint8_t>(a) == b; });
}

std::uint32_t bigEndian32(Bytes bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

/// A frame's header, as far as it tells the frame's length.
struct FrameHeader {
  std::size_t kilobits = 0;  ///< per second; 0 is free format
  std::size_t padding = 0;   ///< bytes, 0 or 1

  bool isFree() const { return kilobits == 0; }
  std::size_t size() const { return 144'000 * kilobits / 44'100 + padding; }
};

// Only what the disc can take counts as a frame, so that a stream of another kind is no stream at all.
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

// Four headers in a row, each where the one before says, are proof; two are enough where the sound ends behind them.
// `freeSize` is the length of a free-format frame without padding.
bool framesFollow(Bytes bytes, std::size_t at, std::size_t freeSize) {
  const bool isFree = freeSize != 0;
  for (int seen = 0; seen < 4; ++seen) {
    if (at > bytes.size() || bytes.size() - at < HeaderSize) return seen >= 2;
    const auto header = headerAt(bytes, at);
    if (!header || header->isFree() != isFree) return false;
    at += isFree ? freeSize + header->padding : header->size();
  }
  return true;
}

bool isFirstFrame(Bytes bytes, std::size_t at) {
  const auto header = headerAt(bytes, at);
  if (!header) return false;
  if (!header->isFree()) return framesFollow(bytes, at, 0);
  for (std::size_t size = FrameAndSideInfoSize; size <= FreeFrameLimit; ++size)
    if (headerAt(bytes, at + size) && framesFollow(bytes, at, size - header->padding)) return true;
  return false;
}

std::vector<std::uint8_t> readRange(const OpenedFile& file, std::int64_t begin, std::int64_t end, std::int64_t limit) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(end - begin, limit)));
  bytes.resize(file.readAt(begin, bytes));
  return bytes;
}

std::optional<std::int64_t> firstFrame(const OpenedFile& file, std::int64_t begin, std::int64_t end) {
  const auto bytes = readRange(file, begin, end, std::int64_t{JunkLimit + 4 * FreeFrameLimit});
  for (std::size_t at = 0; at < std::min(bytes.size(), JunkLimit); ++at)
    if (bytes[at] == 0xFF && isFirstFrame(bytes, at)) return begin + static_cast<std::int64_t>(at);
  return std::nullopt;
}

// ID3v2.4 structure, 3.1: ten bytes with the size in four times seven bits. A size beyond the file is a lie, and what
// looked like a tag is then only something to search behind.
std::int64_t behindLeadingTags(const OpenedFile& file, std::int64_t end) {
  constexpr std::uint8_t hasFooter = 0x10;
  std::int64_t begin = 0;
  std::array<std::uint8_t, 10> tag{};
  for (int tags = 0; tags < TagLimit; ++tags) {
    if (file.readAt(begin, tag) < tag.size() || !startsWith(tag, "ID3")) break;
    std::int64_t size = (tag[5] & hasFooter) != 0 ? 20 : 10;
    size += (tag[6] & 0x7F) << 21 | (tag[7] & 0x7F) << 14 | (tag[8] & 0x7F) << 7 | (tag[9] & 0x7F);
    if (size > end - begin) break;
    begin += size;
  }
  return begin;
}

// The length of the tag that ends where `tail`, at most the last 128 bytes, ends; 0: there is none. ID3v1 is a block of
// fixed size, APE and Lyrics3 end in their own length.
std::int64_t trailingTagSize(Bytes tail) {
  constexpr std::size_t apeFooter = 32, lyricsFooter = 15;
  if (tail.size() == 128 && startsWith(tail, "TAG")) return 128;
  if (tail.size() >= apeFooter) {
    const Bytes footer = tail.last(apeFooter);
    const std::int64_t size = footer[12] | footer[13] << 8 | footer[14] << 16 | std::int64_t{footer[15]} << 24;
    if (startsWith(footer, "APETAGEX")) return size + ((footer[23] & 0x80) != 0 ? 32 : 0);
  }
  if (tail.size() < lyricsFooter || !startsWith(tail.last(lyricsFooter).subspan(6), "LYRICS200")) return 0;
  std::int64_t size = lyricsFooter;
  std::int64_t digits = 0;
  for (const std::uint8_t digit : tail.last(lyricsFooter).first(6)) digits = digits * 10 + (digit - '0');
  return digits < 0 ? 0 : size + digits;
}

std::int64_t beforeTrailingTags(const OpenedFile& file) {
  std::int64_t end = file.size();
  std::array<std::uint8_t, 128> buffer{};
  for (int tags = 0; tags < TagLimit; ++tags) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(end, buffer.size()));
    const std::size_t got = file.readAt(end - static_cast<std::int64_t>(wanted), std::span(buffer).first(wanted));
    const std::int64_t size = trailingTagSize(std::span(buffer).first(got));
    if (size <= 0 || size > end) break;
    end -= size;
  }
  return end;
}

/// The Xing header, which stands in place of the first frame's sound, with LAME's extension.
struct XingHeader {
  std::int64_t frames = 0;   ///< MPEG frames behind this one
  std::int64_t bytes = 0;    ///< of the stream, this frame included
  std::int64_t delay = 0;    ///< samples that the encoder put before the sound
  std::int64_t padding = 0;  ///< samples that the encoder put behind it
};

// Where the side information is not all zero, the frame is one of sound. libmpg123 asks for 120 bytes of header.
std::optional<Bytes> xingBytes(Bytes stream) {
  const auto header = headerAt(stream, 0);
  if (!header || header->size() < FrameAndSideInfoSize + 120 || stream.size() < header->size()) return std::nullopt;
  const Bytes frame = stream.first(header->size());
  const Bytes sideInfo = frame.first(FrameAndSideInfoSize).subspan(HeaderSize + 2);
  const Bytes xing = frame.subspan(FrameAndSideInfoSize);
  const bool silent = std::all_of(sideInfo.begin(), sideInfo.end(), [](std::uint8_t byte) { return byte == 0; });
  if (!silent || !(startsWith(xing, "Xing") || startsWith(xing, "Info"))) return std::nullopt;
  return xing;
}

// Nothing also where one of the fields is missing.
std::optional<XingHeader> xingHeaderIn(Bytes stream) {
  constexpr std::uint32_t framesAndBytes = 3, seekTable = 4, quality = 8;
  const auto xing = xingBytes(stream);
  if (!xing) return std::nullopt;
  const std::uint32_t flags = bigEndian32(xing->subspan(4));
  const std::size_t lame = 16U + ((flags & seekTable) != 0 ? 100U : 0U) + ((flags & quality) != 0 ? 4U : 0U);
  if ((flags & framesAndBytes) != framesAndBytes || xing->size() < lame + 24 || (*xing)[lame] == 0) return std::nullopt;
  const Bytes skips = xing->subspan(lame + 21, 3);
  return XingHeader{.frames = bigEndian32(xing->subspan(8)),
                    .bytes = bigEndian32(xing->subspan(12)),
                    .delay = skips[0] << 4 | skips[1] >> 4,
                    .padding = (skips[1] & 0x0F) << 8 | skips[2]};
}

// Believed only where the byte count is the length of the very stream at hand and the frame count is possible in it, so
// neither a cut nor a joined file is. libmpg123 drops the decoder's delay at the start as well, and gives it back at
// the end as far as there is padding.
std::optional<std::int64_t> announcedFrames(Bytes stream, std::int64_t streamSize) {
  constexpr std::int64_t shortestFrame = 104, longestFrame = 1045;  // bytes, at 32 and at 320 kbit/s
  const auto header = xingHeaderIn(stream);
  if (!header || header->bytes != streamSize) return std::nullopt;
  if (header->frames * shortestFrame > streamSize || (header->frames + 1) * longestFrame < streamSize)
    return std::nullopt;
  const std::int64_t dropped = header->delay + DecoderDelay + std::max<std::int64_t>(0, header->padding - DecoderDelay);
  const std::int64_t sound = header->frames * SamplesPerFrame - dropped;
  if (sound <= 0) return std::nullopt;
  return sound;
}

}  // namespace

std::optional<Mp3Extent> findMp3(const OpenedFile& file) {
  constexpr std::int64_t firstLook = 2048;  // holds the largest frame that a header can lie in
  const std::int64_t end = beforeTrailingTags(file);
  const std::int64_t begin = behindLeadingTags(file, end);
  if (begin >= end) return std::nullopt;
  if (const auto frames = announcedFrames(readRange(file, begin, end, firstLook), end - begin))
    return Mp3Extent{.begin = begin, .end = end, .announcedFrames = frames};
  const auto first = firstFrame(file, begin, end);
  if (!first) return std::nullopt;
  return Mp3Extent{.begin = *first, .end = end, .announcedFrames = {}};
}

}  // namespace trackloom::engines::audio
