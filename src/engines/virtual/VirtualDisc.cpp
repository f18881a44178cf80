#include "engines/virtual/VirtualDisc.h"

#include <algorithm>

#include "engines/disc/Sense.h"

namespace trackloom::engines::virtualrecorder {

namespace {

// Lead-out of the session before, lead-in of the new one and the first pre-gap: 6750 + 4500 + 150 blocks behind the
// first session, 2250 + 4500 + 150 behind later ones (Orange Book part II, multi-session discs).
constexpr std::int32_t firstSessionOverhead = 11400;
constexpr std::int32_t laterSessionOverhead = 6900;

std::int32_t sessionOverhead(std::size_t sessions) {
  return sessions == 1 ? firstSessionOverhead : laterSessionOverhead;
}

bool continuesSession(const VirtualDisc& disc) {
  return !disc.sessions.empty() && !disc.sessions.back().closed;
}

/// Where the content of the next track begins, with `pause` blocks before it where it continues a session.
std::int32_t nextStart(const VirtualDisc& disc, std::int32_t pause) {
  if (disc.sessions.empty()) return 0;
  return disc.end() + (continuesSession(disc) ? pause : sessionOverhead(disc.sessions.size()));
}

std::int32_t freeBlocks(const VirtualDisc& disc, BlockKind kind) {
  return std::max(0, disc.capacity(kind) - nextStart(disc, standardPregap));
}

void requireSense(const WriteOrder& order) {
  const bool kindKnown = order.kind == AudioBlocks || order.kind == DataBlocks;
  const bool pauseKnown = order.pause >= 0 && order.pause <= mostBlocks;
  if (!kindKnown || !pauseKnown) throw deviceError(sense::badOrder, "the order to write names no known kind or pause");
  if (order.trackBlocks.empty()) throw deviceError(sense::badOrder, "there is no track to write");
  for (const std::int32_t blocks : order.trackBlocks)
    if (blocks <= 0) throw deviceError(sense::badOrder, "a track of no length cannot be written");
}

void requireWritable(const VirtualDisc& disc, const WriteOrder& order) {
  if (disc.status == VirtualDisc::Status::Closed)
    throw deviceError(sense::cannotWriteMedium, "the disc is closed for further writing");
  if (disc.status == VirtualDisc::Status::Writing)
    throw deviceError(sense::cannotWriteMedium, "the disc is spoilt: an earlier write on it did not end");
  const std::vector<VirtualTrack> tracks = disc.tracks();
  if (!tracks.empty() && tracks.front().kind != order.kind)
    throw deviceError(sense::wrongKind, order.kind == AudioBlocks ? "audio tracks cannot be added to a data disc"
                                                                  : "data cannot be added to an audio disc");
  if (tracks.size() + order.trackBlocks.size() > mostTracks)
    throw deviceError(sense::tooManyTracks, "a disc takes 99 tracks, and with these it would have " +
                                                std::to_string(tracks.size() + order.trackBlocks.size()));
}

}  // namespace

std::vector<VirtualTrack> VirtualDisc::tracks() const {
  std::vector<VirtualTrack> all;
  for (const VirtualSession& session : sessions) all.insert(all.end(), session.tracks.begin(), session.tracks.end());
  return all;
}

std::int32_t VirtualDisc::end() const {
  return sessions.empty() ? 0 : sessions.back().tracks.back().end();
}

DiscState VirtualDisc::state() const {
  DiscState state;
  state.rewritable = medium == Medium::CdRw;
  state.sessions = static_cast<std::int16_t>(sessions.size());
  state.lastSession = sessions.empty() ? SessionEmpty : SessionClosed;
  if (status == Status::Closed || status == Status::Writing) {
    state.status = DiscClosed;
    return state;
  }
  state.status = status == Status::Blank ? DiscEmpty : DiscOpen;
  if (continuesSession(*this)) state.lastSession = SessionIncomplete;
  state.nextWritable = nextStart(*this, standardPregap);
  state.freeAudioBlocks = freeBlocks(*this, AudioBlocks);
  state.freeDataBlocks = freeBlocks(*this, DataBlocks);
  return state;
}

DiscState stateOfDamagedDisc() {
  DiscState state;
  state.status = DiscClosed;
  state.type = DiscTypeUnknown;
  state.lastSession = SessionClosed;
  return state;
}

VirtualDisc VirtualDisc::afterWriting(const WriteOrder& order) const {
  requireSense(order);
  requireWritable(*this, order);
  VirtualDisc after = *this;
  const std::int32_t pause = order.kind == AudioBlocks ? order.pause : standardPregap;
  std::int64_t start = nextStart(*this, pause);
  std::int32_t pregap = continuesSession(*this) ? pause : (sessions.empty() ? 0 : standardPregap);
  if (!continuesSession(*this)) after.sessions.emplace_back();
  for (const std::int32_t blocks : order.trackBlocks) {
    if (start + blocks > capacity(order.kind))
      throw deviceError(sense::noRoom, "the disc ends at block " + std::to_string(capacity(order.kind)) +
                                           ", and track " + std::to_string(after.tracks().size() + 1) +
                                           " would reach to block " + std::to_string(start + blocks));
    after.sessions.back().tracks.push_back({order.kind, static_cast<std::int32_t>(start), blocks, pregap});
    start += std::int64_t{blocks} + pause;
    pregap = pause;
  }
  after.sessions.back().closed = order.closeSession || order.closeDisc;
  after.status = order.closeDisc ? Status::Closed : Status::Open;
  return after;
}

}  // namespace trackloom::engines::virtualrecorder
