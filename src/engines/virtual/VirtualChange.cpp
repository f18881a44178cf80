#include "engines/virtual/VirtualChange.h"

#include <optional>
#include <string>
#include <system_error>

#include "engines/disc/Sense.h"
#include "engines/virtual/Pacing.h"

namespace trackloom::engines::virtualrecorder {

namespace {

/// A quick erase goes over the lists of tracks only.
constexpr std::int32_t blocksOfQuickErase = 4500;
constexpr std::int32_t blocksAtOnce = 16;

void passErase(const VirtualDisc& disc, const RecorderSettings& settings, bool quick, const std::stop_token& stop) {
  Pacing pacing(settings.blocksPerSecond(0));
  for (std::int32_t left = quick ? blocksOfQuickErase : disc.dataBlocks; left > 0; left -= blocksAtOnce)
    pacing.pass(blocksAtOnce, stop);
}

/// The kind of these blocks; nothing: of both, or of none. A gap belongs to the track behind it.
std::optional<BlockKind> kindFrom(const VirtualDisc& disc, std::int32_t block, std::int32_t count) {
  std::optional<BlockKind> kind;
  for (const VirtualTrack& track : disc.tracks()) {
    if (track.end() <= block) continue;
    if (kind && track.start >= block + std::int64_t{count}) break;
    if (kind && *kind != track.kind) return std::nullopt;
    kind = track.kind;
  }
  return kind;
}

void requireNotStopped(const std::stop_token& stop) {
  if (stop.stop_requested()) throw Stopped();
}

}  // namespace

VirtualDisc understood(const DiscFolder& disc) {
  try {
    return disc.load();
  } catch (const DamagedDisc& damage) {
    throw deviceError(sense::cannotWriteMedium, "the disc cannot be made sense of: " + std::string(damage.what()));
  }
}

void eraseDisc(const DiscFolder& disc, const RecorderSettings& settings, bool quick, OperationObserver& observer,
               const std::stop_token& stop) {
  const VirtualDisc blank = understood(disc).erased();
  VirtualDisc marked = blank;
  marked.status = VirtualDisc::Status::Writing;
  try {
    requireNotStopped(stop);
    disc.save(marked);
    observer.erasing();
    if (settings.failErasing) settings.fail("the disc could not be erased");
    passErase(blank, settings, quick, stop);
    disc.removeSectors();
    disc.save(blank);
  } catch (const std::system_error& error) {
    throw deviceError(sense::writeError, "the disc cannot be erased: " + std::string(error.what()));
  }
}

void closeLastSession(const DiscFolder& disc, const RecorderSettings& settings, bool alsoDisc,
                      OperationObserver& observer, const std::stop_token& stop) {
  const VirtualDisc closed = understood(disc).afterClosing(alsoDisc);
  observer.sessionClosing();
  settings.failIfClosing("session");
  if (alsoDisc) {
    observer.discClosing();
    settings.failIfClosing("disc");
  }
  requireNotStopped(stop);
  try {
    disc.record(closed);
  } catch (const std::system_error& error) {
    throw deviceError(sense::writeError, "the session cannot be closed: " + std::string(error.what()));
  }
}

std::vector<std::byte> readDisc(const DiscFolder& disc, std::int32_t block, std::int32_t count) {
  const VirtualDisc content = understood(disc);
  const auto kind = kindFrom(content, block, count);
  if (!kind || block < 0 || count < 0 || count > content.end(*kind) - block)
    throw deviceError(sense::outOfRange, "the disc has no " + std::to_string(count) + " recorded blocks from block " +
                                             std::to_string(block) + " on");
  return disc.readSectors(*kind, block, count);
}

void mendCueSheetOf(const DiscFolder& disc) {
  try {
    disc.mendCueSheet(disc.load());
  } catch (const std::runtime_error&) {
    return;
  }
}

}  // namespace trackloom::engines::virtualrecorder
