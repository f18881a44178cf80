#pragma once

#include "engines/drives/Mounts.h"
#include "runtime/Paths.h"

namespace trackloom::engines::drives {

/// The kind of drive that holds the mount, as the port's numbers tell it. A drive that reaches through others (LVM,
/// LUKS, RAID) is removable where one of them is. `system` is the folder in which the system's sys lies.
int driveTypeOf(const Mount& mount, const HostPath& system);

}  // namespace trackloom::engines::drives
