#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace trackloom::words {

/// A word of a table: bare, or a text between quotes.
struct Word {
  std::string text;
  bool quoted = false;
  bool operator==(const Word&) const = default;
};

/// A line of a table with what the indented lines below it add to it; never empty.
struct TableLine {
  std::size_t number = 0;
  std::vector<Word> words;

  /// The bare word at the place, "" where there is none or a text.
  std::string bare(std::size_t place) const;
  /// The text at the place, "" where there is none or a bare word.
  std::string quoted(std::size_t place) const;
  std::string name() const { return "line " + std::to_string(number); }
};

/// Reads a table: words parted by blanks, texts between quotes, `+` between two texts joins them, `\n` in a text is a
/// line end (CR LF) and `\"` a quote, `#` makes the rest of its line a remark, an indented line goes on with the one
/// above. Throws std::runtime_error with the number of the line that makes no sense.
std::vector<TableLine> readTable(const std::string& table);

/// A file of tests/words.
std::vector<TableLine> readTableFile(const std::string& name);

/// What `read` gives; what it throws is told with the place.
template <class Read>
auto at(const std::string& place, Read read) {
  try {
    return read();
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(place + ": " + error.what());
  }
}

/// A text as it stands in a table.
std::string inQuotes(const std::string& text);

/// A line as it could stand in a table, on one line with single blanks.
std::string written(const TableLine& line);

}  // namespace trackloom::words
