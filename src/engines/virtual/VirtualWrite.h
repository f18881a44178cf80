#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/virtual/DiscFolder.h"
#include "engines/virtual/Pacing.h"
#include "engines/virtual/RecorderSettings.h"
#include "engines/virtual/SectorFile.h"

namespace trackloom::engines::virtualrecorder {

/// A disc before and after an order, and where the order's tracks come to lie.
struct WritePlan {
  VirtualDisc before;
  VirtualDisc after;
  std::vector<VirtualTrack> tracks;
};

/// Throws EngineError for all that is known to stand in the way of the order; touches nothing.
WritePlan planWrite(const DiscFolder& disc, const WriteOrder& order);

/// A write onto a disc, or a test of one, which makes and refuses the same and changes nothing. The disc is marked as
/// being written before the first sector goes out and gets its new state after the last one is on the medium, so a
/// write that ends anywhere between leaves a spoilt disc behind whose earlier tracks are whole.
class VirtualWrite {
 public:
  /// All of them outlive the write.
  VirtualWrite(const DiscFolder& disc, const RecorderSettings& settings, const WriteOrder& order, SectorSource& source,
               OperationObserver& observer, const std::stop_token& stop);

  void run();

 private:
  void markAsWriting();
  void beginTrack(std::int16_t track);
  void writeTrack(std::int16_t track);
  void writeSectors(std::int32_t block, std::int32_t count);
  void closeSessionAndDisc();
  void recordContents();
  void requireNotStopped() const;

  const DiscFolder& disc_;
  const RecorderSettings& settings_;
  const WriteOrder& order_;
  SectorSource& source_;
  OperationObserver& observer_;
  const std::stop_token& stop_;

  WritePlan plan_;
  Pacing pacing_;
  std::optional<std::int32_t> faultAt_;
  std::optional<SectorFile> sectors_;
  /// Where the sectors of a test go.
  std::vector<std::byte> tested_;
};

}  // namespace trackloom::engines::virtualrecorder
