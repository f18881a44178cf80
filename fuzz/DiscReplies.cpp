#include "DiscReplies.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "engines/discdb/PlainText.h"
#include "engines/discdb/Replies.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom::fuzz {

namespace {

using engines::discdb::entryOf;

void require(bool holds) {
  if (!holds) std::abort();
}

void requirePlain(const std::string& text) {
  require(isValidUtf8(text) && engines::discdb::plainText(text) == text);
  require(std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }));
}

bool isSafeWord(const std::string& text) {
  return !text.empty() && text.size() <= 32 && std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  });
}

std::string escaped(const std::string& text) {
  std::string value;
  for (const char c : text) value += c == '\\' ? "\\\\" : std::string(1, c);
  return value;
}

std::string entryFrom(const DiscRecord& record) {
  std::string entry = "210 OK\r\nDTITLE=" + escaped(record.Artist) + " / " + escaped(record.Title) + "\r\n";
  entry += "DYEAR=" + escaped(record.Year) + "\r\nDGENRE=" + escaped(record.Genre) + "\r\n";
  for (std::size_t track = 0; track < record.Tracks.size(); ++track)
    entry += "TTITLE" + std::to_string(track) + "=" + escaped(record.Tracks[track].Title) + "\r\n";
  return entry + ".\r\n";
}

std::string textOf(const DiscRecord& record) {
  std::string text = record.Artist + "\n" + record.Title + "\n" + record.Genre + "\n" + record.Year;
  for (const DiscTrackRecord& track : record.Tracks) text += "\n" + track.Title;
  return text;
}

void requireSound(const DiscRecord& record) {
  for (const std::string& text : {record.Artist, record.Title, record.Genre, record.Year}) requirePlain(text);
  for (const DiscTrackRecord& track : record.Tracks) requirePlain(track.Title);
  require(record.Tracks.size() <= 99);
  // An artist that ends like the separator is parted earlier when it is read again.
  if ((record.Artist + " ").find(" / ") == std::string::npos)
    require(textOf(entryOf(entryFrom(record))) == textOf(record));
}

}  // namespace

void runReplies(std::string_view bytes) {
  skipOnError([&] {
    if (const auto place = engines::discdb::firstMatch(bytes))
      require(isSafeWord(place->category) && isSafeWord(place->id));
  });
  DiscRecord record;
  bool isEntry = false;
  skipOnError([&] {
    record = entryOf(bytes);
    isEntry = true;
  });
  if (isEntry) requireSound(record);
}

}  // namespace trackloom::fuzz
