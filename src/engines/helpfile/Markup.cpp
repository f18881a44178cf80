#include "engines/helpfile/Markup.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "engines/helpfile/Damaged.h"

namespace trackloom::engines::helpfile {

namespace {

constexpr int DeepestLine = 16;

constexpr std::array<std::pair<std::string_view, std::string_view>, 6> Entities{
    {{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&#39;", "'"}, {"&nbsp;", " "}, {"&amp;", "&"}}};

char lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return lowered(c); });
  return lower;
}

std::string escaped(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    const auto* entity = std::find_if(Entities.begin(), Entities.end(),
                                      [c](const auto& row) { return row.second.front() == c && c != ' '; });
    entity == Entities.end() ? void(safe += c) : void(safe += entity->first);
  }
  return safe;
}

/// How deep the marks of a page lie within each other, tables apart.
class Nesting {
 public:
  /// False: too deep.
  bool meet(std::string_view mark) {
    constexpr int DeepestMark = 40;
    constexpr int DeepestTable = 2;
    const std::string name = markName(mark);
    if (!standsAlone(name)) depth_ += name.front() == '/' ? -1 : 1;
    if (name == "table") ++tables_;
    if (name == "/table") --tables_;
    return depth_ <= DeepestMark && tables_ <= DeepestTable;
  }

 private:
  static bool standsAlone(const std::string& name) {
    static constexpr std::array<std::string_view, 6> Alone{"br", "hr", "img", "input", "link", "meta"};
    return name.empty() || name.front() == '!' || std::find(Alone.begin(), Alone.end(), name) != Alone.end();
  }

  int depth_ = 0;
  int tables_ = 0;
};

bool hasWordLongerThan(std::size_t most, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(" \n"), text.size());
    if (end > most) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

/// Puts the lines of a site map together, mark by mark.
class Map {
 public:
  void meet(std::string_view mark) {
    const std::string name = markName(mark);
    if (name == "ul") depth_ = std::min(depth_ + 1, DeepestLine);
    if (name == "/ul") depth_ = std::max(depth_ - 1, -1);
    if (name == "object") line_ = HelpBook::Line{std::max(depth_, 0), "", ""};
    if (name == "param") say(lowered(attribute(mark, "name")), attribute(mark, "value"));
    if (name == "/object") end();
  }

  std::vector<HelpBook::Line> take() { return std::move(lines_); }

 private:
  void say(const std::string& what, const std::string& value) {
    if (what == "name" && line_.name.empty()) line_.name = value;
    if (what == "local" && line_.place.empty()) line_.place = value;
  }

  void end() {
    if (!line_.name.empty()) lines_.push_back(std::exchange(line_, {}));
    if (lines_.size() > MostEntries) throw Damaged();
  }

  int depth_ = -1;
  HelpBook::Line line_;
  std::vector<HelpBook::Line> lines_;
};

}  // namespace

std::optional<Piece> takePiece(std::string_view& html) {
  if (html.empty()) return std::nullopt;
  const bool isMark = html.front() == '<';
  const std::size_t end = std::min(html.find(isMark ? '>' : '<', 1), html.size());
  const std::string_view piece = html.substr(0, end);
  // A mark that never closes takes the rest of the text with it.
  html.remove_prefix(isMark ? std::min(end + 1, html.size()) : end);
  return Piece{isMark, piece.substr(isMark ? 1 : 0)};
}

std::string markName(std::string_view mark) {
  const auto end = std::find_if(mark.begin(), mark.end(), [](char c) { return c == ' ' || c == '\n' || c == '\r'; });
  return lowered(mark.substr(0, static_cast<std::size_t>(end - mark.begin())));
}

std::string attribute(std::string_view mark, std::string_view name) {
  const std::string key = " " + std::string(name) + "=\"";
  const std::size_t start = lowered(mark).find(key);
  if (start == std::string::npos) return {};
  const std::string_view value = mark.substr(start + key.size());
  return withoutEntities(value.substr(0, value.find('"')));
}

std::string withoutEntities(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const auto* entity =
        std::find_if(Entities.begin(), Entities.end(), [text](const auto& row) { return text.starts_with(row.first); });
    plain += entity == Entities.end() ? text.substr(0, 1) : entity->second;
    text.remove_prefix(entity == Entities.end() ? 1 : entity->first.size());
  }
  return plain;
}

bool isShowable(std::string_view html) {
  constexpr std::size_t LongestPage = 128U << 10U;
  constexpr std::size_t LongestWord = 1000;
  constexpr int MostMarks = 5000;
  if (html.size() > LongestPage) return false;
  Nesting nesting;
  int marks = 0;
  while (const auto piece = takePiece(html)) {
    if (piece->isMark && (++marks > MostMarks || !nesting.meet(piece->text))) return false;
    if (!piece->isMark && hasWordLongerThan(LongestWord, piece->text)) return false;
  }
  return true;
}

std::vector<HelpBook::Line> siteMap(std::string_view html) {
  Map map;
  while (const auto piece = takePiece(html))
    if (piece->isMark) map.meet(piece->text);
  return map.take();
}

std::string siteMapText(const std::vector<HelpBook::Line>& lines) {
  std::string text = "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\">\n<HTML><BODY>\n";
  int depth = -1;
  for (const HelpBook::Line& line : lines) {
    for (; depth < line.depth; ++depth) text += "<UL>\n";
    for (; depth > line.depth; --depth) text += "</UL>\n";
    text += "<LI><OBJECT type=\"text/sitemap\"><param name=\"Name\" value=\"" + escaped(line.name) +
            "\"><param name=\"Local\" value=\"" + escaped(line.place) + "\"></OBJECT>\n";
  }
  for (; depth >= 0; --depth) text += "</UL>\n";
  return text + "</BODY></HTML>\n";
}

}  // namespace trackloom::engines::helpfile
