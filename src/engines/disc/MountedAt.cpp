#include "engines/disc/MountedAt.h"

#include <istream>
#include <sstream>

namespace trackloom::engines {

namespace {

/// The table has blanks and the like as a backslash with three octal digits.
std::string plain(const std::string& text) {
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool coded = text[at] == '\\' && at + 3 < text.size();
    out += coded ? static_cast<char>(std::stoi(text.substr(at + 1, 3), nullptr, 8)) : text[at];
    if (coded) at += 3;
  }
  return out;
}

}  // namespace

std::string mountedAt(const std::string& node, std::istream& table) {
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    std::string device;
    std::string place;
    fields >> device >> place;
    if (device == node) return plain(place);
  }
  return {};
}

}  // namespace trackloom::engines
