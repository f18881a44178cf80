#include "engines/disc/MountedAt.h"

#include <istream>
#include <sstream>

#include "runtime/MountTables.h"

namespace trackloom::engines {

std::string mountedAt(const std::string& node, std::istream& table) {
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    std::string device;
    std::string place;
    fields >> device >> place;
    if (device == node) return unescaped(place);
  }
  return {};
}

}  // namespace trackloom::engines
