#pragma once

#include <string>
#include <string_view>

namespace trackloom {

/// A word of the system's tables of mounts (fstab(5), proc(5)) as it is meant: blanks, tabs, line ends and backslashes
/// stand there as a backslash with three octal digits.
std::string unescaped(std::string_view word);

}  // namespace trackloom
