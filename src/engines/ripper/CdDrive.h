#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engines/disc/ReadingDrive.h"
#include "engines/disc/Recorder.h"
#include "engines/ripper/CdNode.h"

namespace trackloom::engines::ripper {

/// A CD drive of this machine, read through libcdio and its paranoia, which reads again until it is sure. Each call
/// opens the drive and lets go of it; a reading holds it alone, with the tray locked.
class CdDrive final : public ReadingDrive {
 public:
  CdDrive(std::string path, LibraryLock library) : path_(std::move(path)), library_(std::move(library)) {}

  /// The same that a recorder of the machine has.
  std::string id() const override;
  DriveNames names() override;
  void take() override;
  bool discPresent() override;
  /// An EngineError also where the disc is mounted or another program has it, with words for that.
  std::optional<DiscContents> contents() override;
  std::int16_t maxSpeed() override;
  std::unique_ptr<DiscReading> begin(std::int16_t speed) override;

 private:
  std::vector<std::uint8_t> ask(const std::vector<std::uint8_t>& command, std::size_t most) const;
  DriveNames inquire() const;
  DiscText text(std::size_t tracks) const;

  std::string path_;
  LibraryLock library_;
  DriveNames names_;
};

/// The CD drives of this machine that may be opened, /dev/sr0 first.
ReadingDrives findCdDrives();

/// Each known recorder in its place, through `real` where that has the same id, and behind them those of `real` that
/// only read.
ReadingDrives drivesInOrder(const RecorderList& recorders, const ReadingDrives& real);

}  // namespace trackloom::engines::ripper
