#include "engines/audio/Mp3Extent.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "engines/audio/Mp3Header.h"

namespace trackloom::engines::audio {

namespace {

constexpr std::int64_t DecoderDelay = 529;        // samples that every layer III decoder is late
constexpr std::size_t JunkLimit = 65'536;         // bytes before the first frame
constexpr int TagLimit = 16;                      // at either end; real files have up to three
constexpr std::size_t FrameAndSideInfoSize = 36;  // bytes; side information takes 32 in two channels

bool startsWith(Bytes bytes, std::string_view magic) {
  return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin(),
                                                    [](char a, auto b) { return static_cast<std::uint8_t>(a) == b; });
}

std::uint32_t bigEndian32(Bytes bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

std::vector<std::uint8_t> readRange(const SourceFile& file, std::int64_t begin, std::int64_t end, std::int64_t limit) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(end - begin, limit)));
  bytes.resize(file.readAt(begin, bytes));
  return bytes;
}

/// The first frame of a stream, which may be one of a header in place of sound.
struct FirstFrame {
  std::int64_t at = 0;       ///< bytes from the file's start
  std::size_t freeSize = 0;  ///< bytes
};

std::optional<FirstFrame> firstFrame(const SourceFile& file, std::int64_t begin, std::int64_t end) {
  const auto bytes = readRange(file, begin, end, std::int64_t{JunkLimit + 4 * FreeFrameLimit});
  for (std::size_t at = 0; at < std::min(bytes.size(), JunkLimit); ++at) {
    if (bytes[at] != 0xFF) continue;
    if (const auto freeSize = streamBeginsAt(bytes, at))
      return FirstFrame{.at = begin + static_cast<std::int64_t>(at), .freeSize = *freeSize};
  }
  return std::nullopt;
}

// ID3v2.4 structure, 3.1: ten bytes with the size in four times seven bits. A size beyond the file is a lie, and what
// looked like a tag is then only something to search behind.
std::int64_t behindLeadingTags(const SourceFile& file, std::int64_t end) {
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

std::int64_t beforeTrailingTags(const SourceFile& file) {
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
  std::int64_t size = 0;               ///< bytes of the frame that it stands in
  std::optional<std::int64_t> frames;  ///< MPEG frames behind this one
  std::optional<std::int64_t> bytes;   ///< of the stream, this frame included
  bool extended = false;               ///< the encoder tells of the samples that it added
  std::int64_t delay = 0;              ///< samples that it put before the sound
  std::int64_t padding = 0;            ///< samples that it put behind the sound
};

// The bytes from "Xing" on. Where the side information is not all zero, the frame is one of sound.
std::optional<Bytes> xingBytes(Bytes stream, std::size_t freeSize) {
  const auto header = headerAt(stream, 0);
  const auto size = header ? header->size(freeSize) : std::nullopt;
  if (!size || *size < FrameAndSideInfoSize + 120 || stream.size() < *size) return std::nullopt;
  const Bytes frame = stream.first(*size);
  const Bytes sideInfo = frame.first(FrameAndSideInfoSize).subspan(HeaderSize + 2);
  const Bytes xing = frame.subspan(FrameAndSideInfoSize);
  const bool silent = std::all_of(sideInfo.begin(), sideInfo.end(), [](std::uint8_t byte) { return byte == 0; });
  if (!silent || !(startsWith(xing, "Xing") || startsWith(xing, "Info"))) return std::nullopt;
  return xing;
}

std::optional<XingHeader> xingHeaderIn(Bytes stream, std::size_t freeSize) {
  constexpr std::uint32_t hasFrames = 1, hasBytes = 2, hasSeekTable = 4, hasQuality = 8;
  const auto xing = xingBytes(stream, freeSize);
  if (!xing) return std::nullopt;
  const std::uint32_t flags = bigEndian32(xing->subspan(4));
  XingHeader header;
  header.size = static_cast<std::int64_t>(FrameAndSideInfoSize + xing->size());
  std::size_t at = 8;
  const auto field = [&](std::uint32_t flag, std::size_t size) {
    if ((flags & flag) == 0) return std::optional<std::int64_t>();
    at += size;
    return std::optional<std::int64_t>(bigEndian32(xing->subspan(at - size)));
  };
  header.frames = field(hasFrames, 4);
  header.bytes = field(hasBytes, 4);
  field(hasSeekTable, 100);
  field(hasQuality, 4);
  if (xing->size() < at + 24 || (*xing)[at] == 0) return header;
  const Bytes skips = xing->subspan(at + 21, 3);
  header.extended = true;
  header.delay = skips[0] << 4 | skips[1] >> 4;
  header.padding = (skips[1] & 0x0F) << 8 | skips[2];
  return header;
}

bool isPossible(std::int64_t frames, std::int64_t streamSize) {
  constexpr std::int64_t shortestFrame = 104, longestFrame = 1045;  // bytes, at 32 and at 320 kbit/s
  return frames * shortestFrame <= streamSize && (frames + 1) * longestFrame >= streamSize;
}

// Believed only where the byte count is the length of the very stream at hand, so neither a cut nor a joined file is.
// The decoder's delay goes at the start as well, and comes back at the end as far as there is padding.
void believe(const XingHeader& header, std::int64_t streamSize, Mp3Extent& extent) {
  if (header.bytes != streamSize) return;
  extent.before = header.delay + DecoderDelay;
  extent.behind = std::max<std::int64_t>(0, header.padding - DecoderDelay);
  if (!header.extended || !header.frames || !isPossible(*header.frames, streamSize)) return;
  if (extent.soundIn(*header.frames) > 0) extent.announced = header.frames;
}

Mp3Extent extentFrom(const SourceFile& file, const FirstFrame& first, std::int64_t end) {
  Mp3Extent extent{.begin = first.at, .end = end, .freeSize = first.freeSize, .announced = {}};
  const auto header = xingHeaderIn(readRange(file, first.at, end, FreeFrameLimit + 1), first.freeSize);
  if (!header) return extent;
  extent.begin += header->size;
  believe(*header, end - first.at, extent);
  return extent;
}

}  // namespace

std::int64_t Mp3Extent::soundIn(std::int64_t frames) const {
  return frames * SamplesPerFrame - before - behind;
}

std::optional<Mp3Extent> findMp3(const SourceFile& file) {
  const std::int64_t end = beforeTrailingTags(file);
  const std::int64_t begin = behindLeadingTags(file, end);
  if (begin >= end) return std::nullopt;
  if (const Mp3Extent extent = extentFrom(file, {.at = begin}, end); extent.announced) return extent;
  const auto first = firstFrame(file, begin, end);
  if (!first) return std::nullopt;
  return extentFrom(file, *first, end);
}

}  // namespace trackloom::engines::audio
