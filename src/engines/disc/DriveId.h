#pragma once

#include <algorithm>
#include <string>

namespace trackloom::engines {

/// By what a drive of this machine is known again: what it calls itself, with its number where it has one, else with
/// its place. The recorder and the reader of one drive are found to be the same by it.
inline std::string driveId(const std::string& vendor, const std::string& product, const std::string& number,
                           const std::string& path) {
  std::string id = vendor + " " + product + " " + (number.empty() ? path : number);
  std::ranges::replace(id, '|', '/');
  return id;
}

}  // namespace trackloom::engines
