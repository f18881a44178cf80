#include "CueSheet.h"

#include <algorithm>

#include "Address.h"
#include "Sense.h"

namespace emulated {

namespace {

constexpr std::size_t entryBytes = 8;
constexpr std::uint8_t leadOutNumber = 0xAA;
constexpr std::uint8_t positionEntry = 1;

bool isPosition(View entry) {
  return (entry[0] & 0x0FU) == positionEntry;
}

/// MMC-3, tables 350 to 353: what the host sends of a block, in the low six bits of the data form.
CueSegment segmentFrom(View entry) {
  CueSegment segment;
  segment.begin = blockOf(msfAt(entry, 5));
  segment.track = entry[1];
  segment.index = entry[2];
  segment.control = entry[0] >> 4U;
  const std::uint32_t form = entry[3] & 0x3FU;
  require(form == 0x00 || form == 0x01 || form == 0x10 || form == 0x14, sense::badParameter);
  require((entry[3] & 0xC0U) == 0, sense::badParameter);
  segment.kind = form < 0x10 ? Kind::Audio : Kind::Mode1;
  segment.fromHost = form == 0x00 || form == 0x10;
  require((segment.control & 4U) == (segment.kind == Kind::Audio ? 0U : 4U), sense::badParameter);
  return segment;
}

void requireOrder(const CueSheet& sheet, const Disc& disc) {
  std::int32_t number = disc.nextTrackNumber() - 1;
  for (const CueSegment& segment : sheet.segments) {
    require(segment.end > segment.begin, sense::badParameter);
    require(segment.track == number || segment.track == number + 1, sense::badParameter);
    number = segment.track;
  }
  require(number <= 99, sense::noMoreTracks);
}

void requirePlace(const CueSheet& sheet, const Disc& disc) {
  require(sheet.begin() == disc.nextStart() - pregapBlocks, sense::badParameter);
  require(sheet.leadOut <= disc.capacity, sense::badParameter);
}

/// Counted as players see it, with the pause before the next track.
void requireLengths(const CueSheet& sheet, std::int32_t shortest) {
  const std::vector<Track> tracks = sheet.tracks();
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    const std::int32_t end = i + 1 < tracks.size() ? tracks[i + 1].start : sheet.leadOut;
    require(end - tracks[i].start >= shortest, sense::badParameter);
  }
}

}  // namespace

const CueSegment* CueSheet::segmentAt(std::int32_t block) const {
  const auto found = std::ranges::find_if(
      segments, [&](const CueSegment& segment) { return block >= segment.begin && block < segment.end; });
  return found == segments.end() ? nullptr : &*found;
}

std::vector<Track> CueSheet::tracks() const {
  std::vector<Track> list;
  for (const CueSegment& segment : segments) {
    if (list.empty() || list.back().number != segment.track)
      list.push_back({segment.track, 0, segment.kind, segment.control, segment.begin, segment.begin, segment.end, 0,
                      TrackState::Partial});
    if (segment.index == 1) {
      list.back().start = segment.begin;
      list.back().control = segment.control;
    }
    list.back().end = segment.end;
  }
  return list;
}

CueSheet cueSheetFrom(View sent, const Disc& disc, std::int32_t shortest) {
  require(sent.size() >= 3 * entryBytes && sent.size() % entryBytes == 0, sense::badParameter);
  CueSheet sheet;
  require(sent[1] == 0, sense::badParameter);
  sheet.textInLeadIn = (sent[3] & 0xC0U) == 0x40U;
  bool ended = false;
  for (std::size_t at = entryBytes; at < sent.size(); at += entryBytes) {
    const View entry = sent.subspan(at, entryBytes);
    if (!isPosition(entry)) continue;
    require(!ended, sense::badParameter);
    const std::int32_t block = blockOf(msfAt(entry, 5));
    if (!sheet.segments.empty()) sheet.segments.back().end = block;
    ended = entry[1] == leadOutNumber;
    if (ended) sheet.leadOut = block;
    if (!ended) sheet.segments.push_back(segmentFrom(entry));
  }
  require(ended && !sheet.segments.empty(), sense::badParameter);
  requireOrder(sheet, disc);
  requirePlace(sheet, disc);
  requireLengths(sheet, shortest);
  return sheet;
}

}  // namespace emulated
