#include "engines/libburn/LibburnRecorders.h"

#include <memory>
#include <optional>
#include <string>

#include "engines/disc/DriveId.h"
#include "engines/libburn/Drive.h"
#include "engines/libburn/LibburnRecorder.h"

namespace trackloom::engines::libburn {

namespace {

constexpr int mostNodes = 16;

std::string trimmed(const std::string& text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string idOf(Drive& drive, const std::string& path) {
  const DriveIdentity identity = drive.identity();
  return driveId(trimmed(identity.vendor), trimmed(identity.product), drive.serialNumber(), path);
}

std::shared_ptr<Recorder> recorderAt(const std::string& path, const std::shared_ptr<DiscMounts>& mounts) {
  try {
    Drive drive(path, Hold::Shared);
    if (drive.writesDiscs()) return std::make_shared<LibburnRecorder>(path, idOf(drive, path), mounts);
  } catch (const EngineError&) {
    return nullptr;
  }
  return nullptr;
}

}  // namespace

RecorderList findRecorders(const std::shared_ptr<DiscMounts>& mounts) {
  RecorderList recorders;
  for (int number = 0; number < mostNodes; ++number)
    if (auto recorder = recorderAt("/dev/sr" + std::to_string(number), mounts))
      recorders.push_back(std::move(recorder));
  return recorders;
}

}  // namespace trackloom::engines::libburn
