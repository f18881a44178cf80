#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/virtual/RecorderFolder.h"
#include "engines/virtual/SectorFile.h"

namespace trackloom::engines::virtualrecorder {

/// A write onto the disc in the tray, or a test of one, which makes and refuses the same calls and changes nothing.
/// Holds the recorder until it is gone. The disc is marked as being written before the first sector goes out and gets
/// its new state after the last one is on the medium, so a write that ends anywhere between leaves a spoilt disc behind
/// whose earlier tracks are whole.
class VirtualWrite : public DiscWrite {
 public:
  /// `recorder` is locked. Throws EngineError, and the disc is as it was.
  VirtualWrite(RecorderFolder recorder, DiscFolder disc, const WriteOrder& order);

  void startTrack() override;
  void write(std::span<const std::byte> sectors) override;
  void closeTrack() override;
  void closeSession() override;
  void closeDisc() override;
  void finish() override;

 private:
  void markAsWriting(const VirtualDisc& before);
  void put(std::int32_t block, std::span<const std::byte> sectors);
  void recordContents();
  void keepPace(std::int64_t blocks);
  void requireAllTracks() const;
  void failIfClosing(const char* part) const;
  [[noreturn]] void fail(const std::string& otherwise) const;

  std::optional<RecorderFolder> recorder_;
  DiscFolder disc_;
  RecorderSettings settings_;
  WriteOrder order_;
  VirtualDisc after_;
  std::vector<VirtualTrack> tracks_;
  std::optional<SectorFile> sectors_;
  std::optional<std::int32_t> faultAt_;

  std::size_t track_ = 0;
  bool inTrack_ = false;
  bool finished_ = false;
  std::int32_t blocksOfTrack_ = 0;

  double blocksPerSecond_ = 0;
  std::int64_t blocksInAll_ = 0;
  std::chrono::steady_clock::time_point started_;
};

}  // namespace trackloom::engines::virtualrecorder
