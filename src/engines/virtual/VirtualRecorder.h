#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "engines/disc/Recorder.h"
#include "runtime/Paths.h"

namespace trackloom::engines::virtualrecorder {

/// A CD recorder that is a folder: the disc in it is the one folder in tray/. Every call reads the folder as it is at
/// that moment, so discs may be changed from outside at any time. Safe from any thread.
///
/// What is out of order is answered so, and never touched: no tray, a file or a link instead of a tray or a disc, an
/// empty tray, or two discs in it: no disc. A disc.ini that is missing, unreadable or senseless, or that does not fit
/// the sectors beside it, and a disc whose write was cut off: a closed disc without room.
class VirtualRecorder : public Recorder {
 public:
  explicit VirtualRecorder(HostPath folder) : folder_(std::move(folder)) {}

  DriveIdentity identity() const override;
  bool take() override;
  void enableWriteGuard(bool on) override { writeGuard_ = on; }
  bool writeGuardEnabled() const { return writeGuard_; }
  std::optional<DiscState> look() override;
  /// Moves the disc to the shelf and, with automatic feed, puts a blank one in its place. False also while a write
  /// runs.
  bool eject() override;
  std::unique_ptr<DiscWrite> begin(const WriteOrder& order) override;

 private:
  HostPath folder_;
  std::atomic<bool> writeGuard_ = false;
};

}  // namespace trackloom::engines::virtualrecorder
