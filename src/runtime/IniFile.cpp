#include "runtime/IniFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

constexpr std::string_view blanks = " \t\r\f\v";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string folded(std::string_view name) {
  std::string result(name);
  for (char& letter : result)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  return result;
}

std::string_view nextLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trimmed(line);
}

}  // namespace

IniFile IniFile::parse(std::string_view text) {
  IniFile file;
  if (text.size() > sizeLimit) return file;
  // Editors of other systems put the byte order mark of UTF-8 in front.
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  std::string section;
  while (!text.empty()) {
    const std::string_view line = nextLine(text);
    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[' && line.back() == ']') {
      section = folded(trimmed(line.substr(1, line.size() - 2)));
      file.sections_.try_emplace(section);
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.front() == '[') continue;
    file.sections_[section][folded(trimmed(line.substr(0, equals)))] = trimmed(line.substr(equals + 1));
  }
  return file;
}

std::optional<IniFile> IniFile::load(const HostPath& path) {
  if (!FileExists(path)) return std::nullopt;
  try {
    if (FileLength(path) > static_cast<std::int64_t>(sizeLimit)) return std::nullopt;
    return parse(ReadStart(path, sizeLimit));
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

std::vector<std::string> IniFile::sections() const {
  std::vector<std::string> names;
  for (const auto& [name, keys] : sections_)
    if (!name.empty()) names.push_back(name);
  return names;
}

std::optional<std::string> IniFile::value(std::string_view section, std::string_view key) const {
  const auto found = sections_.find(folded(section));
  if (found == sections_.end()) return std::nullopt;
  const auto entry = found->second.find(folded(key));
  if (entry == found->second.end()) return std::nullopt;
  return entry->second;
}

std::optional<std::int32_t> IniFile::number(std::string_view section, std::string_view key, std::int32_t least,
                                            std::int32_t most) const {
  const std::optional<std::string> text = value(section, key);
  if (!text) return std::nullopt;
  std::int32_t result = 0;
  const char* end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, result);
  if (error != std::errc{} || stop != end || result < least || result > most) return std::nullopt;
  return result;
}

std::optional<bool> IniFile::flag(std::string_view section, std::string_view key) const {
  constexpr std::array<std::string_view, 4> yes{"yes", "true", "on", "1"};
  constexpr std::array<std::string_view, 4> no{"no", "false", "off", "0"};
  const std::optional<std::string> text = value(section, key);
  if (!text) return std::nullopt;
  const std::string word = folded(*text);
  if (std::find(yes.begin(), yes.end(), word) != yes.end()) return true;
  if (std::find(no.begin(), no.end(), word) != no.end()) return false;
  return std::nullopt;
}

IniWriter& IniWriter::comment(std::string_view words) {
  text_.append("; ").append(words).append("\n");
  return *this;
}

IniWriter& IniWriter::section(std::string_view name) {
  text_.append("\n[").append(name).append("]\n");
  return *this;
}

IniWriter& IniWriter::entry(std::string_view key, std::string_view value) {
  text_.append(key).append(" = ");
  std::replace_copy_if(
      value.begin(), value.end(), std::back_inserter(text_), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  text_ += '\n';
  return *this;
}

IniWriter& IniWriter::entry(std::string_view key, std::int32_t value) {
  return entry(key, std::to_string(value));
}

}  // namespace trackloom
