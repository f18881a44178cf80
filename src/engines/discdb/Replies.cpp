#include "engines/discdb/Replies.h"

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "engines/discdb/PlainText.h"
#include "engines/ground/Blocks.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom::engines::discdb {

namespace {

[[noreturn]] void refuse(const std::string& words) {
  throw RuntimeError(RuntimeError::DeviceIoError, words);
}

bool isAsciiLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Takes the text up to the mark away, and the mark with it.
std::string_view takeUntil(std::string_view& text, char mark) {
  const std::size_t end = std::min(text.find(mark), text.size());
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return taken;
}

std::string_view takeLine(std::string_view& text) {
  std::string_view line = takeUntil(text, '\n');
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// The line that every reply begins with.
struct StatusLine {
  std::string code;
  std::string_view words;
};

StatusLine takeStatusLine(std::string_view& reply) {
  std::string_view line = takeLine(reply);
  const std::string_view code = takeUntil(line, ' ');
  if (code.size() != 3 || !std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; }))
    refuse("The disc database does not speak its protocol");
  return {std::string(code), line};
}

[[noreturn]] void refuseStatus(const StatusLine& status) {
  constexpr std::size_t Longest = 200;
  refuse("The disc database says: " + status.code + " " + Left(plainText(status.words), Longest));
}

/// The lines up to the one that a dot begins.
std::vector<std::string_view> linesOf(std::string_view list) {
  std::vector<std::string_view> lines;
  while (!list.empty()) {
    const std::string_view line = takeLine(list);
    if (line.starts_with('.')) return lines;
    lines.push_back(line);
  }
  refuse("The disc database's reply breaks off");
}

/// "rock 940aac0d ..."; nothing: the line names no place.
std::optional<EntryPlace> placeIn(std::string_view line) {
  constexpr std::size_t LongestCategory = 32;
  constexpr std::size_t IdDigits = 8;
  const std::string_view category = takeUntil(line, ' ');
  const std::string_view id = takeUntil(line, ' ');
  const bool isCategory = !category.empty() && category.size() <= LongestCategory &&
                          std::all_of(category.begin(), category.end(), isAsciiLetterOrDigit);
  const bool isId = id.size() == IdDigits && std::all_of(id.begin(), id.end(), isHexDigit);
  if (!isCategory || !isId) return std::nullopt;
  return EntryPlace{std::string(category), std::string(id)};
}

EntryPlace requiredPlace(std::string_view line) {
  const auto place = placeIn(line);
  if (!place) refuse("The disc database names no place of an entry");
  return *place;
}

/// Values by key; those of a key that comes again are parts of one (CDDB file format).
using Values = std::map<std::string, std::string, std::less<>>;

Values valuesOf(std::string_view list) {
  Values values;
  for (std::string_view line : linesOf(list)) {
    if (line.starts_with('#') || line.find('=') == std::string_view::npos) continue;
    const std::string_view key = takeUntil(line, '=');
    values[std::string(key)] += line;
  }
  return values;
}

/// With the escapes for a line's end, a tab and a backslash as what they stand for.
std::string unescaped(std::string_view value) {
  constexpr std::string_view Signs = "nt\\";
  constexpr std::string_view Meanings = "\n\t\\";
  std::string text;
  for (std::size_t place = 0; place < value.size(); ++place) {
    const std::size_t sign =
        value[place] == '\\' && place + 1 < value.size() ? Signs.find(value[place + 1]) : std::string_view::npos;
    text += sign == std::string_view::npos ? value[place] : Meanings[sign];
    if (sign != std::string_view::npos) ++place;
  }
  return text;
}

std::string textOf(const Values& values, std::string_view key) {
  const auto found = values.find(key);
  return found == values.end() ? "" : plainText(unescaped(found->second));
}

std::string titleKey(std::size_t track) {
  return "TTITLE" + std::to_string(track);
}

std::vector<DiscTrackRecord> tracksOf(const Values& values) {
  std::vector<DiscTrackRecord> tracks;
  for (std::size_t track = 0; track < mostTracks; ++track) tracks.push_back({textOf(values, titleKey(track))});
  return withoutTail(std::move(tracks));
}

/// A title without an artist is both (CDDB file format).
std::pair<std::string, std::string> artistAndTitle(const std::string& text) {
  constexpr std::string_view Separator = " / ";
  const std::size_t end = text.find(Separator);
  if (end == std::string::npos) return {text, text};
  return {text.substr(0, end), text.substr(end + Separator.size())};
}

bool isBlank(const std::string& text) {
  return Trim(text).empty();
}

}  // namespace

std::vector<DiscTrackRecord> withoutTail(std::vector<DiscTrackRecord> tracks) {
  while (!tracks.empty() && isBlank(tracks.back().Title)) tracks.pop_back();
  return tracks;
}

std::optional<EntryPlace> firstMatch(std::string_view reply) {
  const StatusLine status = takeStatusLine(reply);
  if (status.code == "200") return requiredPlace(status.words);
  if (status.code == "202") return std::nullopt;
  if (status.code != "210" && status.code != "211") refuseStatus(status);
  const auto matches = linesOf(reply);
  if (matches.empty()) return std::nullopt;
  return requiredPlace(matches.front());
}

DiscRecord entryOf(std::string_view reply, std::string_view category) {
  const StatusLine status = takeStatusLine(reply);
  if (status.code != "210") refuseStatus(status);
  const Values values = valuesOf(reply);
  DiscRecord record;
  std::tie(record.Artist, record.Title) = artistAndTitle(textOf(values, "DTITLE"));
  record.Year = textOf(values, "DYEAR");
  record.Genre = textOf(values, "DGENRE");
  record.Tracks = tracksOf(values);
  if (isBlank(record.Title) && record.Tracks.empty()) refuse("The disc database's entry has no names");
  if (isBlank(record.Genre)) record.Genre = category;
  if (record.Genre.empty()) record.Genre = placeIn(status.words).value_or(EntryPlace()).category;
  return record;
}

}  // namespace trackloom::engines::discdb
