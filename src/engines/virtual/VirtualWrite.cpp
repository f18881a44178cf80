#include "engines/virtual/VirtualWrite.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/virtual/VirtualChange.h"

namespace trackloom::engines::virtualrecorder {

namespace {

/// Small enough for a stop to be felt at once even at the base speed, where it lasts 213 ms.
constexpr std::int32_t blocksAtOnce = 16;
/// disc.ini and disc.cue and what a file system needs to hold them.
constexpr std::int64_t bytesOfDescriptions = std::int64_t{256} * 1024;

/// A disc would be spoilt for nothing if the computer's own disk filled up halfway.
void requireRoomOnHost(const DiscFolder& disc, const std::vector<VirtualTrack>& tracks) {
  std::int64_t bytes = bytesOfDescriptions;
  for (const VirtualTrack& track : tracks) bytes += track.length * static_cast<std::int64_t>(bytesOfSector(track.kind));
  const std::int64_t room = disc.roomOnHost();
  if (bytes > room)
    throw deviceError(sense::writeError,
                      "no room for the virtual disc on the computer's disk: " + std::to_string(bytes) +
                          " bytes needed, " + std::to_string(room) + " free");
}

/// What a write would go through the file of, if it could be opened.
void requireOwnSectors(const DiscFolder& disc, const VirtualDisc& content) {
  try {
    if (const auto kind = content.kind()) disc.openSectors(*kind);
  } catch (const std::system_error& error) {
    throw deviceError(sense::writeError, "the disc cannot be written: " + std::string(error.what()));
  }
}

}  // namespace

WritePlan planWrite(const DiscFolder& disc, const WriteOrder& order) {
  WritePlan plan;
  plan.before = understood(disc);
  plan.after = plan.before.afterWriting(order);
  plan.tracks = plan.after.tracks();
  plan.tracks.erase(plan.tracks.begin(), plan.tracks.end() - std::ssize(order.trackBlocks));
  requireRoomOnHost(disc, plan.tracks);
  requireOwnSectors(disc, plan.before);
  return plan;
}

VirtualWrite::VirtualWrite(const DiscFolder& disc, const RecorderSettings& settings, const WriteOrder& order,
                           SectorSource& source, OperationObserver& observer, const std::stop_token& stop)
    : disc_(disc),
      settings_(settings),
      order_(order),
      source_(source),
      observer_(observer),
      stop_(stop),
      plan_(planWrite(disc, order)),
      pacing_(settings.blocksPerSecond(order.speed)),
      faultAt_(order.test ? settings.failTestAt : settings.failWriteAt) {}

void VirtualWrite::run() {
  beginTrack(1);
  if (!order_.test) markAsWriting();
  for (std::int16_t track = 1; track <= std::ssize(plan_.tracks); ++track) {
    if (track > 1) beginTrack(track);
    writeTrack(track);
  }
  closeSessionAndDisc();
  requireNotStopped();
  if (sectors_) recordContents();
}

void VirtualWrite::requireNotStopped() const {
  if (stop_.stop_requested()) throw Stopped();
}

void VirtualWrite::beginTrack(std::int16_t track) {
  source_.beginTrack(track);
  requireNotStopped();
  if (settings_.failTrack == track) settings_.fail("track " + std::to_string(track) + " could not be begun");
}

void VirtualWrite::markAsWriting() {
  VirtualDisc marked = plan_.before;
  marked.status = VirtualDisc::Status::Writing;
  const bool blank = !plan_.before.kind();
  try {
    sectors_.emplace(blank ? disc_.makeSectors(order_.kind) : disc_.openSectors(order_.kind), order_.kind);
    disc_.save(marked);
  } catch (const std::system_error& error) {
    disc_.dropEmptySectors(order_.kind);
    throw deviceError(sense::writeError, "the disc cannot be written: " + std::string(error.what()));
  }
}

void VirtualWrite::writeTrack(std::int16_t track) {
  const VirtualTrack& place = plan_.tracks[static_cast<std::size_t>(track) - 1];
  const std::int32_t piece = std::clamp(place.length / 4, 1, blocksAtOnce);
  observer_.trackStarted(track, place.length);
  for (std::int32_t position = 0; position < place.length;) {
    requireNotStopped();
    const std::int32_t step = position == 0 ? 1 : std::min(piece, place.length - position);
    writeSectors(place.start + position, step);
    pacing_.pass(step, stop_);
    position += step;
    observer_.progress(track, position, 100);
  }
  requireNotStopped();
  observer_.trackClosing(track);
  settings_.failIfClosing("track");
}

void VirtualWrite::writeSectors(std::int32_t block, std::int32_t count) {
  if (!sectors_) tested_.resize(static_cast<std::size_t>(count) * bytesOfSector(order_.kind));
  source_.read(sectors_ ? sectors_->room(block, count) : std::span<std::byte>(tested_));
  const bool faulty = faultAt_ && *faultAt_ >= block && *faultAt_ < block + count;
  if (sectors_) sectors_->put(faulty ? *faultAt_ - block : count);
  if (faulty) settings_.fail("write error at block " + std::to_string(*faultAt_));
}

void VirtualWrite::closeSessionAndDisc() {
  requireNotStopped();
  if (order_.closeSession) {
    observer_.sessionClosing();
    settings_.failIfClosing("session");
  }
  if (order_.closeDisc) {
    observer_.discClosing();
    settings_.failIfClosing("disc");
  }
}

void VirtualWrite::recordContents() {
  sectors_->finish();
  try {
    disc_.record(plan_.after);
  } catch (const std::system_error& error) {
    throw deviceError(sense::writeError, "the disc's contents cannot be recorded: " + std::string(error.what()));
  }
}

}  // namespace trackloom::engines::virtualrecorder
