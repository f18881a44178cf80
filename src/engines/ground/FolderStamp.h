#pragma once

#include <sys/stat.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "runtime/FileDescriptor.h"

namespace trackloom::engines {

/// What the system tells of some files and folders: device, inode, size, times of modification and change. Two stamps
/// of the same things are equal while nothing of them has changed.
///
/// A change within the tick of a file system's clock leaves no trace in the times, so a stamp counts only once they are
/// older than the coarsest tick.
class FolderStamp {
 public:
  void add(const FileDescriptor& file);
  /// Also that nothing of this name is there.
  void add(const FileDescriptor& folder, const std::string& name);

  /// Whether a later change would be seen for certain.
  bool counts() const;
  bool operator==(const FolderStamp& other) const { return facts_ == other.facts_; }

 private:
  using Facts = std::array<std::int64_t, 7>;

  void add(const struct stat& status);

  std::vector<Facts> facts_;
  std::int64_t youngest_ = 0;
  std::chrono::system_clock::time_point taken_ = std::chrono::system_clock::now();
};

}  // namespace trackloom::engines
