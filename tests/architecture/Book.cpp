#include <algorithm>
#include <cctype>
#include <map>
#include <sstream>

#include "architecture/Rules.h"

namespace trackloom::architecture {

namespace {

constexpr std::size_t numberLength = 4;

/// The number such as "E001" that `text` begins with, followed by `end`; empty if it begins otherwise.
std::string numberAt(std::string_view text, std::string_view end) {
  if (text.size() < numberLength || text[0] != 'E' || !text.substr(numberLength).starts_with(end)) return {};
  const std::string_view digits = text.substr(1, numberLength - 1);
  const bool isNumber = std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
  return isNumber ? std::string(text.substr(0, numberLength)) : std::string();
}

std::vector<std::string> numbersOfBook(std::string_view book) {
  constexpr std::string_view opening = "- **";
  std::vector<std::string> numbers;
  std::istringstream lines{std::string(book)};
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(opening)) continue;
    if (std::string number = numberAt(std::string_view(line).substr(opening.size()), "** "); !number.empty())
      numbers.push_back(number);
  }
  return numbers;
}

/// Each number that a test bears, with the file of one such test.
std::map<std::string, std::string> numbersOfTests(const SourceTree& tree) {
  std::map<std::string, std::string> numbers;
  for (const auto& [path, file] : tree)
    for (const std::string& name : file.testNames)
      if (const std::string number = numberAt(name, ": "); !number.empty()) numbers.emplace(number, path);
  return numbers;
}

std::string absentFromBook(const std::string& number, const std::string& path) {
  return path + ": a test bears " + number + ", which docs/edge-cases.md does not have";
}

}  // namespace

Faults bookAgainstTests(std::string_view book, const SourceTree& tree) {
  Faults faults;
  const std::vector<std::string> entered = numbersOfBook(book);
  const std::map<std::string, std::string> tested = numbersOfTests(tree);
  for (std::size_t i = 0; i < entered.size(); ++i) {
    if (i > 0 && entered[i] <= entered[i - 1])
      faults.push_back("docs/edge-cases.md: " + entered[i] + " stands behind " + entered[i - 1]);
    if (!tested.contains(entered[i]))
      faults.push_back("docs/edge-cases.md: no test's name begins with \"" + entered[i] + ": \"");
  }
  for (const auto& [number, path] : tested)
    if (std::find(entered.begin(), entered.end(), number) == entered.end())
      faults.push_back(absentFromBook(number, path));
  return faults;
}

}  // namespace trackloom::architecture
