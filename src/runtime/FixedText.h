#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

#include "runtime/Text.h"

namespace trackloom {

/// A text of always the same length, in UTF-16 units: a longer one is cut when it is assigned, a shorter one is filled
/// up with blanks.
template <std::size_t Width>
class FixedText {
 public:
  FixedText() = default;
  template <std::convertible_to<std::string_view> Text>
  FixedText(const Text& text) : text_(Left(text, Width)) {
    text_.append(Width - Len(text_), ' ');
  }

  const std::string& get() const { return text_; }
  bool operator==(const FixedText&) const = default;

 private:
  std::string text_ = std::string(Width, ' ');
};

}  // namespace trackloom
