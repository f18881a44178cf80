#include "engines/ripper/OffsetReading.h"

#include <algorithm>
#include <utility>

namespace trackloom::engines::ripper {

namespace {

constexpr std::int32_t samplesASector = 588;
constexpr std::size_t sampleBytes = 4;

/// Rounded towards the disc's start, for places before it too.
std::int32_t sectorOf(std::int64_t sample) {
  const std::int64_t sector = sample / samplesASector;
  return static_cast<std::int32_t>(sample % samplesASector < 0 ? sector - 1 : sector);
}

}  // namespace

OffsetReading::OffsetReading(std::shared_ptr<DiscReading> drive, DiscContents contents, std::int32_t offset)
    : drive_(std::move(drive)), contents_(std::move(contents)), offset_(offset) {}

/// The audio tracks that follow one another without data or another session between.
OffsetReading::Run OffsetReading::runAround(std::int32_t sector) const {
  Run run;
  std::int16_t session = 0;
  for (const ContentsTrack& track : contents_.tracks) {
    const bool goesOn = track.kind == AudioBlocks && track.session == session;
    if (!goesOn && sector < run.end) return run;
    if (!goesOn) run = {track.start, track.start};
    session = track.kind == AudioBlocks ? track.session : std::int16_t{0};
    if (track.kind == AudioBlocks) run.end = track.end();
  }
  return run;
}

std::vector<std::byte> OffsetReading::read(std::int32_t sector, std::int32_t count, const TroubleWatch& watch,
                                           const std::stop_token& stop) {
  const std::int64_t begin = std::int64_t{sector} * samplesASector + offset_;
  const std::int64_t end = begin + std::int64_t{count} * samplesASector;
  const Run run = runAround(sector);
  const std::int32_t first = std::clamp(sectorOf(begin), run.begin, run.end);
  const std::int32_t last = std::clamp(sectorOf(end - 1) + 1, first, run.end);
  const std::vector<std::byte> raw =
      last > first ? drive_->read(first, last - first, watch, stop) : std::vector<std::byte>();
  std::vector<std::byte> sound(static_cast<std::size_t>(count) * audioSectorBytes);
  const std::int64_t from = std::max(begin, std::int64_t{first} * samplesASector);
  const std::int64_t to = std::min(end, std::int64_t{last} * samplesASector);
  if (to <= from) return sound;
  const auto at = [](std::int64_t samples) {
    return static_cast<std::ptrdiff_t>(samples) * std::ptrdiff_t{sampleBytes};
  };
  std::copy_n(raw.begin() + at(from - std::int64_t{first} * samplesASector), at(to - from),
              sound.begin() + at(from - begin));
  return sound;
}

}  // namespace trackloom::engines::ripper
