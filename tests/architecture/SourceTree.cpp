#include "architecture/SourceTree.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "fakes/TestFiles.h"

namespace trackloom::architecture {

namespace {

bool isWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Blanks comments and the insides of literals, keeping line breaks and the quotes themselves.
class Blanker {
 public:
  explicit Blanker(std::string_view text) : text_(text), code_(text) {}

  std::string run() {
    while (at_ < text_.size()) {
      if (startsWith("//"))
        blankTo(lineEnd(at_));
      else if (startsWith("/*"))
        blankTo(after("*/", at_ + 2));
      else if (startsWith("R\"") && (at_ == 0 || !isWordCharacter(text_[at_ - 1])))
        blankRawString();
      else if (text_[at_] == '"' || (text_[at_] == '\'' && !insideNumber()))
        blankLiteral(text_[at_]);
      else
        ++at_;
    }
    return std::move(code_);
  }

 private:
  bool startsWith(std::string_view what) const { return text_.substr(at_).starts_with(what); }

  std::size_t lineEnd(std::size_t from) const { return std::min(text_.find('\n', from), text_.size()); }

  std::size_t after(std::string_view what, std::size_t from) const {
    const std::size_t found = text_.find(what, from);
    return found == std::string_view::npos ? text_.size() : found + what.size();
  }

  // An apostrophe in a word that begins with a digit parts digits and opens no literal.
  bool insideNumber() const {
    std::size_t start = at_;
    while (start > 0 && (isWordCharacter(text_[start - 1]) || text_[start - 1] == '\'')) --start;
    return start < at_ && std::isdigit(static_cast<unsigned char>(text_[start])) != 0;
  }

  void blankTo(std::size_t end) {
    for (; at_ < end; ++at_)
      if (text_[at_] != '\n') code_[at_] = ' ';
  }

  void blankRawString() {
    const std::size_t quote = at_ + 1;
    const std::string_view delimiter = text_.substr(quote + 1, text_.find('(', quote) - quote - 1);
    const std::size_t end = after(")" + std::string(delimiter) + "\"", quote);
    at_ = quote + 1;
    blankTo(end - 1);
    ++at_;
  }

  void blankLiteral(char quote) {
    std::size_t end = at_ + 1;
    while (end < text_.size() && text_[end] != quote && text_[end] != '\n') end += text_[end] == '\\' ? 2 : 1;
    ++at_;
    blankTo(std::min(end, text_.size()));
    ++at_;
  }

  std::string_view text_;
  std::string code_;
  std::size_t at_ = 0;
};

/// Takes the include out of a directive such as `#include <vector>`; false if it is another directive.
bool readInclude(std::string_view directive, Include& include) {
  const std::size_t word = directive.find_first_not_of(" \t", 1);
  if (word == std::string_view::npos || !directive.substr(word).starts_with("include")) return false;
  const std::size_t open = directive.find_first_of("<\"");
  if (open == std::string_view::npos) return false;
  include.quoted = directive[open] == '"';
  const std::size_t close = directive.find(include.quoted ? '"' : '>', open + 1);
  include.name = directive.substr(open + 1, close - open - 1);
  return true;
}

void takeDirectives(SourceFile& file, std::string_view text) {
  bool continued = false;
  for (std::size_t start = 0, line = 1; start < text.size(); ++line) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const std::size_t first = file.code.find_first_not_of(" \t", start);
    if (continued || (first < end && file.code[first] == '#')) {
      Include include{"", false, line};
      if (!continued && readInclude(text.substr(first, end - first), include)) file.includes.push_back(include);
      continued = end > start && text[end - 1] == '\\';
      std::fill(file.code.begin() + static_cast<std::ptrdiff_t>(start),
                file.code.begin() + static_cast<std::ptrdiff_t>(end), ' ');
    }
    start = end + 1;
  }
}

std::vector<std::string> testNamesIn(std::string_view code, std::string_view text) {
  std::vector<std::string> names;
  for (std::size_t at = code.find("TEST_CASE"); at != std::string_view::npos; at = code.find("TEST_CASE", at + 1)) {
    const std::size_t open = code.find('"', at);
    const std::size_t close = open == std::string_view::npos ? open : code.find('"', open + 1);
    if (close == std::string_view::npos) break;
    names.emplace_back(text.substr(open + 1, close - open - 1));
  }
  return names;
}

}  // namespace

SourceFile parseSource(std::string path, std::string_view text) {
  SourceFile file;
  file.path = std::move(path);
  file.code = Blanker(text).run();
  file.lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  takeDirectives(file, text);
  file.testNames = testNamesIn(file.code, text);
  return file;
}

SourceTree readTree(const std::filesystem::path& root) {
  SourceTree tree;
  for (const char* top : {"src", "tests", "bench", "fuzz"}) {
    if (!std::filesystem::is_directory(root / top)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / top)) {
      const std::string extension = entry.path().extension().string();
      if (!entry.is_regular_file() || (extension != ".h" && extension != ".cpp")) continue;
      const std::string path = entry.path().lexically_relative(root).generic_string();
      tree.emplace(path, parseSource(path, fakes::contentOf(entry.path())));
    }
  }
  return tree;
}

std::size_t lineOf(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  return static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
}

std::string folderOf(std::string_view path) {
  constexpr std::string_view source = "src/";
  if (!path.starts_with(source)) return {};
  return std::filesystem::path(path.substr(source.size())).parent_path().generic_string();
}

std::string resolve(const SourceTree& tree, const SourceFile& from, const Include& include) {
  if (!include.quoted) return {};
  const std::string beside =
      (std::filesystem::path(from.path).parent_path() / include.name).lexically_normal().string();
  for (const std::string& candidate : {"src/" + include.name, "tests/" + include.name, beside})
    if (tree.contains(candidate)) return candidate;
  return {};
}

}  // namespace trackloom::architecture
