#pragma once

#include <vector>

#include "engines/drives/Mounts.h"
#include "ports/Drives.h"
#include "ports/Patience.h"
#include "runtime/Paths.h"

namespace trackloom::engines::drives {

/// The mounted file systems as drives, each folder of each of them in one drive only: what lies mounted within a drive
/// is none of its folders.
class LinuxDrives final : public Drives {
 public:
  /// `system` is the folder in which the system's proc and sys lie.
  explicit LinuxDrives(Patience& patience, HostPath system = HostPath("/"));

  std::string LogicalDriveRoots() override;
  /// Of the drives as the roots were asked for last.
  int DriveType(const std::string& root) override;
  std::unique_ptr<DriveWalk> walk(const std::string& root) override;

 private:
  Patience& patience_;
  HostPath system_;
  std::vector<Mount> mounts_;
};

}  // namespace trackloom::engines::drives
