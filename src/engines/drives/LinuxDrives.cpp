#include "engines/drives/LinuxDrives.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "engines/drives/DriveKinds.h"
#include "engines/drives/FolderEntries.h"
#include "engines/drives/ReadAhead.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::drives {

namespace {

std::string mountinfo(const HostPath& system) {
  try {
    return ReadStart(HostPath(EnsureTrailingSep(system.text) + "proc/self/mountinfo"),
                     std::numeric_limits<std::size_t>::max());
  } catch (const RuntimeError&) {
    // A system that tells of no mounts has no drives.
    return "";
  }
}

}  // namespace

LinuxDrives::LinuxDrives(Patience& patience, HostPath system) : patience_(patience), system_(std::move(system)) {}

std::string LinuxDrives::LogicalDriveRoots() {
  mounts_ = distinctMounts(readMounts(mountinfo(system_)));
  std::string roots;
  for (const Mount& mount : mounts_) roots += mount.place + '\0';
  return roots + '\0';
}

int LinuxDrives::DriveType(const std::string& root) {
  constexpr int NoSuchDrive = 1;
  const auto mount = std::find_if(mounts_.begin(), mounts_.end(), [&](const Mount& m) { return m.place == root; });
  return mount == mounts_.end() ? NoSuchDrive : driveTypeOf(*mount, system_);
}

std::unique_ptr<DriveWalk> LinuxDrives::walk(const std::string& root) {
  return std::make_unique<ReadAhead>(
      root, [mount = mountOf(root)](const std::string& folder) { return entriesOf(folder, mount); }, patience_);
}

}  // namespace trackloom::engines::drives
