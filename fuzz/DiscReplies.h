#pragma once

#include <string_view>

namespace trackloom::fuzz {

/// Reads these bytes as a disc database's reply to either question. Aborts where what was taken from them is not safe
/// to send or to show, or is not read again from an entry that is made of it.
void runReplies(std::string_view bytes);

}  // namespace trackloom::fuzz
