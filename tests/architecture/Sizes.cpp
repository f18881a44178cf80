#include <array>
#include <cctype>

#include "architecture/Rules.h"

namespace trackloom::architecture {

namespace {

constexpr std::size_t sourceLimit = 500;
constexpr std::size_t headerLimit = 150;
constexpr std::size_t functionLimit = 60;

constexpr std::string_view blanks = " \t\n";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view lastWord(std::string_view text) {
  std::size_t start = text.size();
  while (start > 0 && (std::isalnum(static_cast<unsigned char>(text[start - 1])) != 0 || text[start - 1] == '_'))
    --start;
  return text.substr(start);
}

/// Whether the brace after `head` opens the body of a function: parameters were named, and what follows them is
/// nothing, the last initialiser of a constructor, or a word that may stand there.
bool opensFunction(std::string_view head) {
  if (head.find('(') == std::string_view::npos) return false;
  if (head.ends_with(')') || head.ends_with('}')) return true;
  constexpr std::array<std::string_view, 6> words{"const", "noexcept", "override", "final", "mutable", "try"};
  for (std::string_view word : words)
    if (lastWord(head) == word) return true;
  return head.find("->") != std::string_view::npos || head.find("requires") != std::string_view::npos;
}

/// Whether the brace after `head` opens a namespace or a type, in which functions stand.
bool opensScope(std::string_view head) {
  constexpr std::array<std::string_view, 6> words{"namespace", "class", "struct", "union", "enum", "extern"};
  for (std::string_view word : words) {
    const std::size_t at = head.find(word);
    if (at == std::string_view::npos) continue;
    const std::string_view before = trimmed(head.substr(0, at));
    if (before.empty() || before.ends_with('>') || before.ends_with(':') || before == "inline" || before == "typedef")
      return true;
  }
  return false;
}

std::size_t closingBrace(std::string_view code, std::size_t open) {
  std::size_t depth = 0;
  for (std::size_t at = open; at < code.size(); ++at) {
    if (code[at] == '{') ++depth;
    if (code[at] == '}' && --depth == 0) return at;
  }
  return code.size();
}

/// Reads a file from brace to brace and measures what stands directly in namespaces and types.
class FunctionMeter {
 public:
  explicit FunctionMeter(const SourceFile& file) : file_(file), code_(file.code) {}

  Faults run() {
    for (std::size_t at = 0; at < code_.size(); ++at) {
      if (code_[at] == ';' || code_[at] == '}')
        head_ = at + 1;
      else if (code_[at] == '{')
        at = brace(at);
    }
    return faults_;
  }

 private:
  /// Deals with the brace at `open`; the offset from which reading goes on.
  std::size_t brace(std::size_t open) {
    const std::string_view head = trimmed(code_.substr(head_, open - head_));
    const bool function = opensFunction(head);
    if (!function && opensScope(head)) {
      head_ = open + 1;
      return open;
    }
    const std::size_t close = closingBrace(code_, open);
    if (function) {
      measure(static_cast<std::size_t>(head.data() - code_.data()), close);
      head_ = close + 1;
    }
    return close;
  }

  void measure(std::size_t start, std::size_t close) {
    const std::size_t first = lineOf(code_, start);
    const std::size_t lines = lineOf(code_, close) - first + 1;
    if (lines > functionLimit)
      faults_.push_back(file_.path + ":" + std::to_string(first) + ": the function has " + std::to_string(lines) +
                        " lines, more than " + std::to_string(functionLimit));
  }

  const SourceFile& file_;
  std::string_view code_;
  std::size_t head_ = 0;
  Faults faults_;
};

}  // namespace

Faults oversizedFiles(const SourceTree& tree) {
  Faults faults;
  for (const auto& [path, file] : tree) {
    const std::size_t limit = file.isHeader() ? headerLimit : sourceLimit;
    if (file.lines > limit)
      faults.push_back(path + ": the file has " + std::to_string(file.lines) + " lines, more than " +
                       std::to_string(limit));
  }
  return faults;
}

Faults oversizedFunctions(const SourceTree& tree) {
  Faults faults;
  for (const auto& [path, file] : tree) {
    const Faults found = FunctionMeter(file).run();
    faults.insert(faults.end(), found.begin(), found.end());
  }
  return faults;
}

Faults usingNamespaceInHeaders(const SourceTree& tree) {
  Faults faults;
  for (const auto& [path, file] : tree) {
    const std::size_t at = file.code.find("using namespace");
    if (file.isHeader() && at != std::string::npos)
      faults.push_back(path + ":" + std::to_string(lineOf(file.code, at)) + ": a header has `using namespace`");
  }
  return faults;
}

Faults testFileNames(const SourceTree& tree) {
  Faults faults;
  for (const auto& [path, file] : tree)
    if (path.ends_with("_test.cpp") == file.testNames.empty())
      faults.push_back(path +
                       (file.testNames.empty() ? ": has no test for all its name" : ": tests stand in *_test.cpp"));
  return faults;
}

Faults unreachableTests(const SourceTree& tree) {
  Faults faults;
  for (const auto& [path, file] : tree)
    for (const std::string& name : file.testNames)
      if (name.find(';') != std::string::npos)
        faults.push_back(path + ": CTest cuts a test's name at its semicolon: " + name);
  return faults;
}

}  // namespace trackloom::architecture
