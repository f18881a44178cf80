#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include "engines/disc/DiscText.h"
#include "engines/writer/PieceSource.h"

namespace trackloom::engines::writer {

/// What is known of the sources of a write once they are opened and measured.
struct Measured {
  std::vector<std::int32_t> trackBlocks;
  DiscText text;
};

/// What passes between the thread that reads the sources of a write and the one that writes the disc. Every wait ends
/// with Stopped when its token is stopped. Both threads share it, so that either may be gone while the other still
/// waits for the system.
class HandOver {
 public:
  // The reading side.

  /// A reader is at work from here to end().
  void begin();
  void tellMeasured(Measured measured);
  /// The cache is there.
  void tellPrepared();
  /// Waits until the disc is about to take this track, from 1; 0: until the cache is wanted.
  void awaitWanted(std::int16_t track, const std::stop_token& stop);
  /// Waits while too much lies ready. `level`: how full the buffer is that the sectors came from.
  void put(Piece sectors, std::int16_t level, const std::stop_token& stop);
  void fail(std::exception_ptr failure);
  /// All sources have been let go of.
  void end();
  /// Does this unless the write has ended.
  void unlessAbandoned(const std::function<void()>& action);

  // The writing side; what made the reader fail is thrown once the sectors before it are used up.

  Measured measured(const std::stop_token& stop);
  /// Wants the cache, and waits until it is there.
  void prepare(const std::stop_token& stop);
  /// Wants a track, and waits for its first sectors.
  void want(std::int16_t track, const std::stop_token& stop);
  void take(std::span<std::byte> sectors, const std::stop_token& stop);
  std::int16_t level();
  /// Nothing is wanted any more.
  void abandon();
  /// False: the reader still waits for the system.
  bool awaitEnd(std::chrono::milliseconds limit, const std::stop_token& stop);

 private:
  void awaitSectors(std::unique_lock<std::mutex>& lock, const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::optional<Measured> measured_;
  std::deque<Piece> chunks_;
  std::size_t ready_ = 0;
  std::size_t taken_ = 0;
  std::int16_t wanted_ = -1;
  bool prepared_ = false;
  std::int16_t level_ = 100;
  std::exception_ptr failure_;
  bool abandoned_ = false;
  bool ended_ = true;
};

}  // namespace trackloom::engines::writer
