#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace trackloom::engines::drives {

/// What lies mounted at one place, as a line of /proc/self/mountinfo tells it (proc(5)).
struct Mount {
  static constexpr int None = 0;

  int id = None;
  /// The mount over which it lies.
  int parent = None;
  /// Major and minor number of the file system, parted by a colon: all mounts of one file system share them.
  std::string device;
  /// The folder of the file system that is seen here.
  std::string top;
  std::string place;
  std::string kind;
  std::string source;
};

/// In the order of the text. Lines that cannot be read are left out.
std::vector<Mount> readMounts(std::string_view mountinfo);

/// The mount in which the path lies, since others may lie over those that were mounted earlier; null: in none.
const Mount* mountAt(const std::vector<Mount>& mounts, std::string_view path);

/// The mounts behind which each folder of each file system is found exactly once by whoever stays within them, by their
/// places: without those that nobody reaches, and without those that show again what another one shows.
std::vector<Mount> distinctMounts(const std::vector<Mount>& mounts);

}  // namespace trackloom::engines::drives
