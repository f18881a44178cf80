#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/libburn/Library.h"
#include "engines/libburn/Supply.h"

namespace trackloom::engines::libburn {

/// A write by the library, or a test of one, which closes its session: audio on a blank disc as one session at once,
/// all else as tracks at once.
class SessionWrite {
 public:
  /// All of them outlive the write; the source has begun its first track.
  SessionWrite(bool blankDisc, bool guarded, const WriteOrder& order, SectorSource& source, OperationObserver& observer,
               const std::stop_token& stop);

  void run(const std::string& path);
  /// A block may be on the disc.
  bool touched() const { return touched_; }

 private:
  bool atOnce() const { return blankDisc_ && order_.kind == AudioBlocks; }
  OwnedTrack trackOf(std::int16_t number);
  OwnedOptions optionsFor(burn::burn_drive* drive) const;
  void burnTracks(burn::burn_drive* drive);
  void start(burn::burn_drive* drive, const OwnedOptions& options, const OwnedDisc& disc);
  void attend(burn::burn_drive* drive);
  void hearOfBuffer(const burn::burn_progress& progress);
  void attendOnce();
  std::vector<std::byte> make(std::int16_t track);
  void begin(std::int16_t track);
  void tellTaken();
  void tellClosings();
  void requireWell(burn::burn_drive* drive) const;

  bool blankDisc_;
  bool guarded_;
  const WriteOrder& order_;
  SectorSource& source_;
  OperationObserver& observer_;
  const std::stop_token& stop_;
  std::shared_ptr<Supply> supply_ = std::make_shared<Supply>();
  std::int16_t track_ = 0;
  std::int32_t position_ = 0;
  std::int16_t bufferPercent_{};
  std::exception_ptr failure_;
  bool touched_ = false;
  bool closingsTold_ = false;
};

}  // namespace trackloom::engines::libburn
