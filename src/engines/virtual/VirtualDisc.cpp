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
  return std::max(0, disc.capacity(kind) - nextStart(disc, standardPause));
}

[[noreturn]] void throwSpoilt() {
  throw deviceError(sense::cannotWriteMedium, "the disc is spoilt: an earlier write on it did not end");
}

void requireRoom(const VirtualDisc& disc, BlockKind kind, std::int64_t end) {
  if (end <= disc.capacity(kind)) return;
  throw deviceError(sense::noRoom, "the disc ends at block " + std::to_string(disc.capacity(kind)) +
                                       ", and the tracks would reach to block " + std::to_string(end));
}

/// The names of the order's tracks, which are the disc's last, and the disc's own where this is its first session.
void takeText(VirtualDisc& disc, const WriteOrder& order) {
  std::vector<VirtualTrack>& tracks = disc.sessions.back().tracks;
  const std::size_t before = tracks.size() - order.trackBlocks.size();
  const std::size_t named = std::min(order.text.tracks.size(), order.trackBlocks.size());
  for (std::size_t at = 0; at < named; ++at) tracks[before + at].name = order.text.tracks[at];
  if (disc.sessions.size() == 1) disc.name = order.text.disc;
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

std::int32_t VirtualDisc::end(BlockKind kind) const {
  std::int32_t end = 0;
  for (const VirtualTrack& track : tracks())
    if (track.kind == kind) end = track.end();
  return end;
}

std::optional<BlockKind> VirtualDisc::kind() const {
  if (sessions.empty()) return std::nullopt;
  return sessions.front().tracks.front().kind;
}

DiscState VirtualDisc::state() const {
  DiscState state;
  state.rewritable = medium == Medium::CdRw;
  state.sessions = static_cast<std::int16_t>(sessions.size());
  state.lastSession = sessions.empty() ? SessionEmpty : SessionClosed;
  state.text.disc = name;
  std::int16_t number = 0;
  for (const VirtualSession& session : sessions) {
    ++number;
    for (const VirtualTrack& track : session.tracks) {
      state.tracks.push_back({track.kind, track.start, track.length, number});
      state.text.tracks.push_back(track.name);
    }
  }
  if (status == Status::Closed || status == Status::Writing) {
    state.status = DiscClosed;
    return state;
  }
  state.status = status == Status::Blank ? DiscEmpty : DiscOpen;
  if (continuesSession(*this)) state.lastSession = SessionIncomplete;
  state.nextWritable = nextStart(*this, standardPause);
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
  if (status == Status::Writing) throwSpoilt();
  requireFits(order, state());
  VirtualDisc after = *this;
  const std::int32_t pause = order.kind == AudioBlocks ? order.pause : standardPause;
  std::int64_t start = nextStart(*this, pause);
  requireRoom(*this, order.kind, start + blocksOf(order));
  std::int32_t pregap = continuesSession(*this) ? pause : (sessions.empty() ? 0 : standardPause);
  if (!continuesSession(*this)) after.sessions.emplace_back();
  for (const std::int32_t blocks : order.trackBlocks) {
    after.sessions.back().tracks.push_back({order.kind, static_cast<std::int32_t>(start), blocks, pregap, {}});
    start += std::int64_t{blocks} + pause;
    pregap = pause;
  }
  if (order.closes()) takeText(after, order);
  after.sessions.back().closed = order.closes();
  after.status = order.closeDisc ? Status::Closed : Status::Open;
  return after;
}

VirtualDisc VirtualDisc::afterClosing(bool alsoDisc) const {
  if (status == Status::Writing) throwSpoilt();
  if (status != Status::Open || !continuesSession(*this))
    throw deviceError(sense::badSequence, "the disc has no incomplete session that could be closed");
  VirtualDisc after = *this;
  after.sessions.back().closed = true;
  if (alsoDisc) after.status = Status::Closed;
  return after;
}

VirtualDisc VirtualDisc::erased() const {
  if (medium != Medium::CdRw)
    throw deviceError(sense::cannotWriteMedium, "the disc cannot be erased: it can be written once only");
  VirtualDisc blank = *this;
  blank.status = Status::Blank;
  blank.name = {};
  blank.sessions.clear();
  return blank;
}

}  // namespace trackloom::engines::virtualrecorder
