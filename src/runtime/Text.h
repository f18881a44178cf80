#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace trackloom {

/// The line end of message texts and of the program's text files.
inline constexpr const char* CrLf = "\r\n";
inline constexpr const char* ParagraphBreak = "\r\n\r\n";

// Text is UTF-8 in the bytes that the host gave; a byte that is no part of a valid character counts as one of its own.
// Lengths count UTF-16 units, and no cut splits a character.

/// Strips blanks (U+0020) from both ends, and nothing else.
std::string Trim(std::string_view text);
std::string RTrim(std::string_view text);

std::size_t Len(std::string_view text);
/// The first `units` of the text; a character that would be split is left out.
std::string Left(std::string_view text, std::size_t units);
std::string Right(std::string_view text, std::size_t units);

/// Upper case, character by character, by Unicode's simple mappings, whatever locales the machine has.
std::string UCase(std::string_view text);

bool isValidUtf8(std::string_view text);

/// The text in Windows-1252, one byte for each of its UTF-16 units, "?" for what that page lacks.
std::string toWindows1252(std::string_view text);

/// The text for the eye: as it is when it is valid UTF-8, else read as Windows-1252.
std::string displayText(std::string_view text);

}  // namespace trackloom
