#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace trackloom {

/// The signs of the user's number format; UTF-8, since some locales group with characters beyond ASCII.
struct Separators {
  std::string group = ",";
  std::string decimal = ".";
};

/// Rounds to the nearest whole number, an exact half to the even neighbour. Raises error 6 outside 16 bits.
std::int16_t ToInt16(double value);
/// Raises error 6 outside 32 bits.
std::int32_t ToInt32(std::int64_t value);
/// The nearest whole number, an exact half to the even neighbour.
double RoundHalfEven(double value);

/// The number at the start of the text, blanks before it skipped; 0 where there is none.
double Val(std::string_view text);

/// The format "###,###": groups of three digits, and an empty text for 0.
std::string FormatGrouped(std::int64_t value, const Separators& separators);
/// The format "0#": at least two digits.
std::string FormatTwoDigits(std::int64_t value);
/// The format "#0.00": halves are rounded away from zero on the decimal value.
std::string FormatFixed2(double value, const Separators& separators);

}  // namespace trackloom
