#pragma once

#include <cstddef>

namespace trackloom::engines::helpfile {

/// Thrown where a help file does not hold what it says.
struct Damaged {};

/// No list in a help file of ours comes near it; longer ones are taken for damage.
inline constexpr std::size_t MostEntries = 10000;

}  // namespace trackloom::engines::helpfile
