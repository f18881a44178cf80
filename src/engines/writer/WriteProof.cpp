#include "engines/writer/WriteProof.h"

#include <xxhash.h>

#include <algorithm>
#include <numeric>
#include <string>

#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::int32_t blocksAtOnce = 256;

std::vector<std::uint64_t> checksumsOf(std::span<const std::byte> sectors, std::size_t sectorBytes) {
  std::vector<std::uint64_t> sums;
  for (; !sectors.empty(); sectors = sectors.subspan(sectorBytes))
    sums.push_back(XXH3_64bits(sectors.data(), sectorBytes));
  return sums;
}

/// The tracks of the disc that came last.
std::vector<DiscTrack> lastTracks(Recorder& recorder, std::size_t count) {
  const auto disc = recorder.look()->disc;
  if (!disc || disc->tracks.size() < count)
    throw deviceError(sense::readError, "the disc that was written cannot be read back: it is not in the drive");
  return {disc->tracks.end() - static_cast<std::ptrdiff_t>(count), disc->tracks.end()};
}

void requireEqual(std::span<const std::uint64_t> read, std::span<const std::uint64_t> written, std::int32_t block) {
  const auto [differs, other] = std::ranges::mismatch(read, written);
  if (differs != read.end())
    throw deviceError(sense::miscompare, "block " + std::to_string(block + (differs - read.begin())) +
                                             " of the disc is not what was written");
}

}  // namespace

WriteProof::WriteProof(const WriteOrder& order, SectorSource& source, OperationObserver& observer, bool readBack)
    : order_(order), source_(source), observer_(observer), readBack_(readBack), recorded_(order.trackBlocks.size()) {}

void WriteProof::read(std::span<std::byte> sectors) {
  source_.read(sectors);
  const std::size_t sectorBytes = bytesOfSector(order_.kind);
  taken_ += static_cast<std::int64_t>(sectors.size() / sectorBytes);
  if (readBack_) std::ranges::copy(checksumsOf(sectors, sectorBytes), std::back_inserter(checksums_));
}

void WriteProof::progress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) {
  recorded_.at(static_cast<std::size_t>(track) - 1) = position;
  observer_.progress(track, position, bufferPercent);
}

void WriteProof::requireAllRecorded() const {
  const auto ordered = std::accumulate(order_.trackBlocks.begin(), order_.trackBlocks.end(), std::int64_t{0});
  const auto recorded = std::accumulate(recorded_.begin(), recorded_.end(), std::int64_t{0});
  if (taken_ == ordered && recorded_ == order_.trackBlocks) return;
  throw deviceError(sense::writeError, "of " + std::to_string(ordered) + " blocks the recorder took " +
                                           std::to_string(taken_) + " and recorded " + std::to_string(recorded));
}

void WriteProof::requireReadBack(Recorder& recorder, const std::stop_token& stop) const {
  const std::size_t sectorBytes = bytesOfSector(order_.kind);
  std::span<const std::uint64_t> left(checksums_);
  for (const DiscTrack& track : lastTracks(recorder, order_.trackBlocks.size()))
    for (std::int32_t done = 0; done < track.length;) {
      if (stop.stop_requested()) throw Stopped();
      const std::int32_t step = std::min(track.length - done, blocksAtOnce);
      const auto sums = checksumsOf(recorder.read(track.start + done, step), sectorBytes);
      requireEqual(sums, left.first(std::min(sums.size(), left.size())), track.start + done);
      left = left.subspan(sums.size());
      done += step;
    }
  if (!left.empty())
    throw deviceError(sense::miscompare, std::to_string(left.size()) + " blocks of the write are missing on the disc");
}

}  // namespace trackloom::engines::writer
