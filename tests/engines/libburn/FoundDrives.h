#pragma once

#include <catch2/catch.hpp>
#include <memory>
#include <vector>

#include "engines/libburn/LibburnRecorders.h"

namespace trackloom::engines::libburn {

/// The drives of this machine, all of which answer.
inline std::vector<SeenDrive> seenDrives() {
  const DriveSurvey survey(driveNodes(), askDrive);
  REQUIRE(survey.wait(std::chrono::seconds(60)));
  return survey.result().seen;
}

inline RecorderList findRecorders(const std::shared_ptr<DiscMounts>& mounts = nullptr) {
  return recordersAmong(seenDrives(), mounts);
}

}  // namespace trackloom::engines::libburn
