#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/disc/Sense.h"

namespace trackloom::engines::writer {

/// A disc in memory: its state as a recorder sees it, and what was written onto it, track by track.
struct FakeDisc {
  DiscState state;
  std::vector<std::string> tracks;

  static FakeDisc blank(std::int32_t blocks = 359849) {
    FakeDisc disc;
    disc.state.freeAudioBlocks = blocks;
    disc.state.freeDataBlocks = blocks;
    return disc;
  }
  static FakeDisc closed() {
    FakeDisc disc;
    disc.state.status = DiscClosed;
    disc.state.sessions = 1;
    disc.state.lastSession = SessionClosed;
    return disc;
  }
};

/// A recorder in memory, which fails and dawdles where it is told to. Set it up while nothing runs.
class FakeRecorder : public Recorder {
 public:
  DriveIdentity name{" Fake ", "Recorder\t", 16, true};
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
  std::vector<bool> erases;
  /// Whether erasing and closing fail.
  bool failChange = false;

  void insert(FakeDisc disc) {
    const std::lock_guard lock(mutex_);
    disc_ = std::move(disc);
  }
  std::optional<FakeDisc> disc() const {
    const std::lock_guard lock(mutex_);
    return disc_;
  }

  std::string id() const override { return "fake"; }
  bool take() override { return !refuseTake; }
  void enableWriteGuard(bool on) override { guardOn = on; }
  std::shared_ptr<const DriveSnapshot> look() override {
    const std::lock_guard lock(mutex_);
    return std::make_shared<DriveSnapshot>(DriveSnapshot{name, disc_ ? std::optional(disc_->state) : std::nullopt});
  }
  void check(const WriteOrder& order) override {
    const auto disc = look()->disc;
    if (!disc) throw deviceError(sense::noMedium, "no disc is in the drive");
    requireFits(order, *disc);
  }
  void write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
             const std::stop_token& stop) override;
  void erase(bool quick, OperationObserver& observer, const std::stop_token& stop) override {
    erases.push_back(quick);
    work(observer, stop, &OperationObserver::erasing);
    insert(FakeDisc::blank());
  }
  void close(bool alsoDisc, OperationObserver& observer, const std::stop_token& stop) override {
    work(observer, stop, &OperationObserver::sessionClosing);
    FakeDisc closed = *disc();
    closed.state.lastSession = SessionClosed;
    if (alsoDisc) closed.state.status = DiscClosed;
    insert(closed);
  }
  std::vector<std::byte> read(std::int32_t, std::int32_t) override { return {}; }
  void eject() override {
    const std::lock_guard lock(mutex_);
    if (refuseEject || writesUnderWay != 0) throw deviceError(sense::trayStuck, "the tray is stuck");
    disc_.reset();
  }

 private:
  void work(OperationObserver& observer, const std::stop_token& stop, void (OperationObserver::*phase)()) {
    (observer.*phase)();
    if (failChange) throw deviceError(sense::writeError, "the drive smokes");
    std::this_thread::sleep_for(everyWrite);
    if (stop.stop_requested()) throw Stopped();
  }

  mutable std::mutex mutex_;
  std::optional<FakeDisc> disc_;
};

}  // namespace trackloom::engines::writer
