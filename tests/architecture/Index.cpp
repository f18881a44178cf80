#include <algorithm>
#include <cctype>
#include <sstream>

#include "architecture/Rules.h"

namespace trackloom::architecture {

namespace {

constexpr std::string_view indexHead = "## Where is decided what";

/// The names between backticks in a line, in their order.
std::vector<std::string> namesIn(std::string_view line) {
  std::vector<std::string> names;
  for (std::size_t open = line.find('`'); open != std::string_view::npos;) {
    const std::size_t close = line.find('`', open + 1);
    if (close == std::string_view::npos) break;
    names.emplace_back(line.substr(open + 1, close - open - 1));
    open = line.find('`', close + 1);
  }
  return names;
}

bool isWord(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Behind the bracket that closes the one at `open`.
std::size_t behindBracket(std::string_view code, std::size_t open) {
  int depth = 0;
  for (std::size_t at = open; at < code.size(); ++at) {
    if (code[at] == '(') ++depth;
    if (code[at] == ')' && --depth == 0) return at + 1;
  }
  return code.size();
}

/// Whether what follows a function's parameters begins its body, or the initialisers before it.
bool beginsBody(std::string_view rest) {
  const std::size_t first = rest.find_first_not_of(" \n");
  if (first == std::string_view::npos) return false;
  rest.remove_prefix(first);
  return rest[0] == '{' || rest.starts_with(": ") || rest.starts_with("const") || rest.starts_with("noexcept");
}

bool defines(std::string_view code, const std::string& function) {
  const std::string call = function + "(";
  for (std::size_t at = code.find(call); at != std::string_view::npos; at = code.find(call, at + 1)) {
    if (at > 0 && isWord(code[at - 1])) continue;
    if (beginsBody(code.substr(behindBracket(code, at + function.size())))) return true;
  }
  return false;
}

std::string faultOf(const std::vector<std::string>& names, const SourceTree& tree) {
  if (names.size() != 2) return "a line of the index names a file and a function";
  const auto file = tree.find(names[0]);
  if (file == tree.end()) return "there is no " + names[0];
  return defines(file->second.code, names[1]) ? std::string() : names[0] + " does not define " + names[1];
}

}  // namespace

Faults indexAgainstSources(std::string_view page, const SourceTree& tree) {
  const std::size_t begin = std::min(page.find(indexHead), page.size());
  const std::size_t end = page.find("\n## ", begin);
  std::istringstream section{std::string(page.substr(begin, end - begin))};
  Faults faults;
  std::size_t rows = 0;
  for (std::string line; std::getline(section, line);) {
    if (!line.starts_with("| ") || line.find('`') == std::string::npos) continue;
    ++rows;
    if (const std::string fault = faultOf(namesIn(line), tree); !fault.empty())
      faults.push_back("docs/architecture.md: " + fault);
  }
  if (rows == 0) faults.push_back("docs/architecture.md: has no index");
  return faults;
}

}  // namespace trackloom::architecture
