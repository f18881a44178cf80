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
  bool guardOn = false;
  std::atomic<int> writesUnderWay = 0;
  std::vector<WriteOrder> orders;

  void insert(FakeDisc disc) {
    const std::lock_guard lock(mutex_);
    disc_ = std::move(disc);
  }
  std::optional<FakeDisc> disc() const {
    const std::lock_guard lock(mutex_);
    return disc_;
  }

  DriveIdentity identity() const override { return name; }
  bool take() override { return !refuseTake; }
  void enableWriteGuard(bool on) override { guardOn = on; }
  std::optional<DiscState> look() override {
    const std::lock_guard lock(mutex_);
    return disc_ ? std::optional(disc_->state) : std::nullopt;
  }
  bool eject() override {
    const std::lock_guard lock(mutex_);
    if (refuseEject || writesUnderWay != 0) return false;
    disc_.reset();
    return true;
  }
  std::unique_ptr<DiscWrite> begin(const WriteOrder& order) override;

 private:
  friend class FakeWrite;

  mutable std::mutex mutex_;
  std::optional<FakeDisc> disc_;
};

class FakeWrite : public DiscWrite {
 public:
  FakeWrite(FakeRecorder& recorder, WriteOrder order) : recorder_(recorder), order_(std::move(order)) {
    ++recorder_.writesUnderWay;
  }
  ~FakeWrite() override {
    if (!finished_ && !order_.test) recorder_.insert(FakeDisc::closed());
    --recorder_.writesUnderWay;
  }

  void startTrack() override { tracks_.emplace_back(); }
  void write(std::span<const std::byte> sectors) override {
    std::this_thread::sleep_for(recorder_.everyWrite);
    blocks_ += static_cast<std::int64_t>(sectors.size() / (order_.kind == AudioBlocks ? 2352 : 2048));
    if (recorder_.failAtBlock && blocks_ > *recorder_.failAtBlock)
      throw EngineError(ErrorKind::Device, 0x030C00,
                        "write error at block " + std::to_string(*recorder_.failAtBlock) + " (3/0C/00)");
    tracks_.back().append(reinterpret_cast<const char*>(sectors.data()), sectors.size());
  }
  std::int16_t bufferPercent() override { return 97; }
  void closeTrack() override { failIfClosing("track"); }
  void closeSession() override { failIfClosing("session"); }
  void closeDisc() override { failIfClosing("disc"); }
  void finish() override {
    finished_ = true;
    if (order_.test) return;
    const bool closed = order_.closeSession || order_.closeDisc;
    FakeDisc disc = *recorder_.disc();
    disc.tracks.insert(disc.tracks.end(), tracks_.begin(), tracks_.end());
    disc.state.status = order_.closeDisc ? DiscClosed : DiscOpen;
    disc.state.lastSession = closed ? SessionClosed : SessionIncomplete;
    disc.state.sessions = static_cast<std::int16_t>(disc.state.sessions + 1);
    const auto used = static_cast<std::int32_t>(blocks_);
    disc.state.freeAudioBlocks = order_.closeDisc ? 0 : disc.state.freeAudioBlocks - used;
    disc.state.freeDataBlocks = order_.closeDisc ? 0 : disc.state.freeDataBlocks - used;
    recorder_.insert(disc);
  }

 private:
  void failIfClosing(const std::string& part) const {
    if (recorder_.failClosing == part)
      throw EngineError(ErrorKind::Device, 0x057200, part + " could not be closed (5/72/00)");
  }

  FakeRecorder& recorder_;
  WriteOrder order_;
  std::vector<std::string> tracks_;
  std::int64_t blocks_ = 0;
  bool finished_ = false;
};

inline std::unique_ptr<DiscWrite> FakeRecorder::begin(const WriteOrder& order) {
  orders.push_back(order);
  return std::make_unique<FakeWrite>(*this, order);
}

}  // namespace trackloom::engines::writer
