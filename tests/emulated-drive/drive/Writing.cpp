#include "Writing.h"

#include <algorithm>

#include "Address.h"
#include "Sense.h"

namespace emulated {

namespace {

/// The link behind a track that was written at once.
constexpr std::int32_t runOutBlocks = 2;
constexpr std::size_t textBytesOfBlock = 96;

Mark markOf(const Track& track) {
  return {static_cast<std::uint8_t>(track.session), static_cast<std::uint8_t>(track.number), 1,
          static_cast<std::uint8_t>(static_cast<std::uint32_t>(track.control) << 4U |
                                    static_cast<std::uint32_t>(track.kind))};
}

Mark markOf(const CueSegment& segment, std::int32_t session) {
  return {static_cast<std::uint8_t>(session), static_cast<std::uint8_t>(segment.track),
          static_cast<std::uint8_t>(segment.index),
          static_cast<std::uint8_t>(static_cast<std::uint32_t>(segment.control) << 4U |
                                    static_cast<std::uint32_t>(segment.kind))};
}

/// Each byte of the sub-channels has six bits of a pack (MMC-3, annex J).
Bytes packsFrom(View symbols) {
  Bytes packs;
  for (std::size_t at = 0; at + 4 <= symbols.size(); at += 4) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i) bits = bits << 6U | (symbols[at + i] & 0x3FU);
    for (const unsigned shift : {16U, 8U, 0U}) packs.push_back(static_cast<std::uint8_t>(bits >> shift & 0xFFU));
  }
  return packs;
}

/// A session of this disc goes on where the drive says, in blocks that belong to none of its tracks yet.
void requireWritable(const Disc& disc) {
  require(disc.writable(), sense::cannotWrite);
}

Track& trackFor(std::int32_t block, Disc& disc, const Pages& pages) {
  if (Track* open = disc.openTrack()) {
    require(block == open->end, sense::notNextWritable);
    if (open->end == open->start) open->kind = pages.kind();
    require(open->kind == pages.kind(), sense::wrongMode);
    return *open;
  }
  require(block == disc.nextStart(), sense::notNextWritable);
  require(disc.nextTrackNumber() <= 99, sense::noMoreTracks);
  require(((pages.control() & 4U) != 0) == (pages.kind() != Kind::Audio), sense::wrongMode);
  return disc.add({0, 0, pages.kind(), pages.control(), block - pregapBlocks, block, block, 0, TrackState::Open});
}

std::int32_t roomOf(const Track& track, const Disc& disc) {
  return (track.reserved > 0 ? track.start + track.reserved : disc.capacity) - track.end;
}

/// Nothing is done to tracks that are closed already.
void closeTrack(Medium& medium, std::int32_t shortest) {
  Track* track = medium.disc.openTrack();
  if (track == nullptr || track->end == track->start) return;
  const std::int32_t wanted = std::max(shortest, track->reserved);
  const std::int32_t missing = std::max(0, wanted - (track->end - track->start));
  medium.writeSilence(track->end, missing, markOf(*track));
  track->end += missing + runOutBlocks;
  track->state = TrackState::Complete;
  medium.disc.sessions.back().leadOut = track->end;
  medium.save();
}

void closeSession(Medium& medium, bool finalize) {
  Disc& disc = medium.disc;
  require(disc.openTrack() == nullptr, sense::incompleteTrack);
  if (!disc.sessionIsOpen()) {
    require(finalize && !disc.blank() && !disc.finalized, sense::badSequence);
    disc.finalized = true;
    return;
  }
  if (disc.damaged()) {
    const std::int32_t reached = disc.sessions.back().leadOut;
    std::erase_if(disc.tracks, [&](const Track& track) {
      return track.number > 1 && track.start >= reached && track.state == TrackState::Partial;
    });
    disc.tracks.back().end = std::max(reached, disc.tracks.back().start + 1);
  }
  disc.closeSession(finalize);
}

}  // namespace

void Writing::plan(const Command& command, const Medium& medium, const Pages& pages, const Settings& settings) {
  require(pages.writeType() == WriteType::SessionAtOnce, sense::badSequence);
  requireWritable(medium.disc);
  require(!medium.disc.sessionIsOpen(), sense::badSequence);
  sheet_ = cueSheetFrom(command.sent, medium.disc, settings.shortestTrack);
  next_ = sheet_->begin();
  begun_ = false;
}

void Writing::write(const Command& command, Medium& medium, const Pages& pages) {
  const std::int32_t block = command.address(2);
  const auto count = static_cast<std::int32_t>(command[0] == 0xAA ? command.number(6, 4) : command.number(7, 2));
  if (count == 0) return;
  if (sheet_)
    writeSession(command, block, count, medium);
  else
    writeTrack(command.sent, block, count, medium, pages);
  medium.save();
}

