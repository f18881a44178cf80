#include "engines/disc/Sense.h"

#include <array>
#include <cstdio>
#include <string>

namespace trackloom::engines {

DriveFailure failure(std::int32_t number, std::string_view words) {
  const auto bits = static_cast<std::uint32_t>(number);
  std::array<char, 16> prefix{};
  std::snprintf(prefix.data(), prefix.size(), "%X/%02X/%02X ", bits >> 16 & 0xFFU, bits >> 8 & 0xFFU, bits & 0xFFU);
  return DriveFailure(number, prefix.data() + std::string(words));
}

}  // namespace trackloom::engines
