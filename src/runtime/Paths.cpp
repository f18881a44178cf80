#include "runtime/Paths.h"

namespace trackloom {

std::string EnsureTrailingSep(std::string folder) {
  if (folder.empty() || folder.back() != HostSep) folder += HostSep;
  return folder;
}

}  // namespace trackloom
