#pragma once

#include <memory>
#include <optional>
#include <string>

#include "engines/ripper/RipWorld.h"

namespace trackloom::engines::ripper {

/// A drive with a disc of one track of 40 sectors, which a test reads in its own way.
class OneTrackDrive : public ReadingDrive {
 public:
  OneTrackDrive();
  ~OneTrackDrive() override;

  std::string id() const override;
  DriveNames names() override;
  void take() override;
  bool discPresent() override;
  std::optional<DiscContents> contents() override;
  std::int16_t maxSpeed() override;
};

/// The engine ripping the track of such a drive.
struct OneTrackRip {
  explicit OneTrackRip(std::shared_ptr<ReadingDrive> drive);
  ~OneTrackRip();
  OneTrackRip(const OneTrackRip&) = delete;
  OneTrackRip& operator=(const OneTrackRip&) = delete;

  bool runToEnd();

  const fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::RipperTranscript heard;
  DiscRippers rippers;
  std::unique_ptr<CDRipperX> ripper;
};

}  // namespace trackloom::engines::ripper
