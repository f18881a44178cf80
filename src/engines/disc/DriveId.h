#pragma once

#include <algorithm>
#include <cstddef>
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

/// The letter of the drive in this place among all of the machine: "D" is the first, "?" stands from the 24th on.
inline std::string driveLetter(std::size_t place) {
  constexpr std::size_t lettersFromD = 'Z' - 'D' + 1;
  return {place < lettersFromD ? static_cast<char>('D' + place) : '?'};
}

}  // namespace trackloom::engines
