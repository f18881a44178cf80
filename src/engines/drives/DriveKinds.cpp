#include "engines/drives/DriveKinds.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::drives {

namespace {

namespace fs = std::filesystem;

enum DriveKind { Unknown = 0, Removable = 2, Fixed = 3, Network = 4, Optical = 5, Memory = 6 };

constexpr std::array NetworkKinds{"9p",          "afs",        "ceph", "cifs",   "fuse.glusterfs",
                                  "fuse.rclone", "fuse.sshfs", "gfs2", "lustre", "ncpfs",
                                  "nfs",         "nfs4",       "smb3", "smbfs",  "virtiofs"};
constexpr std::array OpticalKinds{"cd9660", "iso9660", "udf"};
constexpr std::array MemoryKinds{"devtmpfs", "ramfs", "tmpfs"};
/// They know their drives by themselves, and the system shows none behind the numbers of their mounts.
constexpr std::array PoolKinds{"btrfs", "zfs"};

template <class Kinds>
bool isOneOf(const Kinds& kinds, std::string_view kind) {
  return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

/// The folder in which the system tells of the mount's block device; empty: it has none.
fs::path blockDevice(const Mount& mount, const fs::path& sys) {
  std::error_code none;
  if (fs::path known = fs::canonical(sys / "dev/block" / mount.device, none); !none) return known;
  // Names such as /dev/mapper/x are links to the device's own.
  const fs::path node = fs::weakly_canonical(mount.source, none);
  if (!mount.source.starts_with(HostSep)) return {};
  fs::path named = fs::canonical(sys / "class/block" / node.filename(), none);
  return none ? fs::path() : named;
}

bool saysRemovable(const fs::path& device) {
  try {
    return ReadStart(HostPath((device / "removable").string()), 1) == "1";
  } catch (const RuntimeError&) {
    return false;
  }
}

/// Only whole disks say it; a partition stands in the folder of its disk.
bool isRemovable(const fs::path& device) {
  if (device.empty()) return false;
  std::error_code none;
  if (saysRemovable(device) || saysRemovable(device.parent_path())) return true;
  const fs::directory_iterator slaves(device / "slaves", none);
  return std::any_of(begin(slaves), end(slaves), [&none](const fs::directory_entry& slave) {
    return isRemovable(fs::canonical(slave.path(), none));
  });
}

DriveKind kindOfDevice(const fs::path& device) {
  const std::string name = device.filename().string();
  if (name.starts_with("sr")) return Optical;
  if (name.starts_with("loop")) return Unknown;
  if (name.starts_with("ram") || name.starts_with("zram")) return Memory;
  return isRemovable(device) ? Removable : Fixed;
}

}  // namespace

int driveTypeOf(const Mount& mount, const HostPath& system) {
  if (isOneOf(NetworkKinds, mount.kind)) return Network;
  if (isOneOf(OpticalKinds, mount.kind)) return Optical;
  if (isOneOf(MemoryKinds, mount.kind)) return Memory;
  const fs::path device = blockDevice(mount, fs::path(system.text) / "sys");
  if (!device.empty()) return kindOfDevice(device);
  const bool holdsTheSystem = mount.place == std::string(1, HostSep);
  return holdsTheSystem || isOneOf(PoolKinds, mount.kind) ? Fixed : Unknown;
}

}  // namespace trackloom::engines::drives
