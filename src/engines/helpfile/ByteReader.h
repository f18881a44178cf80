#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engines/helpfile/Damaged.h"

namespace trackloom::engines::helpfile {

/// Reads bytes of a file that may lie. Whatever reaches beyond the end throws Damaged.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes, std::size_t start = 0) : bytes_(bytes), at_(start) {}

  bool atEnd() const { return at_ >= bytes_.size(); }

  std::string_view take(std::uint64_t length) {
    if (at_ > bytes_.size() || length > bytes_.size() - at_) throw Damaged();
    const std::string_view taken = bytes_.substr(at_, static_cast<std::size_t>(length));
    at_ += taken.size();
    return taken;
  }

  std::uint16_t u16() { return static_cast<std::uint16_t>(little(2)); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(little(4)); }
  std::uint64_t u64() { return little(8); }

  /// Groups of 7 bits, the highest first; all but the last have their eighth bit set.
  std::uint64_t grouped() {
    constexpr int MostGroups = 9;
    std::uint64_t number = 0;
    for (int group = 0; group < MostGroups; ++group) {
      const auto byte = static_cast<unsigned char>(take(1).front());
      number = number << 7 | (byte & 0x7FU);
      if (byte < 0x80) return number;
    }
    throw Damaged();
  }

 private:
  std::uint64_t little(std::size_t length) {
    std::uint64_t number = 0;
    const std::string_view bytes = take(length);
    for (std::size_t i = length; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
  }

  std::string_view bytes_;
  std::size_t at_;
};

/// The number at a place of the bytes.
inline std::uint32_t u32At(std::string_view bytes, std::uint64_t place) {
  ByteReader reader(bytes);
  reader.take(place);
  return reader.u32();
}

/// No name or title of ours comes near it.
inline constexpr std::size_t LongestText = 1024;

/// The text at a place of the bytes, up to its NUL, which is never far.
inline std::string_view textAt(std::string_view bytes, std::uint64_t place) {
  if (place >= bytes.size()) throw Damaged();
  const std::string_view rest = bytes.substr(static_cast<std::size_t>(place), LongestText);
  return rest.substr(0, rest.find('\0'));
}

}  // namespace trackloom::engines::helpfile
