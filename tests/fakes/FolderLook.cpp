#include "fakes/FolderLook.h"

#include <sys/stat.h>
#include <algorithm>
#include <filesystem>

namespace trackloom::fakes {

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

mode_t permissionsOf(const std::string& path) {
  struct stat entry {};
  return ::stat(path.c_str(), &entry) == 0 ? entry.st_mode & 07777 : 0;
}

}  // namespace trackloom::fakes
