#include "engines/ripper/FullContents.h"

#include <algorithm>
#include <map>

namespace trackloom::engines::ripper {

namespace {

constexpr std::size_t headerBytes = 4;
constexpr std::size_t entryBytes = 11;
constexpr std::uint8_t lastTrack = 99;
constexpr std::uint8_t leadOutPoint = 0xA2;
constexpr std::uint8_t dataBit = 0x04;
constexpr std::uint8_t emphasisBit = 0x01;
constexpr std::int32_t leadIn = 150;

struct Entry {
  std::uint8_t session = 0;
  std::uint8_t control = 0;
  std::uint8_t point = 0;
  std::int32_t start = 0;
};

Entry entryFrom(std::span<const std::uint8_t> bytes) {
  const std::int32_t frames = (bytes[8] * 60 + bytes[9]) * blocksASecond + bytes[10];
  return {bytes[0], static_cast<std::uint8_t>(bytes[1] & 0x0FU), bytes[3], frames - leadIn};
}

ContentsTrack trackFrom(const Entry& entry) {
  const bool data = (entry.control & dataBit) != 0;
  return {data ? DataBlocks : AudioBlocks, entry.start, 0, entry.session, !data && (entry.control & emphasisBit) != 0};
}

/// Each track ends where the next one of its session begins, the last one at the session's lead-out.
bool setLengths(std::vector<ContentsTrack>& tracks, const std::map<std::int16_t, std::int32_t>& leadOuts) {
  for (std::size_t at = 0; at < tracks.size(); ++at) {
    ContentsTrack& track = tracks[at];
    const bool goesOn = at + 1 < tracks.size() && tracks[at + 1].session == track.session;
    const auto leadOut = leadOuts.find(track.session);
    if (!goesOn && leadOut == leadOuts.end()) return false;
    track.length = (goesOn ? tracks[at + 1].start : leadOut->second) - track.start;
    if (track.start < 0 || track.length <= 0) return false;
  }
  return true;
}

}  // namespace

std::optional<DiscContents> contentsFrom(std::span<const std::uint8_t> fullToc) {
  std::map<std::uint8_t, ContentsTrack> byNumber;
  std::map<std::int16_t, std::int32_t> leadOuts;
  for (std::size_t at = headerBytes; at + entryBytes <= fullToc.size(); at += entryBytes) {
    const Entry entry = entryFrom(fullToc.subspan(at, entryBytes));
    if (entry.point >= 1 && entry.point <= lastTrack) byNumber[entry.point] = trackFrom(entry);
    if (entry.point == leadOutPoint) leadOuts[entry.session] = entry.start;
  }
  DiscContents contents;
  for (const auto& [number, track] : byNumber) contents.tracks.push_back(track);
  if (contents.tracks.empty() || !setLengths(contents.tracks, leadOuts)) return std::nullopt;
  contents.leadOut = leadOuts.rbegin()->second;
  return contents;
}

}  // namespace trackloom::engines::ripper
