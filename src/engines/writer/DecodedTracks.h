#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

#include "engines/writer/PieceSource.h"

namespace trackloom::engines::writer {

/// The bounded buffer between the threads that decode the tracks of a disc and the one that reads them in order. The
/// track being read always has a share to itself, so that work on later tracks never holds up the writing. Safe from
/// any thread.
class DecodedTracks {
 public:
  using Chunk = Piece;

  static constexpr std::size_t capacity = std::size_t{48} << 20;
  /// What later tracks leave to the one being read: 17 seconds of music. The decoder of the next track so goes on
  /// beside that of a track of up to four and a half minutes, and the last two end together.
  static constexpr std::size_t currentTrackShare = std::size_t{3} << 20;

  /// The bytes of each track.
  explicit DecodedTracks(const std::vector<std::size_t>& lengths);

  /// The next track that nobody decodes yet; nothing: none is left.
  std::optional<std::size_t> claim();
  /// Waits for room. Throws Stopped.
  void keep(std::size_t track, Chunk chunk, const std::stop_token& stop);
  /// The track has no more chunks; a `failure` is thrown to the reader where they end.
  void finish(std::size_t track, std::exception_ptr failure);

  /// The next chunk of all tracks, which must not be over; waits for it. Throws Stopped, and the failure of a track.
  Chunk take(const std::stop_token& stop);
  /// How much is decoded of what the buffer could hold of the rest.
  std::int16_t percent() const;

 private:
  struct Track {
    std::deque<Chunk> chunks;
    bool finished = false;
    std::exception_ptr failure;
  };

  bool hasRoom(std::size_t track) const;
  Track& trackWithChunk(std::unique_lock<std::mutex>& lock, const std::stop_token& stop);

  mutable std::mutex mutex_;
  // Told at every change of what it guards: both sides wait here, and for each other.
  std::condition_variable_any changed_;
  std::vector<Track> tracks_;
  std::size_t claimed_ = 0;
  std::size_t current_ = 0;
  std::size_t buffered_ = 0;
  std::size_t unread_ = 0;
};

}  // namespace trackloom::engines::writer
