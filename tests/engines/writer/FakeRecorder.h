#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "engines/disc/Recorder.h"

namespace trackloom::engines::writer {

/// A disc in memory: its state as a recorder sees it, and what was written onto it, track by track.
struct FakeDisc {
  DiscState state;
  std::vector<std::string> tracks;

  static FakeDisc blank(std::int32_t blocks = 359849);
  static FakeDisc closed();
};

/// A recorder in memory, which fails and dawdles where it is told to. Set it up while nothing runs.
class FakeRecorder : public Recorder {
 public:
  FakeRecorder();
  ~FakeRecorder() override;

  DriveIdentity name;
  bool refuseTake = false;
  bool refuseEject = false;
  /// The block of the write at which it fails, counted over all tracks.
  std::optional<std::int64_t> failAtBlock;
  std::string failClosing;
  std::chrono::milliseconds everyWrite{0};
  /// Blocks of each track that it neither takes nor speaks of, and blocks that it takes and never records.
  std::int32_t leavesOut = 0;
  std::int32_t keepsBack = 0;
  bool guardOn = false;
  std::atomic<int> writesUnderWay = 0;
  std::vector<WriteOrder> orders;
  bool cachesAll = false;
  /// What it was told of the blocks in the cache.
  std::vector<std::int64_t> cached;
  std::vector<bool> erases;
  /// Whether erasing and closing fail.
  bool failChange = false;

  void insert(FakeDisc disc);
  std::optional<FakeDisc> disc() const;

  std::string id() const override;
  bool cachesAllFirst() const override;
  CacheWatch cacheWatch() override;
  bool take() override;
  void enableWriteGuard(bool on) override;
  std::shared_ptr<const DriveSnapshot> look() override;
  void check(const WriteOrder& order) override;
  void write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
             const std::stop_token& stop) override;
  void erase(bool quick, OperationObserver& observer, const std::stop_token& stop) override;
  void close(bool alsoDisc, OperationObserver& observer, const std::stop_token& stop) override;
  std::vector<std::byte> read(std::int32_t, std::int32_t) override;
  void eject() override;

 private:
  void work(OperationObserver& observer, const std::stop_token& stop, void (OperationObserver::*phase)());

  mutable std::mutex mutex_;
  std::optional<FakeDisc> disc_;
};

}  // namespace trackloom::engines::writer
