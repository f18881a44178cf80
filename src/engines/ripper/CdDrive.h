#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engines/disc/DriveSurvey.h"
#include "engines/disc/KnownDrives.h"
#include "engines/disc/ReadingDrive.h"
#include "engines/disc/Recorder.h"
#include "engines/ripper/CdNode.h"

namespace trackloom::engines::ripper {

/// A CD drive of this machine, read through libcdio and its paranoia, which reads again until it is sure. Each call
/// opens the drive and lets go of it; a reading holds it alone, with the tray locked.
class CdDrive final : public ReadingDrive {
 public:
  CdDrive(const SeenDrive& seen, LibraryLock library)
      : path_(seen.node), id_(seen.id), library_(std::move(library)), names_{seen.vendor, seen.product} {}

  /// The same that a recorder of the machine has.
  std::string id() const override { return id_; }
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
  std::string id_;
  LibraryLock library_;
  DriveNames names_;
};

/// Each of them as one that is read.
ReadingDrives cdDrives(const std::vector<SeenDrive>& seen);

/// A drive for each known one: that of `real` which has its id, else the recorder, else one that is not connected.
ReadingDrives drivesInOrder(const std::vector<KnownDrive>& known, const RecorderList& recorders,
                            const ReadingDrives& real);

}  // namespace trackloom::engines::ripper
