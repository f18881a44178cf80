#include "engines/writer/Burn.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <optional>

#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"
#include "engines/writer/CacheFile.h"
#include "engines/writer/DataImage.h"
#include "engines/writer/ReadAhead.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

namespace {

/// A disc has at most 99 tracks (IEC 60908, clause 17.5).
constexpr std::size_t mostTracks = 99;
/// Small enough for a stop to be felt at once even at the base speed, where it lasts 213 ms.
constexpr std::int64_t blocksAtOnce = 16;

/// Tells when progress is worth an event: at the first block, at each quarter of the way, at the end, and every 50 ms.
class Pace {
 public:
  explicit Pace(std::int64_t length) : length_(length) {}

  bool due(std::int64_t position) {
    const auto now = std::chrono::steady_clock::now();
    const std::int64_t quarter = position * 4 / length_;
    if (told_ && quarter == quarter_ && now - last_ < std::chrono::milliseconds(50)) return false;
    told_ = true;
    quarter_ = quarter;
    last_ = now;
    return true;
  }

 private:
  std::int64_t length_;
  bool told_ = false;
  std::int64_t quarter_ = 0;
  std::chrono::steady_clock::time_point last_;
};

DiscState lookAt(const WriteRequest& request) {
  if (!request.recorder) throw deviceError(sense::notReady, "no drive is in use");
  const auto disc = request.recorder->look();
  if (!disc) throw deviceError(sense::noMedium, "no disc is in the drive");
  if (disc->status == DiscClosed) throw deviceError(sense::cannotWriteMedium, "the disc is closed for further writing");
  const bool begun = disc->status == DiscOpen || disc->sessions != 0;
  if (request.settings.kind == DataBlocks && begun)
    throw deviceError(sense::cannotWriteMedium, "the disc holds an earlier session, which a new data track would hide");
  return *disc;
}

/// A recorder that notices too late that the disc is too small has spoilt it by then. The room left begins where the
/// first track would, so only the pauses between the tracks come on top.
void requireRoom(const WriteOrder& order, const DiscState& disc) {
  const bool audio = order.kind == AudioBlocks;
  const auto pauses = static_cast<std::int64_t>(audio ? order.trackBlocks.size() - 1 : 0);
  const std::int64_t needed = std::accumulate(order.trackBlocks.begin(), order.trackBlocks.end(), pauses * order.pause);
  const std::int32_t room = audio ? disc.freeAudioBlocks : disc.freeDataBlocks;
  if (needed > room)
    throw deviceError(sense::noRoom, "the disc has " + std::to_string(room) + " blocks left, and " +
                                         std::to_string(needed) + " are needed");
}

/// The lengths of all tracks in blocks.
std::vector<std::int32_t> measured(const WriteRequest& request, const std::stop_token& stop) {
  if (request.audioTracks.size() > mostTracks)
    throw deviceError(sense::tooManyTracks,
                      "a disc takes 99 tracks, not " + std::to_string(request.audioTracks.size()));
  std::vector<std::int32_t> lengths;
  for (const HostPath& path : request.audioTracks) {
    if (stop.stop_requested()) throw Stopped();
    const auto blocks = request.audioFiles->blocks(path);
    if (!blocks) throw RuntimeError(RuntimeError::FileNotFound, path.text + " cannot be read as 44.1 kHz stereo audio");
    lengths.push_back(*blocks);
  }
  return lengths;
}

ReadAhead::Opener openerOf(const WriteRequest& request, const std::vector<std::int32_t>& lengths) {
  return [files = request.audioFiles, paths = request.audioTracks, lengths](std::size_t track) {
    auto stream = files->open(paths[track]);
    if (stream->blocks() != lengths[track])
      throw RuntimeError(RuntimeError::DeviceIoError, paths[track].text + " has changed since it was measured");
    return stream;
  };
}

/// The tracks of one disc on their way from their source to the recorder.
class Writing {
 public:
  Writing(const WriteRequest& request, OperationEvents& events, const std::stop_token& stop);
  void run();

 private:
  void makeSource();
  void cacheTrack(std::int16_t track);
  void writeTrack(std::int16_t track);
  void tellProgress(std::int16_t track, std::int64_t position);
  void close();
  std::int32_t lengthOf(std::int16_t track) const { return order_.trackBlocks[static_cast<std::size_t>(track) - 1]; }
  void stopIfAsked() const {
    if (stop_.stop_requested()) throw Stopped();
  }

