#include "engines/virtual/VirtualWrite.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "engines/disc/Sense.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr double blocksOfBaseSpeed = 75;
/// disc.ini and disc.cue and what a file system needs to hold them.
constexpr std::int64_t bytesOfDescriptions = std::int64_t{256} * 1024;

VirtualDisc loaded(const DiscFolder& disc) {
  try {
    return disc.load();
  } catch (const DamagedDisc& damage) {
    throw deviceError(sense::cannotWriteMedium, "the disc cannot be made sense of: " + std::string(damage.what()));
  }
}

/// A disc would be spoilt for nothing if the computer's own disk filled up halfway.
void requireRoomOnHost(const DiscFolder& disc, const std::vector<VirtualTrack>& tracks) {
  std::int64_t bytes = bytesOfDescriptions;
  for (const VirtualTrack& track : tracks) bytes += std::int64_t{track.length} * sectorBytes(track.kind);
  const std::int64_t room = disc.roomOnHost();
  if (bytes > room)
    throw deviceError(sense::writeError,
                      "no room for the virtual disc on the computer's disk: " + std::to_string(bytes) +
                          " bytes needed, " + std::to_string(room) + " free");
}

double paceOf(const RecorderSettings& settings, const WriteOrder& order) {
  if (!settings.realTimePacing) return 0;
  return blocksOfBaseSpeed * std::max<int>(0, order.speed > 0 ? order.speed : settings.maximumSpeed);
}

[[noreturn]] void outOfOrder(const std::string& words) {
  throw deviceError(sense::badSequence, words);
}

}  // namespace

VirtualWrite::VirtualWrite(RecorderFolder recorder, DiscFolder disc, const WriteOrder& order)
    : recorder_(std::move(recorder)), disc_(std::move(disc)), settings_(recorder_->settings()), order_(order) {
  const VirtualDisc before = loaded(disc_);
  after_ = before.afterWriting(order_);
  tracks_ = after_.tracks();
  tracks_.erase(tracks_.begin(), tracks_.end() - std::ssize(order_.trackBlocks));
  faultAt_ = order_.test ? settings_.failTestAt : settings_.failWriteAt;
  blocksPerSecond_ = paceOf(settings_, order_);
  requireRoomOnHost(disc_, tracks_);
  if (!order_.test) markAsWriting(before);
}

void VirtualWrite::markAsWriting(const VirtualDisc& before) {
  VirtualDisc marked = before;
  marked.status = VirtualDisc::Status::Writing;
  try {
    sectors_.emplace(disc_.openSectors(order_.kind), order_.kind);
    disc_.save(marked);
  } catch (const std::system_error& error) {
    disc_.dropEmptySectors(order_.kind);
    throw deviceError(sense::writeError, "the disc cannot be written: " + std::string(error.what()));
  }
}

void VirtualWrite::startTrack() {
  if (inTrack_) outOfOrder("a track was begun within a track");
  if (track_ == tracks_.size()) outOfOrder("a track was begun that was not ordered");
  inTrack_ = true;
  blocksOfTrack_ = 0;
}

void VirtualWrite::write(std::span<const std::byte> sectors) {
  if (!inTrack_) outOfOrder("sectors came outside of a track");
  const auto bytes = static_cast<std::size_t>(sectorBytes(order_.kind));
  if (sectors.size() % bytes != 0) throw deviceError(sense::badOrder, "a part of a sector cannot be written");
  const VirtualTrack& track = tracks_[track_];
  const std::size_t blocks = sectors.size() / bytes;
  if (blocks > static_cast<std::size_t>(track.length - blocksOfTrack_))
    throw deviceError(sense::outOfRange, "track " + std::to_string(track_ + 1) + " of this write was ordered with " +
                                             std::to_string(track.length) + " blocks, and more came");
  put(track.start + blocksOfTrack_, sectors);
  blocksOfTrack_ += static_cast<std::int32_t>(blocks);
  keepPace(static_cast<std::int64_t>(blocks));
}

void VirtualWrite::put(std::int32_t block, std::span<const std::byte> sectors) {
  const auto bytes = static_cast<std::size_t>(sectorBytes(order_.kind));
  const std::int64_t end = block + static_cast<std::int64_t>(sectors.size() / bytes);
  const bool faulty = faultAt_ && *faultAt_ >= block && *faultAt_ < end;
  if (faulty) sectors = sectors.first(static_cast<std::size_t>(*faultAt_ - block) * bytes);
  if (sectors_) sectors_->put(block, sectors);
  if (faulty) fail("write error at block " + std::to_string(*faultAt_));
}

void VirtualWrite::keepPace(std::int64_t blocks) {
  if (blocksPerSecond_ <= 0) return;
  if (blocksInAll_ == 0) started_ = std::chrono::steady_clock::now();
  blocksInAll_ += blocks;
  const std::chrono::duration<double> due(static_cast<double>(blocksInAll_) / blocksPerSecond_);
  std::this_thread::sleep_until(started_ + std::chrono::duration_cast<std::chrono::steady_clock::duration>(due));
}

void VirtualWrite::closeTrack() {
  if (!inTrack_) outOfOrder("a track was closed that was not begun");
  if (blocksOfTrack_ != tracks_[track_].length)
    outOfOrder("track " + std::to_string(track_ + 1) + " of this write was closed after " +
               std::to_string(blocksOfTrack_) + " of " + std::to_string(tracks_[track_].length) + " blocks");
  failIfClosing("track");
  inTrack_ = false;
  ++track_;
}

void VirtualWrite::closeSession() {
  requireAllTracks();
  if (!order_.closeSession) outOfOrder("the session was closed without an order");
  failIfClosing("session");
}

void VirtualWrite::closeDisc() {
  requireAllTracks();
  if (!order_.closeDisc) outOfOrder("the disc was closed without an order");
  failIfClosing("disc");
}

void VirtualWrite::finish() {
  requireAllTracks();
  finished_ = true;
  if (sectors_) recordContents();
  recorder_.reset();
}

void VirtualWrite::recordContents() {
  sectors_->finish();
  try {
    if (order_.kind == AudioBlocks) disc_.saveCueSheet(after_);
    disc_.save(after_);
  } catch (const std::system_error& error) {
    throw deviceError(sense::writeError, "the disc's contents cannot be recorded: " + std::string(error.what()));
  }
}

void VirtualWrite::requireAllTracks() const {
  if (finished_) outOfOrder("the write has ended");
  if (inTrack_ || track_ != tracks_.size()) outOfOrder("not all tracks of the order have been written");
}

void VirtualWrite::failIfClosing(const char* part) const {
  if (settings_.failClosing == part) fail(std::string(part) + " could not be closed");
}

void VirtualWrite::fail(const std::string& otherwise) const {
  throw deviceError(settings_.failNumber, settings_.failText.empty() ? otherwise : settings_.failText);
}

}  // namespace trackloom::engines::virtualrecorder
