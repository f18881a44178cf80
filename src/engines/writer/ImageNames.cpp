#include "engines/writer/ImageNames.h"

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "runtime/Text.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t longestName = 64;
constexpr std::size_t longestLabel = 32;
/// A longer tail behind the last dot is rather a part of the title.
constexpr std::size_t longestExtension = 16;

bool isForbidden(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F ||
         std::string_view("*/:;?\\").find(character) != std::string_view::npos;
}

/// UTF-8 in which a "_" stands for each control character of U+0080 to U+009F (two bytes, from 0xC2) and for each
/// character beyond 16 bits (four bytes, from 0xF0): UCS-2 has none of these, and some readers give up a whole folder
/// over a pair of surrogates.
std::string inUcs2(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const bool control = lead == 0xC2 && static_cast<unsigned char>(text[at + 1]) < 0xA0;
    result += control || lead >= 0xF0 ? '_' : text[at];
    at += control ? 1 : (lead >= 0xF0 ? 3 : 0);
  }
  return result;
}

std::string allowed(const std::string& wished) {
  std::string name = inUcs2(displayText(wished));
  for (char& character : name)
    if (isForbidden(character)) character = '_';
  return name.empty() || name == "." || name == ".." ? "_" : name;
}

std::pair<std::string, std::string> stemAndExtension(const WishedName& wished, const std::string& name) {
  const std::size_t dot = wished.folder ? std::string::npos : name.rfind('.');
  if (dot == std::string::npos || dot == 0 || Len(name.substr(dot)) > longestExtension) return {name, ""};
  return {name.substr(0, dot), name.substr(dot)};
}

/// Gives out the names of one folder.
class Folder {
 public:
  bool take(const std::string& name) { return taken_.insert(UCase(name)).second; }

  std::string fit(const WishedName& wished, const std::string& name) {
    const auto [stem, extension] = stemAndExtension(wished, name);
    std::string fitted = Left(stem, longestName - Len(extension)) + extension;
    if (take(fitted)) return fitted;
    std::size_t& number = numbers_[UCase(fitted)];
    if (number == 0) number = 1;
    std::string told;
    do {
      std::string tail(1, '~');
      tail += std::to_string(++number) + extension;
      told = Left(stem, longestName - Len(tail)) + tail;
    } while (!take(told));
    return told;
  }

 private:
  std::unordered_set<std::string> taken_;
  std::unordered_map<std::string, std::size_t> numbers_;
};

}  // namespace

std::vector<std::string> imageNames(std::span<const WishedName> wished) {
  Folder folder;
  std::vector<std::string> names(wished.size());
  std::vector<std::size_t> others;
  for (std::size_t at = 0; at < wished.size(); ++at) {
    names[at] = allowed(wished[at].text);
    const bool fits = names[at] == wished[at].text && Len(names[at]) <= longestName;
    if (!fits || !folder.take(names[at])) others.push_back(at);
  }
  for (const std::size_t at : others) names[at] = folder.fit(wished[at], names[at]);
  return names;
}

std::string volumeLabel(const std::string& wished) {
  std::string label = inUcs2(displayText(wished));
  for (std::size_t units = longestLabel; label.size() > longestLabel; --units) label = Left(label, units);
  return label;
}

}  // namespace trackloom::engines::writer
