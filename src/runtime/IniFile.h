#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/Paths.h"

namespace trackloom {

/// The values of a settings file: sections in square brackets, `key = value` lines, comment lines that begin with ';'
/// or '#'. Names of sections and keys are equal whatever their ASCII case; values keep their bytes, less the blanks
/// around them. A section that comes twice is one section, of a key that comes twice the last value holds, and a line
/// that is nothing of these is passed over. Keys before the first section belong to the section "".
class IniFile {
 public:
  /// No settings file of the program comes near this size in bytes; what is longer is not one.
  static constexpr std::size_t sizeLimit = std::size_t{64} * 1024;

  /// Takes any bytes; a text longer than the limit has no values.
  static IniFile parse(std::string_view text);
  /// Nothing: no regular file that can be read, or one longer than the limit.
  static std::optional<IniFile> load(const HostPath& path);

  /// The names of all sections that have a heading, in small letters, in byte order.
  std::vector<std::string> sections() const;
  std::optional<std::string> value(std::string_view section, std::string_view key) const;
  /// Nothing: no such key, or not a whole decimal number within the bounds (inclusive).
  std::optional<std::int32_t> number(std::string_view section, std::string_view key, std::int32_t least,
                                     std::int32_t most) const;
  /// `yes`, `true`, `on`, `1` and their opposites; nothing: no such key, or another value.
  std::optional<bool> flag(std::string_view section, std::string_view key) const;

 private:
  using Keys = std::map<std::string, std::string>;
  std::map<std::string, Keys> sections_;
};

/// Puts a settings file together, line by line, in the form that IniFile reads.
class IniWriter {
 public:
  IniWriter& comment(std::string_view words);
  /// Begins a section, with an empty line before it.
  IniWriter& section(std::string_view name);
  /// A line break within the value would end it early, so it becomes a blank.
  IniWriter& entry(std::string_view key, std::string_view value);
  IniWriter& entry(std::string_view key, std::int32_t value);

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace trackloom
