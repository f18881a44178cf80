#pragma once

#include <memory>
#include <string>

#include "engines/disc/ReadingDrive.h"
#include "engines/disc/Recorder.h"

namespace trackloom::engines::ripper {

/// Reads discs through a recorder's own calls: the virtual ones, and the place of one that is not connected.
class RecorderDrive final : public ReadingDrive {
 public:
  explicit RecorderDrive(std::shared_ptr<Recorder> recorder) : recorder_(std::move(recorder)) {}

  std::string id() const override { return recorder_->id(); }
  DriveNames names() override;
  void take() override;
  bool discPresent() override;
  std::optional<DiscContents> contents() override;
  std::int16_t maxSpeed() override;
  std::unique_ptr<DiscReading> begin(std::int16_t speed) override;

 private:
  std::shared_ptr<Recorder> recorder_;
};

}  // namespace trackloom::engines::ripper
