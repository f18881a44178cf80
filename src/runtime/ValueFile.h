#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace trackloom {

/// Reads values one after the other from the bytes of a file of values: texts between quotes, and bare words and
/// numbers. A comma or a line end (CR LF, LF or CR) parts them, so several may stand in one line. A quote within a text
/// needs no sign before it: only one that is followed by blanks and then a comma, a line end or the end closes the
/// text. A bare value loses the blanks and tabs before it, not those behind.
class ValueReader {
 public:
  explicit ValueReader(std::string bytes) : bytes_(std::move(bytes)) {}

  /// The next value, with its bytes as they are. Raises error 62 where the bytes end before a value begins.
  std::string next();

 private:
  std::size_t skip(std::string_view characters, std::size_t at) const;
  bool endsValue(std::size_t at) const;
  std::size_t closingQuote(std::size_t from) const;
  std::string quoted();
  std::string bare();
  void passSeparator();

  std::string bytes_;
  std::size_t at_ = 0;
};

/// Puts a file of values together, one value a line, lines ended by CR LF.
class ValueWriter {
 public:
  ValueWriter& text(std::string_view value);
  ValueWriter& number(std::int64_t value);

  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace trackloom
