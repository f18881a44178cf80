#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include "engines/ground/Blocks.h"
#include "engines/virtual/VirtualDisc.h"
#include "runtime/IniFile.h"

namespace trackloom::engines::virtualrecorder {

namespace {

template <typename Value>
struct Word {
  const char* text;
  Value value;
};

template <typename Value, std::size_t count>
using Words = std::array<Word<Value>, count>;

constexpr Words<VirtualDisc::Medium, 2> media{
    {{"CD-R", VirtualDisc::Medium::CdR}, {"CD-RW", VirtualDisc::Medium::CdRw}}};
constexpr Words<VirtualDisc::Status, 4> statuses{{{"blank", VirtualDisc::Status::Blank},
                                                  {"open", VirtualDisc::Status::Open},
                                                  {"closed", VirtualDisc::Status::Closed},
                                                  {"writing", VirtualDisc::Status::Writing}}};
constexpr Words<BlockKind, 2> kinds{{{"audio", AudioBlocks}, {"data", DataBlocks}}};
constexpr Words<bool, 2> closings{{{"incomplete", false}, {"closed", true}}};

template <typename Value, std::size_t count>
const char* textOf(const Words<Value, count>& words, Value value) {
  return std::find_if(words.begin(), words.end(), [&](const auto& word) { return word.value == value; })->text;
}

[[noreturn]] void damaged(const std::string& section, const std::string& words) {
  throw DamagedDisc("disc.ini, [" + section + "]: " + words);
}

template <typename Value, std::size_t count>
Value wordOf(const IniFile& ini, const std::string& section, const char* key, const Words<Value, count>& words) {
  const std::optional<std::string> text = ini.value(section, key);
  const auto found = std::find_if(words.begin(), words.end(), [&](const auto& word) { return text == word.text; });
  if (found == words.end()) damaged(section, std::string(key) + " is missing or not a word that is known");
  return found->value;
}

std::int32_t numberOf(const IniFile& ini, const std::string& section, const char* key, std::int32_t least,
                      std::int32_t most) {
  const std::optional<std::int32_t> number = ini.number(section, key, least, most);
  if (!number)
    damaged(section, std::string(key) + " is missing or not a number from " + std::to_string(least) + " to " +
                         std::to_string(most));
  return *number;
}

std::int32_t capacityOf(const IniFile& ini, const char* key, std::int32_t otherwise) {
  return ini.value("disc", key) ? numberOf(ini, "disc", key, 0, mostBlocks) : otherwise;
}

std::string numbered(const char* what, std::size_t number) {
  return what + std::to_string(number);
}

/// The sections `session 1`, `session 2` and so on must be there without a gap.
std::size_t countOf(const IniFile& ini, const std::string& what) {
  std::size_t count = 0;
  for (const std::string& name : ini.sections())
    if (name.starts_with(what)) ++count;
  return count;
}

DiscName parseName(const IniFile& ini, const std::string& section) {
  return {ini.value(section, "title").value_or(""), ini.value(section, "performer").value_or("")};
}

void writeName(IniWriter& ini, const DiscName& name) {
  if (!name.title.empty()) ini.entry("title", name.title);
  if (!name.performer.empty()) ini.entry("performer", name.performer);
}

/// A line of the cue sheet, of which a quote would end the text early; empty: there is no text.
std::string cueText(const char* command, std::string text) {
  std::ranges::replace(text, '"', '\'');
  return text.empty() ? "" : std::string(command) + " \"" + text + "\"\r\n";
}

VirtualTrack parseTrack(const IniFile& ini, const std::string& section) {
  VirtualTrack track;
  track.kind = wordOf(ini, section, "kind", kinds);
  track.start = numberOf(ini, section, "start", 0, mostBlocks);
  track.length = numberOf(ini, section, "length", 1, mostBlocks);
  track.pregap = numberOf(ini, section, "pregap", 0, mostBlocks);
  track.name = parseName(ini, section);
  return track;
}

void parseTracks(const IniFile& ini, VirtualDisc& disc) {
  const std::size_t count = countOf(ini, "track ");
  if (count > mostTracks) throw DamagedDisc("disc.ini has more than 99 tracks");
  std::int32_t end = 0;
  std::int32_t session = 1;
  for (std::size_t number = 1; number <= count; ++number) {
    const std::string section = numbered("track ", number);
    const VirtualTrack track = parseTrack(ini, section);
    if (track.start < end || track.start - end < track.pregap) damaged(section, "it overlaps the track before it");
    if (track.end() > disc.capacity(track.kind)) damaged(section, "it ends behind the end of the disc");
    session = numberOf(ini, section, "session", session, static_cast<std::int32_t>(disc.sessions.size()));
    disc.sessions[static_cast<std::size_t>(session) - 1].tracks.push_back(track);
    end = track.end();
  }
}

void parseSessions(const IniFile& ini, VirtualDisc& disc) {
  const std::size_t count = countOf(ini, "session ");
  if (count > mostTracks) throw DamagedDisc("disc.ini has more than 99 sessions");
  for (std::size_t number = 1; number <= count; ++number)
    disc.sessions.push_back({wordOf(ini, numbered("session ", number), "status", closings), {}});
}

void requireLaws(const VirtualDisc& disc) {
  using Status = VirtualDisc::Status;
  if (disc.status == Status::Blank && !disc.sessions.empty()) damaged("disc", "a blank disc cannot have sessions");
  if ((disc.status == Status::Open || disc.status == Status::Closed) && disc.sessions.empty())
    damaged("disc", "a disc that is not blank must have a session");
  for (std::size_t at = 0; at < disc.sessions.size(); ++at) {
    const VirtualSession& session = disc.sessions[at];
    const bool mayBeOpen = at + 1 == disc.sessions.size() && disc.status != Status::Closed;
    if (session.tracks.empty()) damaged(numbered("session ", at + 1), "it has no tracks");
    if (!session.closed && !mayBeOpen) damaged(numbered("session ", at + 1), "it must be closed");
  }
  if (disc.isMixed() && disc.status != Status::Closed)
    throw DamagedDisc("disc.ini has tracks of both kinds on a disc that is not closed");
}

}  // namespace

VirtualDisc VirtualDisc::parse(std::string_view text) {
  if (text.size() > IniFile::sizeLimit) throw DamagedDisc("disc.ini is far too long");
  const IniFile ini = IniFile::parse(text);
  VirtualDisc disc;
  disc.medium = wordOf(ini, "disc", "medium", media);
  disc.status = wordOf(ini, "disc", "status", statuses);
  const std::int32_t blocks = numberOf(ini, "disc", "blocks", 0, mostBlocks);
  disc.audioBlocks = capacityOf(ini, "audioBlocks", blocks);
  disc.dataBlocks = capacityOf(ini, "dataBlocks", blocks);
  disc.name = parseName(ini, "disc");
  parseSessions(ini, disc);
  parseTracks(ini, disc);
  requireLaws(disc);
  return disc;
}

std::string VirtualDisc::ini() const {
  IniWriter ini;
  ini.comment("A disc of the virtual recorder. Addresses and lengths are blocks of 1/75 second.");
  ini.section("disc").entry("medium", textOf(media, medium)).entry("status", textOf(statuses, status));
  ini.entry("blocks", audioBlocks);
  if (dataBlocks != audioBlocks) ini.entry("dataBlocks", dataBlocks);
  writeName(ini, name);
  std::int32_t track = 0;
  for (std::size_t at = 0; at < sessions.size(); ++at) {
    const auto session = static_cast<std::int32_t>(at + 1);
    ini.section(numbered("session ", at + 1)).entry("status", textOf(closings, sessions[at].closed));
    for (const VirtualTrack& each : sessions[at].tracks) {
      ini.section("track " + std::to_string(++track)).entry("session", session);
      ini.entry("kind", textOf(kinds, each.kind)).entry("start", each.start);
      ini.entry("length", each.length).entry("pregap", each.pregap);
      writeName(ini, each.name);
    }
  }
  return ini.text();
}

std::string VirtualDisc::cueSheet() const {
  std::string sheet = cueText("PERFORMER", name.performer) + cueText("TITLE", name.title);
  sheet += "FILE \"disc.bin\" BINARY\r\n";
  std::int32_t number = 0;
  std::int32_t end = 0;
  for (const VirtualTrack& track : tracks()) {
    std::array<char, 32> heading{};
    std::snprintf(heading.data(), heading.size(), "  TRACK %02d AUDIO\r\n", ++number);
    sheet += heading.data() + cueText("    TITLE", track.name.title) + cueText("    PERFORMER", track.name.performer);
    // All that lies between two tracks is silence of the later one, also the gap between two sessions.
    if (track.start > end) sheet += "    INDEX 00 " + timeOfBlocks(end) + "\r\n";
    sheet += "    INDEX 01 " + timeOfBlocks(track.start) + "\r\n";
    end = track.end();
  }
  return sheet;
}

}  // namespace trackloom::engines::virtualrecorder
