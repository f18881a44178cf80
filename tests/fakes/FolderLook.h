#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace trackloom::fakes {

/// The names of all that lies in a folder, in byte order.
inline std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

/// What `chmod` would say; of what is not there 0.
inline mode_t permissionsOf(const std::string& path) {
  struct stat entry {};
  return ::stat(path.c_str(), &entry) == 0 ? entry.st_mode & 07777 : 0;
}

}  // namespace trackloom::fakes
