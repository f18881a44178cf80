#pragma once

#include <string_view>

namespace trackloom::fuzz {

/// Reads these bytes as a help file. Aborts where the book that they hold is not whole in itself, or is not read again
/// from a help file that is made of it.
void runHelpFile(std::string_view bytes);

}  // namespace trackloom::fuzz