void Writing::writeSession(const Command& command, std::int32_t block, std::int32_t count, Medium& medium) {
  if (sheet_->textInLeadIn && !begun_ && block < sheet_->begin()) return writeText(command.sent, count, medium);
  require(block == next_, sense::notNextWritable);
  requireShape(command.sent.size(), block, count);
  beginSession(medium);
  View sent = command.sent;
  for (std::int32_t at = block; at < block + count;) {
    const CueSegment& segment = *sheet_->segmentAt(at);
    const std::int32_t step = std::min(block + count, segment.end) - at;
    const std::size_t size = static_cast<std::size_t>(step) * bytesOf(segment.kind);
    medium.write(at, sent.first(size), markOf(segment, medium.disc.sessionNumber()));
    sent = sent.subspan(size);
    at += step;
  }
  next_ += count;
  passEmptyBlocks(medium);
  medium.disc.sessions.back().leadOut = next_;
}

/// All blocks are of the sheet, and their bytes are as many as it says.
void Writing::requireShape(std::size_t bytes, std::int32_t block, std::int32_t count) const {
  std::size_t wanted = 0;
  for (std::int32_t at = block; at < block + count; ++at) {
    const CueSegment* segment = sheet_->segmentAt(at);
    require(segment != nullptr, sense::outOfRange);
    require(segment->fromHost, sense::wrongMode);
    wanted += bytesOf(segment->kind);
  }
  require(bytes == wanted, sense::wrongMode);
}

void Writing::writeText(View sent, std::int32_t count, const Medium& medium) const {
  require(sent.size() == static_cast<std::size_t>(count) * textBytesOfBlock, sense::wrongMode);
  if (medium.recorded()) medium.sectors.writeText(packsFrom(sent));
}

void Writing::beginSession(Medium& medium) {
  if (begun_) return;
  begun_ = true;
  for (const Track& track : sheet_->tracks()) medium.disc.add(track);
}

void Writing::passEmptyBlocks(const Medium& medium) {
  for (const CueSegment* segment = sheet_->segmentAt(next_); segment != nullptr && !segment->fromHost;
       segment = sheet_->segmentAt(next_)) {
    medium.writeSilence(next_, segment->end - next_, markOf(*segment, medium.disc.sessionNumber()));
    next_ = segment->end;
  }
}

void Writing::writeTrack(View sent, std::int32_t block, std::int32_t count, Medium& medium, const Pages& pages) const {
  require(pages.writeType() == WriteType::TrackAtOnce, sense::badSequence);
  requireWritable(medium.disc);
  const Kind kind = pages.kind();
  require(sent.size() == static_cast<std::size_t>(count) * bytesOf(kind), sense::wrongMode);
  require(block + count <= medium.disc.capacity, sense::endOfArea);
  Track& track = trackFor(block, medium.disc, pages);
  require(count <= roomOf(track, medium.disc), sense::endOfArea);
  medium.write(block, sent, markOf(track));
  track.end += count;
  medium.disc.sessions.back().leadOut = track.end;
}

bool Writing::synchronize(Medium& medium, const Pages& pages, const Settings& settings) {
  if (!sheet_) {
    closeTrack(medium, settings.shortestTrack);
    return false;
  }
  if (!begun_ || next_ != sheet_->leadOut) return false;
  medium.disc.closeSession(!pages.nextSessionAllowed());
  medium.save();
  sheet_.reset();
  return true;
}

void Writing::reserve(const Command& command, Medium& medium, const Pages& pages) const {
  requireWritable(medium.disc);
  require(medium.disc.openTrack() == nullptr, sense::badSequence);
  const std::int32_t start = medium.disc.nextStart();
  const std::int32_t size = command.address(5);
  require(size > 0 && start + size <= medium.disc.capacity, sense::outOfRange);
  medium.disc.add({0, 0, pages.kind(), pages.control(), start - pregapBlocks, start, start, size, TrackState::Open});
  medium.save();
}

void Writing::close(const Command& command, Medium& medium, const Pages& pages, const Settings& settings) const {
  const std::uint32_t what = command[2] & 7U;
  require(what == 1 || what == 2, sense::badField);
  require(!medium.disc.finalized, sense::cannotWrite);
  if (what == 1) closeTrack(medium, settings.shortestTrack);
  if (what == 1) return;
  closeSession(medium, !pages.nextSessionAllowed());
  medium.save();
}

}  // namespace emulated
