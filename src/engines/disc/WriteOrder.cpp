#include "engines/disc/WriteOrder.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "engines/disc/Sense.h"

namespace trackloom::engines {

namespace {

void requireSense(const WriteOrder& order) {
  const bool kindKnown = order.kind == AudioBlocks || order.kind == DataBlocks;
  const bool pauseKnown = order.pause >= 0 && order.pause <= mostBlocks;
  if (!kindKnown || !pauseKnown) throw deviceError(sense::badOrder, "the order to write names no known kind or pause");
  if (order.trackBlocks.empty()) throw deviceError(sense::badOrder, "there is no track to write");
  if (std::ranges::any_of(order.trackBlocks, [](std::int32_t blocks) { return blocks <= 0; }))
    throw deviceError(sense::badOrder, "a track of no length cannot be written");
}

void requireSameKind(const WriteOrder& order, const DiscState& disc) {
  if (disc.tracks.empty() || disc.tracks.front().kind == order.kind) return;
  throw deviceError(sense::wrongKind, order.kind == AudioBlocks ? "audio tracks cannot be added to a data disc"
                                                                : "data cannot be added to an audio disc");
}

void requireRoom(const WriteOrder& order, const DiscState& disc) {
  const std::int64_t needed = blocksOf(order);
  const std::int32_t room = disc.freeBlocks(order.kind);
  if (needed > room)
    throw deviceError(sense::noRoom, "the disc has " + std::to_string(room) + " blocks left, and " +
                                         std::to_string(needed) + " are needed");
}

}  // namespace

std::int64_t blocksOf(const WriteOrder& order) {
  const auto pauses = order.kind == AudioBlocks ? std::ssize(order.trackBlocks) - 1 : 0;
  return std::accumulate(order.trackBlocks.begin(), order.trackBlocks.end(), std::int64_t{pauses} * order.pause);
}

void requireFits(const WriteOrder& order, const DiscState& disc) {
  requireSense(order);
  if (disc.status == DiscClosed) throw deviceError(sense::cannotWriteMedium, "the disc is closed for further writing");
  requireSameKind(order, disc);
  const std::size_t tracks = disc.tracks.size() + order.trackBlocks.size();
  if (tracks > mostTracks)
    throw deviceError(sense::tooManyTracks,
                      "a disc takes 99 tracks, and with these it would have " + std::to_string(tracks));
  requireRoom(order, disc);
}

}  // namespace trackloom::engines
