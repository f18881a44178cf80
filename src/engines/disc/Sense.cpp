#include "engines/disc/Sense.h"

#include <array>
#include <cstdio>
#include <string>

namespace trackloom::engines {

EngineError deviceError(std::int32_t number, std::string_view words) {
  const auto bits = static_cast<std::uint32_t>(number);
  std::array<char, 16> code{};
  std::snprintf(code.data(), code.size(), " (%X/%02X/%02X)", bits >> 16 & 0xFFU, bits >> 8 & 0xFFU, bits & 0xFFU);
  return {ErrorKind::Device, number, std::string(words) + code.data()};
}

}  // namespace trackloom::engines
