#include "runtime/MountTables.h"

#include <charconv>

namespace trackloom {

std::string unescaped(std::string_view word) {
  constexpr std::size_t Digits = 3;
  std::string text;
  for (std::size_t at = 0; at < word.size(); ++at) {
    int code = 0;
    const char* digits = word.data() + at + 1;
    const bool escape = word[at] == '\\' && word.size() - at > Digits &&
                        std::from_chars(digits, digits + Digits, code, 8).ptr == digits + Digits;
    text += escape ? static_cast<char>(code) : word[at];
    if (escape) at += Digits;
  }
  return text;
}

}  // namespace trackloom
