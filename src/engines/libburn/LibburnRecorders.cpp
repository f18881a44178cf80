#include "engines/libburn/LibburnRecorders.h"

#include "engines/disc/DriveId.h"
#include "engines/libburn/Drive.h"
#include "engines/libburn/LibburnRecorder.h"

namespace trackloom::engines::libburn {

namespace {

std::string trimmed(const std::string& text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

SeenDrive askDrive(const std::string& node) {
  Drive drive(node, Hold::Shared);
  const DriveIdentity identity = drive.identity();
  SeenDrive seen{node, {}, trimmed(identity.vendor), trimmed(identity.product), drive.writesDiscs()};
  seen.id = driveId(seen.vendor, seen.product, drive.serialNumber(), node);
  return seen;
}

RecorderList recordersAmong(const std::vector<SeenDrive>& drives, const std::shared_ptr<DiscMounts>& mounts) {
  RecorderList recorders;
  for (const SeenDrive& drive : drives)
    if (drive.writesDiscs) recorders.push_back(std::make_shared<LibburnRecorder>(drive.node, drive.id, mounts));
  return recorders;
}

}  // namespace trackloom::engines::libburn
