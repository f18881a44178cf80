#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "engines/disc/ReadingDrive.h"
#include "engines/ripper/RipFile.h"

namespace trackloom::engines::ripper {

/// What the reader met, for RipStatus.
struct Trouble {
  std::int32_t code = 0;
  std::int32_t sector = 0;
};

/// How the making of a track's file ended.
struct TrackEnd {
  /// A code of RipStatus, or `status::whole`.
  std::int32_t code = 0;
  std::optional<Checksums> sums;
  /// Null: none could be made.
  std::unique_ptr<RipFile> file;
};

/// What is new of a track since it was last looked at.
struct TrackNews {
  std::vector<Trouble> troubles;
  /// Sectors that are in the file.
  std::int32_t done = 0;
  bool ended = false;
};

/// What the threads of one rip have in common: the sound between reader and workers, within a bound, and what the one
/// that tells of it needs. Tracks count from 0, in the order of the rip. A cancel wakes all; whoever waits then throws
/// Stopped. Safe from any thread.
class RipBoard {
 public:
  explicit RipBoard(std::size_t tracks) : tracks_(tracks) {}

  void cancel();
  bool cancelled() const { return stop_.stop_requested(); }
  std::stop_token stopToken() const { return stop_.get_token(); }
  /// Runs this unless the rip was cancelled, which then waits for it.
  void unlessCancelled(const std::function<void()>& action);

  // The reader.

  /// Waits for room; false: the track wants no more.
  bool put(std::size_t track, std::vector<std::byte> sound);
  void met(std::size_t track, Trouble trouble);
  /// Nothing more comes of the track.
  void endReading(std::size_t track, std::int32_t code);
  /// Until nobody needs the disc any more.
  void awaitRelease();

  // The workers.

  /// The next track that nobody works at; nothing: there is none.
  std::optional<std::size_t> claim();
  void opened(std::size_t track, const HostPath& path);
  /// Nothing: that was all. Throws TrackFailed where the reader did not come to the end.
  std::optional<std::vector<std::byte>> take(std::size_t track);
  void advance(std::size_t track, std::int32_t sectors);
  void end(std::size_t track, TrackEnd end);

  // Whoever tells.

  /// Where the track's file lies; empty: none could be made.
  HostPath awaitOpened(std::size_t track);
  /// At the latest after that time.
  TrackNews await(std::size_t track, std::chrono::milliseconds atMost);
  TrackEnd takeEnd(std::size_t track);
  /// Where the files lie whose ends nobody has taken.
  std::vector<HostPath> filesLeft() const;
  /// What the reader met on the track, by code: how often.
  std::map<std::int32_t, int> troublesOf(std::size_t track) const;
  /// Lasts for that time.
  void pause(std::chrono::milliseconds time);
  void release();
  // Reader and workers.
  void threadComes();
  void threadGoes();
  /// Until none of them is left, at the longest for that time; a cancel does not cut it short.
  void awaitThreads(std::chrono::milliseconds atMost);
  void endTelling();
  /// Until that, at the longest for that time; a cancel does not cut it short.
  void awaitEndOfTelling(std::chrono::milliseconds atMost);

 private:
  struct Track {
    std::deque<std::vector<std::byte>> sound;
    bool readingEnded = false;
    std::int32_t readingCode = 0;
    std::optional<HostPath> path;
    std::vector<Trouble> troubles;
    std::map<std::int32_t, int> troubleCounts;
    std::int32_t done = 0;
    std::optional<TrackEnd> end;
    bool endTaken = false;
  };
  using Lock = std::unique_lock<std::mutex>;

  /// Throws Stopped where the rip was cancelled meanwhile.
  template <class Condition>
  void wait(Lock& lock, Condition condition) {
    changed_.wait(lock, [&] { return cancelled() || condition(); });
    if (cancelled()) throw Stopped();
  }
  void drop(Track& track);

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::stop_source stop_;
  std::vector<Track> tracks_;
  std::size_t claimed_ = 0;
  std::size_t buffered_ = 0;
  int threads_ = 0;
  bool released_ = false;
  bool told_ = false;
};

}  // namespace trackloom::engines::ripper
