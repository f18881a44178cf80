#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace emulated {

using Bytes = std::vector<std::uint8_t>;
using View = std::span<const std::uint8_t>;

/// The big-endian number of `size` bytes at `at`; what lies behind the end counts as 0.
inline std::uint32_t numberAt(View bytes, std::size_t at, std::size_t size) {
  std::uint32_t number = 0;
  for (std::size_t i = at; i < at + size; ++i) number = number << 8U | (i < bytes.size() ? bytes[i] : 0U);
  return number;
}

/// Builds the answer to a command, whose numbers are big-endian.
class Answer {
 public:
  explicit Answer(std::size_t size = 0) : bytes_(size) {}

  Answer& put(std::size_t at, std::uint32_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
      bytes_[at + size - 1 - i] = static_cast<std::uint8_t>(number >> 8 * i & 0xFFU);
    return *this;
  }
  Answer& add(std::uint32_t number, std::size_t size = 1) {
    bytes_.resize(bytes_.size() + size);
    return put(bytes_.size() - size, number, size);
  }
  Answer& add(View more) {
    bytes_.insert(bytes_.end(), more.begin(), more.end());
    return *this;
  }
  /// A field of text, filled up with blanks.
  Answer& text(std::size_t at, std::string_view words, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
      bytes_[at + i] = i < words.size() ? static_cast<std::uint8_t>(words[i]) : std::uint8_t{' '};
    return *this;
  }
  /// Writes into `at` how many bytes follow that field.
  Answer& length(std::size_t at, std::size_t size) {
    return put(at, static_cast<std::uint32_t>(bytes_.size() - at - size), size);
  }
  std::size_t size() const { return bytes_.size(); }
  /// What a host gets that has room for so many bytes.
  Bytes upTo(std::size_t room) const {
    return {bytes_.begin(), bytes_.begin() + std::ptrdiff_t(std::min(room, size()))};
  }
  const Bytes& all() const { return bytes_; }

 private:
  Bytes bytes_;
};

}  // namespace emulated
