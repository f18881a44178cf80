#include "engines/writer/Reader.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <thread>
#include <utility>

#include "engines/writer/CacheFile.h"
#include "engines/writer/Progress.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t sectorsAtOnce = 256;
/// A reader that nothing holds up ends at once, and there is no need to leave it alone.
constexpr std::chrono::milliseconds graceOfReader{100};

/// The work of a reader's thread.
class Reading {
 public:
  Reading(const ReadOrder& order, HandOver& handOver, const std::stop_token& stop)
      : order_(order), handOver_(handOver), stop_(stop) {}

  void run();

 private:
  void makeCache();
  void cacheAll(std::int16_t tracks);
  void cacheAnew(std::int16_t track);
  void cacheTrack(std::int16_t track);
  void handOverTrack(std::int16_t track);
  std::int64_t blocksOf(std::int16_t track) const {
    return opened_.measured.trackBlocks.at(static_cast<std::size_t>(track) - 1);
  }
  void raise(std::function<void(CDWriterEvents&)> event);

  const ReadOrder& order_;
  HandOver& handOver_;
  const std::stop_token& stop_;
  OpenedSource opened_;
  std::optional<CacheFile> cache_;
  /// Blocks of the tracks that went through the cache.
  std::int64_t cachedBefore_ = 0;
};

void Reading::run() {
  opened_ = order_.open(order_.inUse, stop_);
  handOver_.tellMeasured(opened_.measured);
  if (order_.caching != Caching::None) makeCache();
  const auto tracks = static_cast<std::int16_t>(opened_.measured.trackBlocks.size());
  if (order_.caching == Caching::AllTracks) cacheAll(tracks);
  for (std::int16_t track = 1; track <= tracks; ++track) {
    if (order_.caching == Caching::EachTrack) cacheAnew(track);
    handOverTrack(track);
  }
}

void Reading::makeCache() {
  handOver_.awaitWanted(0, stop_);
  const auto& lengths = opened_.measured.trackBlocks;
  const bool all = order_.caching == Caching::AllTracks;
  const std::int64_t blocks =
      all ? std::accumulate(lengths.begin(), lengths.end(), std::int64_t{0}) : std::int64_t{std::ranges::max(lengths)};
  cache_.emplace(order_.scratchFolder, blocks * static_cast<std::int64_t>(order_.sectorBytes));
  handOver_.tellPrepared();
}

void Reading::raise(std::function<void(CDWriterEvents&)> event) {
  handOver_.unlessAbandoned([&] { order_.events->raise(std::move(event)); });
}

void Reading::cacheAll(std::int16_t tracks) {
  handOver_.awaitWanted(1, stop_);
  for (std::int16_t track = 1; track <= tracks; ++track) cacheTrack(track);
}

void Reading::cacheAnew(std::int16_t track) {
  handOver_.awaitWanted(track, stop_);
  cache_->empty();
  cacheTrack(track);
}

void Reading::cacheTrack(std::int16_t track) {
  const std::int64_t blocks = blocksOf(track);
  const auto sector = static_cast<std::int64_t>(order_.sectorBytes);
  raise([=](CDWriterEvents& listener) { listener.OnTrackCacheStart(track, static_cast<std::int32_t>(blocks)); });
  Progress progress(blocks);
  cache_->fill(*opened_.sectors, blocks * sector, [&](std::int64_t bytes) {
    if (stop_.stop_requested()) throw Stopped();
    const auto position = static_cast<std::int32_t>(bytes / sector);
    if (order_.cacheWatch) order_.cacheWatch(cachedBefore_ + position);
    if (progress.due(position)) raise([=](CDWriterEvents& listener) { listener.OnCacheProgress(position); });
  });
  cachedBefore_ += blocks;
}

void Reading::handOverTrack(std::int16_t track) {
  PieceSource& source = cache_ ? static_cast<PieceSource&>(*cache_) : *opened_.sectors;
  const std::size_t most = sectorsAtOnce * order_.sectorBytes;
  for (std::size_t left = static_cast<std::size_t>(blocksOf(track)) * order_.sectorBytes; left != 0;) {
    Piece piece = source.take(std::min(left, most));
    left -= piece.size();
    handOver_.put(std::move(piece), source.bufferPercent(), stop_);
  }
}

void readAll(const ReadOrder& order, HandOver& handOver, const std::stop_token& stop) {
  try {
    Reading(order, handOver, stop).run();
  } catch (...) {
    handOver.fail(std::current_exception());
  }
}

}  // namespace

Reader::Reader(ReadOrder order, std::shared_ptr<HandOver> handOver, const std::stop_token& stop)
    : handOver_(std::move(handOver)), stop_(stop), passOn_(stop, [this] { ownStop_.request_stop(); }) {
  handOver_->begin();
  std::thread([order = std::move(order), shared = handOver_, stopped = ownStop_.get_token()]() mutable {
    readAll(order, *shared, stopped);
    order = {};
    shared->end();
  }).detach();
}

Reader::~Reader() {
  handOver_->abandon();
  ownStop_.request_stop();
  handOver_->awaitEnd(graceOfReader, {});
}

}  // namespace trackloom::engines::writer
