#pragma once

#include <string>
#include <string_view>

namespace trackloom::engines::discdb {

/// A name from outside as UTF-8 that is safe to show: bytes that are no UTF-8 are read as Latin-1 (with the signs that
/// Windows-1252 has in the place of its control characters), and without control characters, breaks of lines and
/// paragraphs, and the marks that turn the direction of all that follows. All else stays, blanks and slashes too.
std::string plainText(std::string_view bytes);

}  // namespace trackloom::engines::discdb
