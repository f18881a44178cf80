#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Bytes.h"

namespace emulated {

/// A command block as the host sent it, with the data that came with it and the room that it has for the answer.
struct Command {
  std::array<std::uint8_t, 16> block{};
  View sent;
  std::size_t room = 0;

  std::uint8_t operator[](std::size_t at) const { return block[at]; }
  std::uint32_t number(std::size_t at, std::size_t size) const { return numberAt(block, at, size); }
  std::int32_t address(std::size_t at) const { return static_cast<std::int32_t>(number(at, 4)); }
};

}  // namespace emulated
