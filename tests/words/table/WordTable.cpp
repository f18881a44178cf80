#include "words/table/WordTable.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

namespace trackloom::words {

namespace {

const Word Plus{"+", false};

/// Takes one line of a file apart.
class LineReader {
 public:
  explicit LineReader(std::string_view line) : line_(line) {}

  std::vector<Word> words() {
    std::vector<Word> words;
    while (!atEnd()) words.push_back(line_[at_] == '"' ? text() : bareWord());
    return words;
  }

 private:
  bool atEnd() {
    at_ = std::min(line_.find_first_not_of(' ', at_), line_.size());
    return at_ == line_.size() || line_[at_] == '#';
  }

  Word bareWord() {
    const std::size_t start = at_;
    at_ = std::min(line_.find(' ', at_), line_.size());
    return {std::string(line_.substr(start, at_ - start)), false};
  }

  Word text() {
    Word word{"", true};
    while (next() != '"') word.text += line_[at_] == '\\' ? escaped() : std::string(1, line_[at_]);
    ++at_;
    return word;
  }

  char next() {
    if (++at_ >= line_.size()) throw std::runtime_error("a text without its end");
    return line_[at_];
  }

  std::string escaped() {
    switch (const char sign = next(); sign) {
      case 'n':
        return "\r\n";
      case '"':
      case '\\':
        return {sign};
      default:
        throw std::runtime_error("an unknown sign behind a backslash");
    }
  }

  std::string_view line_;
  std::size_t at_ = 0;
};

std::vector<Word> joined(const std::vector<Word>& words) {
  std::vector<Word> result;
  for (std::size_t at = 0; at < words.size(); ++at) {
    if (words[at] != Plus) {
      result.push_back(words[at]);
      continue;
    }
    const bool between = !result.empty() && result.back().quoted && at + 1 < words.size() && words[at + 1].quoted;
    if (!between) throw std::runtime_error("a + that is not between two texts");
    result.back().text += words[++at].text;
  }
  return result;
}

}  // namespace

std::string TableLine::bare(std::size_t place) const {
  return place < words.size() && !words[place].quoted ? words[place].text : "";
}

std::string TableLine::quoted(std::size_t place) const {
  return place < words.size() && words[place].quoted ? words[place].text : "";
}

std::vector<TableLine> readTable(const std::string& table) {
  std::vector<TableLine> lines;
  std::istringstream source(table);
  std::size_t number = 0;
  for (std::string text; std::getline(source, text);) {
    TableLine line{++number, {}};
    line.words = at(line.name(), [&] { return LineReader(text).words(); });
    if (line.words.empty()) continue;
    const bool goesOn = text.starts_with(' ') && !lines.empty();
    if (!goesOn) lines.push_back({number, {}});
    lines.back().words.insert(lines.back().words.end(), line.words.begin(), line.words.end());
  }
  for (TableLine& line : lines) line.words = at(line.name(), [&] { return joined(line.words); });
  return lines;
}

std::vector<TableLine> readTableFile(const std::string& name) {
  std::ifstream file(std::string(TRACKLOOM_WORDS_DIR) + "/" + name);
  if (!file) throw std::runtime_error("tests/words/" + name + " cannot be read");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return at("tests/words/" + name, [&] { return readTable(text); });
}

std::string inQuotes(const std::string& text) {
  std::string quoted = "\"";
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool lineEnd = text.compare(at, 2, "\r\n") == 0;
    if (lineEnd) ++at;
    if (text[at] == '"' || text[at] == '\\') quoted += '\\';
    quoted += lineEnd ? "\\n" : std::string(1, text[at]);
  }
  return quoted + '"';
}

std::string written(const TableLine& line) {
  std::string text;
  for (const Word& word : line.words)
    text += (text.empty() ? "" : " ") + (word.quoted ? inQuotes(word.text) : word.text);
  return text;
}

}  // namespace trackloom::words
