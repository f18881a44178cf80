#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace trackloom::architecture {

/// One #include directive; `line` counts from 1.
struct Include {
  std::string name;
  bool quoted;
  std::size_t line;
};

/// One source file. `code` has the length and the lines of the file's text, but blanks in place of comments, of what
/// literals hold, and of directives, so that a rule may search it without knowing the language's lexical odds.
struct SourceFile {
  std::string path;  ///< From the root of the tree, such as "src/runtime/Paths.h".
  std::string code;
  std::size_t lines = 0;
  std::vector<Include> includes;
  std::vector<std::string> testNames;

  bool isHeader() const { return path.ends_with(".h"); }
};

/// All sources by path.
using SourceTree = std::map<std::string, SourceFile, std::less<>>;

SourceFile parseSource(std::string path, std::string_view text);

/// The sources of src, tests, bench and fuzz below `root`.
SourceTree readTree(const std::filesystem::path& root);

/// The number, from 1, of the line that holds `offset`.
std::size_t lineOf(std::string_view text, std::size_t offset);

/// The folder below src/ that a file belongs to, such as "engines/audio"; empty outside src/.
std::string folderOf(std::string_view path);

/// The path in the tree that a quoted include means; empty if no file of the tree is meant.
std::string resolve(const SourceTree& tree, const SourceFile& from, const Include& include);

}  // namespace trackloom::architecture
