#pragma once

#include <memory>
#include <optional>
#include <string>

#include "engines/disc/ReadingDrive.h"

namespace trackloom::engines::ripper {

/// A drive with a disc of one track of 40 sectors, which a test reads in its own way.
class OneTrackDrive : public ReadingDrive {
 public:
  std::string id() const override { return "one track"; }
  DriveNames names() override { return {"ACME", "One Track"}; }
  void take() override {}
  bool discPresent() override { return true; }
  std::optional<DiscContents> contents() override { return DiscContents{{{AudioBlocks, 0, 40}}, 40}; }
  std::int16_t maxSpeed() override { return 4; }
};

}  // namespace trackloom::engines::ripper
