#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Drive.h"

namespace emulated {

/// The device nodes of the drives that the folder in EMULATED_DRIVES holds: its folder sr0 is the drive /dev/sr0. Real
/// drives cannot be seen while that variable is set. Safe from any thread, and in a child that was forked beside other
/// threads.
class Nodes {
 public:
  static Nodes& instance();
  Nodes();

  /// How a path of /dev counts.
  enum class Sight { Other, Hidden, Drive };
  Sight sightOf(const char* path) const;
  std::vector<std::string> paths() const;

  /// The file that stands for an opened node; a drive that is held exclusively is busy.
  int open(const char* path, int flags);
  std::shared_ptr<Drive> driveOf(int fd);
  void copied(int fd, int copy);
  void closed(int fd);

 private:
  std::shared_ptr<Drive> driveIn(const std::filesystem::path& folder);

  pid_t owner_;
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<Drive>> drives_;
  std::map<int, std::shared_ptr<Drive>> open_;
};

/// The number at the end of a drive's node.
unsigned numberOf(const std::string& path);

}  // namespace emulated
