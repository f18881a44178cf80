#include "runtime/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

constexpr int SignificantDigits = 15;

/// The value in plain decimal with 15 significant digits, which is where a binary fraction shows as the decimal it
/// stands for.
std::string plainDecimal(double value) {
  const int before = static_cast<int>(std::log10(std::max(value, 1.0))) + 1;
  const int after = std::max(SignificantDigits - before, 0);
  std::array<char, std::numeric_limits<double>::max_exponent10 + SignificantDigits + 3> text;
  const auto [end, error] = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, after);
  return std::string(text.begin(), end);
}

/// Adds one to the last digit of a plain decimal number.
std::string plusOneUlp(std::string digits) {
  for (std::size_t at = digits.size(); at-- > 0;) {
    if (digits[at] == '.') continue;
    if (digits[at] != '9') {
      ++digits[at];
      return digits;
    }
    digits[at] = '0';
  }
  return "1" + digits;
}

}  // namespace

double RoundHalfEven(double value) {
  return std::nearbyint(value);
}

std::int16_t ToInt16(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= std::numeric_limits<std::int16_t>::min() && rounded <= std::numeric_limits<std::int16_t>::max()))
    throw RuntimeError(RuntimeError::Overflow);
  return static_cast<std::int16_t>(rounded);
}

std::int32_t ToInt32(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
    throw RuntimeError(RuntimeError::Overflow);
  return static_cast<std::int32_t>(value);
}

double Val(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return 0;
  text.remove_prefix(first);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return std::isfinite(value) ? value : 0;
}

std::string FormatGrouped(std::int64_t value, const Separators& separators) {
  if (value == 0) return "";
  std::string digits = std::to_string(value);
  const std::size_t sign = digits.front() == '-' ? 1 : 0;
  std::string text = digits.substr(0, sign);
  digits.erase(0, sign);
  for (std::size_t at = 0; at < digits.size(); ++at) {
    if (at > 0 && (digits.size() - at) % 3 == 0) text += separators.group;
    text += digits[at];
  }
  return text;
}

std::string FormatTwoDigits(std::int64_t value) {
  const std::string digits = std::to_string(std::abs(value));
  return std::string(value < 0 ? "-" : "") + (digits.size() < 2 ? "0" : "") + digits;
}

std::string FormatFixed2(double value, const Separators& separators) {
  std::string digits = plainDecimal(std::abs(value));
  if (digits.find('.') == std::string::npos) digits += '.';
  const std::size_t point = digits.find('.');
  digits.resize(std::max(digits.size(), point + 4), '0');
  const bool up = digits[point + 3] >= '5';
  digits.resize(point + 3);
  if (up) digits = plusOneUlp(std::move(digits));
  digits.replace(digits.find('.'), 1, separators.decimal);
  return (value < 0 ? "-" : "") + digits;
}

}  // namespace trackloom
