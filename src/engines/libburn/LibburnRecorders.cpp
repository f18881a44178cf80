#include "engines/libburn/LibburnRecorders.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "engines/libburn/Drive.h"
#include "engines/libburn/LibburnRecorder.h"

namespace trackloom::engines::libburn {

namespace {

constexpr int mostNodes = 16;

std::string trimmed(const std::string& text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// What the drive calls itself, with its number where it has one, else with its place.
std::string idOf(Drive& drive, const std::string& path) {
  const DriveIdentity identity = drive.identity();
  const std::string number = drive.serialNumber();
  std::string id = trimmed(identity.vendor) + " " + trimmed(identity.product) + " " + (number.empty() ? path : number);
  std::ranges::replace(id, '|', '/');
  return id;
}

std::shared_ptr<Recorder> recorderAt(const std::string& path) {
  try {
    Drive drive(path, Hold::Shared);
    if (drive.writesDiscs()) return std::make_shared<LibburnRecorder>(path, idOf(drive, path));
  } catch (const EngineError&) {
    return nullptr;
  }
  return nullptr;
}

}  // namespace

RecorderList findRecorders() {
  RecorderList recorders;
  for (int number = 0; number < mostNodes; ++number)
    if (auto recorder = recorderAt("/dev/sr" + std::to_string(number))) recorders.push_back(std::move(recorder));
  return recorders;
}

}  // namespace trackloom::engines::libburn
