#pragma once

#include <iosfwd>
#include <string>

namespace trackloom::engines {

/// Where the file system of a device node is mounted, by a table as /proc/self/mounts is (fstab(5)); empty: nowhere.
std::string mountedAt(const std::string& node, std::istream& table);

}  // namespace trackloom::engines
