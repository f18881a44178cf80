#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace emulated {

/// What the sectors of a track are; the numbers are those of the data mode in track information.
enum class Kind : std::uint8_t { Audio = 0, Mode1 = 1, Mode2 = 2 };

enum class TrackState : std::uint8_t {
  /// Blocks can still be written behind its end.
  Open,
  Complete,
  /// Laid out by a cue sheet whose last block was not written.
  Partial
};

/// A track; all addresses are blocks, `end` is the first one behind it.
struct Track {
  std::int32_t number = 1;
  std::int32_t session = 1;
  Kind kind = Kind::Audio;
  std::uint8_t control = 0;
  std::int32_t pregap = 0;
  std::int32_t start = 0;
  std::int32_t end = 0;
  /// What was set aside for it; 0: it grows as it is written.
  std::int32_t reserved = 0;
  TrackState state = TrackState::Complete;
};

struct Session {
  bool closed = false;
  /// Of a closed session where the lead-out begins, of an open one where writing goes on.
  std::int32_t leadOut = 0;
};

/// The blocks between the lead-out of one session and the first block of the next: lead-out, lead-in and pre-gap
/// (Orange Book; 90 s of lead-out for the first session, 30 s for later ones, 60 s of lead-in).
constexpr std::int32_t gapBehindSession(std::size_t sessions) {
  return sessions == 1 ? 6750 + 4500 + 150 : 2250 + 4500 + 150;
}

/// A recordable disc but for its sectors. Kept as a text file, which is replaced whole.
struct Disc {
  bool rewritable = false;
  /// Where the last lead-out may begin.
  std::int32_t capacity = 359849;
  /// The first block of the lead-in as the disc tells it.
  std::int32_t leadIn = -12900;
  bool finalized = false;
  std::vector<Session> sessions;
  std::vector<Track> tracks;

  bool blank() const { return sessions.empty(); }
  bool sessionIsOpen() const { return !blank() && !sessions.back().closed; }
  /// Laid out by a cue sheet that was not written to its end; nothing can be added.
  bool damaged() const { return !tracks.empty() && tracks.back().state == TrackState::Partial; }
  bool writable() const { return !finalized && !damaged(); }
  std::int32_t sessionNumber() const { return static_cast<std::int32_t>(sessions.size()); }
  std::int32_t nextTrackNumber() const { return static_cast<std::int32_t>(tracks.size()) + 1; }
  std::int32_t closedSessions() const { return sessionNumber() - (sessionIsOpen() ? 1 : 0); }
  /// The first content block of a track that is begun now.
  std::int32_t nextStart() const;
  /// The track that takes blocks at its end; nullptr: none.
  Track* openTrack();
  const Track* openTrack() const { return const_cast<Disc*>(this)->openTrack(); }
  /// nullptr: no track has this block, its pre-gap included.
  const Track* trackAt(std::int32_t block) const;
  const Track* firstOf(std::int32_t session) const;
  const Track* lastOf(std::int32_t session) const;

  /// Makes sure that a session is open and adds a track to it.
  Track& add(Track track);
  void closeSession(bool finalize);
  void makeBlank();

  static Disc load(const std::filesystem::path& file);
  void save(const std::filesystem::path& file) const;
};

}  // namespace emulated
