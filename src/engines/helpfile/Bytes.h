#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace trackloom::engines::helpfile {

/// Bytes that are put together, numbers in little endian.
struct Bytes {
  std::string text;

  Bytes& add(std::string_view bytes) {
    text += bytes;
    return *this;
  }
  Bytes& u16(std::uint64_t number) { return little(number, 2); }
  Bytes& u32(std::uint64_t number) { return little(number, 4); }
  Bytes& u64(std::uint64_t number) { return little(number, 8); }
  Bytes& zeros(std::size_t count) {
    text.append(count, '\0');
    return *this;
  }

  /// Groups of 7 bits, the highest first; all but the last have their eighth bit set.
  Bytes& grouped(std::uint64_t number) {
    std::string groups(1, static_cast<char>(number & 0x7FU));
    while ((number >>= 7) != 0) groups.insert(groups.begin(), static_cast<char>((number & 0x7FU) | 0x80U));
    return add(groups);
  }

 private:
  Bytes& little(std::uint64_t number, int length) {
    for (int byte = 0; byte < length; ++byte, number >>= 8) text += static_cast<char>(number & 0xFFU);
    return *this;
  }
};

}  // namespace trackloom::engines::helpfile
