#include "engines/ripper/RipLog.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

#include "engines/ground/Blocks.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"

namespace trackloom::engines::ripper {

namespace {

constexpr const char* logName = "Rip.log";
/// A log of thousands of discs; what is longer is none of ours.
constexpr std::size_t longestLog = std::size_t{16} << 20;

std::string hex(std::uint32_t value) {
  std::array<char, 9> text{};
  std::snprintf(text.data(), text.size(), "%08X", value);
  return text.data();
}

std::string signedNumber(std::int32_t number) {
  return (number > 0 ? "+" : "") + std::to_string(number);
}

std::string counted(std::int32_t sectors) {
  return std::to_string(sectors) + " sectors (" + timeOfBlocks(sectors) + ")";
}

std::string_view wordsOf(std::int32_t code) {
  constexpr std::array<std::pair<std::int32_t, std::string_view>, 12> words{{{0, "whole"},
                                                                             {2, "jitter not corrected"},
                                                                             {3, "speed lowered"},
                                                                             {4, "read failed"},
                                                                             {5, "read again"},
                                                                             {6, "reading again failed"},
                                                                             {8, "aborted"},
                                                                             {9, "no buffer or encoder"},
                                                                             {10, "file could not be created"},
                                                                             {11, "file could not be written"},
                                                                             {12, "file could not be closed"},
                                                                             {13, "drive could not be used"}}};
  const auto found = std::ranges::find(words, code, &std::pair<std::int32_t, std::string_view>::first);
  return found == words.end() ? "failed" : found->second;
}

std::string troubleText(const std::map<std::int32_t, int>& troubles) {
  std::string text;
  for (const auto& [code, times] : troubles)
    text += (text.empty() ? "" : ", ") + std::string(wordsOf(code)) + " x " + std::to_string(times);
  return text.empty() ? "none" : text;
}

std::string line(std::string_view name, std::string_view value) {
  return std::string(name) + ": " + std::string(value) + "\n";
}

std::string trackText(const RippedTrack& track) {
  const ContentsTrack& place = track.track.place;
  std::string text = "\n" + line("Track " + std::to_string(track.track.number), track.track.target.text);
  text += line("  Sectors", std::to_string(place.start) + ", " + counted(place.length));
  text += line("  Pre-emphasis", place.preEmphasis ? "yes" : "no");
  text += line("  Read trouble", troubleText(track.troubles));
  text += line("  Result", wordsOf(track.code));
  if (track.code != status::whole) return text;
  text += line("  File", track.file.text);
  text += line("  CRC-32", hex(track.sums.crc32()));
  text += line("  AccurateRip v1", hex(track.sums.accurateRip1()));
  return text + line("  AccurateRip v2", hex(track.sums.accurateRip2()));
}

}  // namespace

std::string ripReport(const RipRequest& request, const RipFacts& facts, const std::vector<RippedTrack>& tracks) {
  const std::int32_t before = request.contents.tracks.empty() ? 0 : request.contents.tracks.front().start;
  std::string text = "Trackloom rip report, " + facts.date + "\n";
  text += line("Drive", facts.drive);
  text += line("Read offset", signedNumber(request.readOffset) + " samples");
  text += line("Speed", request.speed > 0 ? std::to_string(request.speed) + "x" : "automatic");
  text += line("Format", request.kbps == 0 ? "WAV, 16 bits, 44100 Hz, stereo"
                                           : "MP3, " + std::to_string(request.kbps) +
                                                 " kbps constant, 44100 Hz, stereo, " + facts.encoder);
  text += line("Sound before track 1", before > 0 ? counted(before) : "none");
  for (const RippedTrack& track : tracks) text += trackText(track);
  if (tracks.size() < request.tracks.size()) text += "\nCancelled.\n";
  return text;
}

void addToRipLog(const std::string& report, const std::vector<RippedTrack>& tracks) {
  const auto whole = std::ranges::find_if(tracks, [](const auto& track) { return !track.file.text.empty(); });
  if (whole == tracks.end()) return;
  const std::string& file = whole->file.text;
  const HostPath log(file.substr(0, file.rfind(HostSep) + 1) + logName);
  skipOnError([&] {
    const std::string earlier = FileExists(log) ? ReadStart(log, longestLog) + "\n" : "";
    if (earlier.size() < longestLog) ReplaceFile(log, earlier + report);
  });
}

}  // namespace trackloom::engines::ripper