  const WriteRequest& request_;
  OperationEvents& events_;
  const std::stop_token& stop_;
  WriteOrder order_;
  std::unique_ptr<SectorSource> tracks_;
  std::optional<CacheFile> cache_;
  std::unique_ptr<DiscWrite> disc_;
};

Writing::Writing(const WriteRequest& request, OperationEvents& events, const std::stop_token& stop)
    : request_(request), events_(events), stop_(stop) {
  const WriteSettings& settings = request.settings;
  order_.kind = settings.kind;
  order_.pause = request.pause;
  order_.test = settings.test;
  order_.closeSession = settings.closeSession;
  order_.closeDisc = settings.closeDisc;
  order_.speed = settings.speed;
}

void Writing::makeSource() {
  if (order_.kind == DataBlocks) {
    auto image =
        std::make_unique<DataImage>(request_.dataEntries, request_.settings.volumeLabel, Unreadable::Refused, stop_);
    order_.trackBlocks = {image->blocks()};
    tracks_ = std::move(image);
    return;
  }
  order_.trackBlocks = measured(request_, stop_);
  tracks_ = std::make_unique<ReadAhead>(order_.trackBlocks, openerOf(request_, order_.trackBlocks), stop_);
}

void Writing::run() {
  const DiscState disc = lookAt(request_);
  makeSource();
  requireRoom(order_, disc);
  if (request_.settings.caches()) cache_.emplace(request_.scratchFolder);
  const auto count = static_cast<std::int16_t>(order_.trackBlocks.size());
  for (std::int16_t track = 1; track <= count; ++track) {
    if (cache_) cacheTrack(track);
    stopIfAsked();
    if (!disc_) disc_ = request_.recorder->begin(order_);
    writeTrack(track);
  }
  close();
}

void Writing::cacheTrack(std::int16_t track) {
  const std::int32_t blocks = lengthOf(track);
  const auto sector = static_cast<std::int64_t>(bytesOfSector(order_.kind));
  events_.raise([=](CDWriterEvents& listener) { listener.OnTrackCacheStart(track, blocks); });
  Pace pace(blocks);
  cache_->fill(*tracks_, blocks * sector, [&](std::int64_t bytes) {
    stopIfAsked();
    const auto position = static_cast<std::int32_t>(bytes / sector);
    if (pace.due(position)) events_.raise([=](CDWriterEvents& listener) { listener.OnCacheProgress(position); });
  });
}

void Writing::writeTrack(std::int16_t track) {
  const std::int32_t blocks = lengthOf(track);
  const std::int64_t part = std::clamp<std::int64_t>(blocks / 4, 1, blocksAtOnce);
  std::vector<std::byte> buffer(static_cast<std::size_t>(part) * bytesOfSector(order_.kind));
  SectorSource& source = cache_ ? static_cast<SectorSource&>(*cache_) : *tracks_;
  disc_->startTrack();
  events_.raise([=](CDWriterEvents& listener) { listener.OnTrackWriteStart(track, blocks); });
  Pace pace(blocks);
  for (std::int64_t position = 0; position < blocks;) {
    stopIfAsked();
    const std::int64_t step = position == 0 ? 1 : std::min(part, blocks - position);
    const std::span<std::byte> sectors(buffer.data(), static_cast<std::size_t>(step) * bytesOfSector(order_.kind));
    source.read(sectors);
    disc_->write(sectors);
    position += step;
    if (pace.due(position)) tellProgress(track, position);
  }
  stopIfAsked();
  events_.raise([=](CDWriterEvents& listener) { listener.OnTrackClosing(track); });
  disc_->closeTrack();
}

void Writing::tellProgress(std::int16_t track, std::int64_t position) {
  SectorSource& source = cache_ ? static_cast<SectorSource&>(*cache_) : *tracks_;
  const auto blocks = static_cast<std::int32_t>(position);
  const std::int16_t ahead = source.bufferPercent();
  const std::int16_t inRecorder = disc_->bufferPercent();
  events_.raise([=](CDWriterEvents& listener) { listener.OnWriteProgress(track, blocks, inRecorder); });
  events_.raise([=](CDWriterEvents& listener) { listener.OnReadBufferLevel(ahead); });
}

void Writing::close() {
  stopIfAsked();
  if (order_.closeSession) {
    events_.raise([](CDWriterEvents& listener) { listener.OnSessionClosing(); });
    disc_->closeSession();
  }
  if (order_.closeDisc) {
    events_.raise([](CDWriterEvents& listener) { listener.OnDiscClosing(); });
    disc_->closeDisc();
  }
  stopIfAsked();
  disc_->finish();
}

}  // namespace

void burn(const WriteRequest& request, OperationEvents& events, const std::stop_token& stop) {
  events.raise([](CDWriterEvents& listener) { listener.OnWriteStarting(); });
  Writing(request, events, stop).run();
}

}  // namespace trackloom::engines::writer
