#include "words/table/BoxTable.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace trackloom::words {

namespace {

using ButtonsName = std::pair<std::string_view, BoxButtons>;
using IconName = std::pair<std::string_view, BoxIcon>;

constexpr std::array<ButtonsName, 5> buttonNames{{{"OK", BoxButtons::Ok},
                                                  {"OK-Cancel", BoxButtons::OkCancel},
                                                  {"Yes-No", BoxButtons::YesNo},
                                                  {"Yes-No-Cancel", BoxButtons::YesNoCancel},
                                                  {"Retry-Cancel", BoxButtons::RetryCancel}}};
constexpr std::array<IconName, 4> iconNames{{{"information", BoxIcon::Information},
                                             {"question", BoxIcon::Question},
                                             {"exclamation", BoxIcon::Exclamation},
                                             {"critical", BoxIcon::Critical}}};

constexpr const char* Anything = "anything";

template <class Names>
auto valueOf(const Names& names, const std::string& name) {
  const auto found = std::find_if(names.begin(), names.end(), [&](const auto& pair) { return pair.first == name; });
  if (found == names.end()) throw std::runtime_error("nothing is called '" + name + "'");
  return found->second;
}

template <class Names, class Value>
std::string nameOf(const Names& names, Value value) {
  return std::string(
      std::find_if(names.begin(), names.end(), [&](const auto& pair) { return pair.second == value; })->first);
}

/// The bare words between `key` and the next key or the text.
std::vector<std::string> wordsBehind(const TableLine& line, const std::string& key) {
  std::vector<std::string> found;
  auto word = std::find(line.words.begin(), line.words.end(), Word{key, false});
  if (word == line.words.end()) throw std::runtime_error("no '" + key + "'");
  for (++word; word != line.words.end() && !word->quoted && word->text != "by"; ++word) found.push_back(word->text);
  if (found.empty()) throw std::runtime_error("nothing behind '" + key + "'");
  return found;
}

BoxRow rowOfLine(const TableLine& line) {
  if (line.bare(0) != "box" || !line.words.back().quoted || line.words.size() < 6)
    throw std::runtime_error("no box with a title and a text");
  return {
      line.number,
      {line.quoted(1), line.words.back().text, valueOf(buttonNames, line.bare(2)), valueOf(iconNames, line.bare(3))},
      wordsBehind(line, "over"),
      wordsBehind(line, "by")};
}

/// Whether the text is the pattern, in which each <name> stands for one character or more.
bool matches(std::string_view pattern, std::string_view text) {
  const std::size_t open = pattern.find('<');
  if (open == std::string_view::npos) return pattern == text;
  if (!text.starts_with(pattern.substr(0, open))) return false;
  const std::string_view rest = pattern.substr(pattern.find('>', open) + 1);
  for (std::size_t taken = open + 1; taken <= text.size(); ++taken)
    if (matches(rest, text.substr(taken))) return true;
  return false;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The first row that the box fits, nullptr: none.
const BoxRow* rowOf(const std::vector<BoxRow>& table, const MessageBox& box) {
  const auto found = std::find_if(table.begin(), table.end(), [&](const BoxRow& row) { return row.fits(box); });
  return found == table.end() ? nullptr : &*found;
}

std::string noteOf(const BoxRow& row, const std::string& form) {
  return "box " + std::to_string(row.line) + " " + form;
}

}  // namespace

bool BoxRow::mayStandOver(const std::string& form) const {
  return contains(over, form) || contains(over, Anything);
}

bool BoxRow::fits(const MessageBox& shown) const {
  return shown.title == box.title && shown.buttons == box.buttons && shown.icon == box.icon &&
         matches(box.text, shown.text);
}

std::vector<BoxRow> readBoxes(const std::vector<TableLine>& lines) {
  std::vector<BoxRow> rows;
  for (const TableLine& line : lines) rows.push_back(at(line.name(), [&] { return rowOfLine(line); }));
  return rows;
}

std::vector<BoxRow> allBoxes() {
  return readBoxes(readTableFile("boxes.txt"));
}

std::string written(const MessageBox& box) {
  return "box " + inQuotes(box.title) + " " + nameOf(buttonNames, box.buttons) + " " + nameOf(iconNames, box.icon) +
         " " + inQuotes(box.text);
}

std::string faultOf(const std::vector<BoxRow>& table, const MessageBox& box, const std::string& over) {
  const BoxRow* row = rowOf(table, box);
  if (row == nullptr) return "tests/words/boxes.txt lacks: " + written(box);
  if (row->mayStandOver(over)) return "";
  return "tests/words/boxes.txt:" + std::to_string(row->line) + " has no box over " + over + ": " + written(box);
}

std::string noteOf(const std::vector<BoxRow>& table, const MessageBox& box, const std::string& over) {
  const BoxRow& row = *rowOf(table, box);
  return noteOf(row, contains(row.over, over) ? over : Anything);
}

std::vector<std::string> missingIn(const std::vector<std::string>& notes, const std::vector<BoxRow>& table) {
  std::vector<std::string> missing;
  for (const BoxRow& row : table)
    for (const std::string& form : row.over)
      if (!contains(notes, noteOf(row, form)))
        missing.push_back("boxes.txt:" + std::to_string(row.line) + " over " + form + ": " + written(row.box));
  return missing;
}

}  // namespace trackloom::words
