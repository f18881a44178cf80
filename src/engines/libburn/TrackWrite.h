#pragma once

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/libburn/Drive.h"

namespace trackloom::engines::libburn {

/// A write of tracks at once, each closed behind its last block, or a test of one. It may leave its session open, which
/// the library cannot, and go on in one that is open.
class TrackWrite {
 public:
  /// All of them outlive the write.
  TrackWrite(Drive& drive, bool guarded, const WriteOrder& order, SectorSource& source, OperationObserver& observer,
             const std::stop_token& stop);

  void run();
  /// A block may be on the disc.
  bool touched() const { return touched_; }

 private:
  WriteParameters parameters() const;
  void beginTrack(std::int16_t track);
  void writeTrack(std::int16_t track);
  void closeSessionAndDisc();
  void requireNotStopped() const;

  Drive& drive_;
  bool guarded_;
  const WriteOrder& order_;
  SectorSource& source_;
  OperationObserver& observer_;
  const std::stop_token& stop_;
  std::vector<std::byte> sectors_;
  bool touched_ = false;
};

}  // namespace trackloom::engines::libburn
