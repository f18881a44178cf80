#include "fakes/WriterTranscript.h"

#include <algorithm>

namespace trackloom::fakes {

WriterTranscript::WriterTranscript() = default;

WriterTranscript::~WriterTranscript() = default;

bool WriterTranscript::ended() const {
  return has("OnOperationComplete") || has("OnEraseComplete") ||
         std::ranges::any_of(lines, [](const std::string& line) { return line.starts_with("OnWriteError"); });
}

bool WriterTranscript::has(const std::string& line) const {
  return std::ranges::find(lines, line) != lines.end();
}

void WriterTranscript::OnWriteStarting() {
  add("OnWriteStarting");
}

void WriterTranscript::OnTrackCacheStart(std::int16_t track, std::int32_t blocks) {
  add("OnTrackCacheStart", {track, blocks});
}

void WriterTranscript::OnCacheProgress(std::int32_t position) {
  cachePositions.push_back(position);
}

void WriterTranscript::OnImageTrackStart(std::int32_t track) {
  add("OnImageTrackStart", {track});
}

void WriterTranscript::OnTrackWriteStart(std::int16_t track, std::int32_t blocks) {
  add("OnTrackWriteStart", {track, blocks});
}

void WriterTranscript::OnWriteProgress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) {
  progress.push_back({track, position, bufferPercent});
  if (onLine) onLine("OnWriteProgress");
}

void WriterTranscript::OnReadBufferLevel(std::int16_t percent) {
  bufferLevels.push_back(percent);
}

void WriterTranscript::OnTrackClosing(std::int16_t track) {
  add("OnTrackClosing", {track});
}

void WriterTranscript::OnSessionClosing() {
  add("OnSessionClosing");
}

void WriterTranscript::OnDiscClosing() {
  add("OnDiscClosing");
}

void WriterTranscript::OnOperationComplete() {
  add("OnOperationComplete");
}

void WriterTranscript::OnWriteError(std::int32_t code, std::int32_t deviceError) {
  add("OnWriteError", {code, deviceError});
}

void WriterTranscript::OnEraseStarted() {
  add("OnEraseStarted");
}

void WriterTranscript::OnEraseComplete() {
  add("OnEraseComplete");
}

void WriterTranscript::OnAudioTrackListed(const HostPath& path, std::int32_t, std::int32_t, std::int32_t,
                                          std::int16_t number) {
  listed.push_back(std::to_string(number) + " " + path.text);
  if (onLine) onLine("OnAudioTrackListed");
}

void WriterTranscript::add(std::string line, std::initializer_list<std::int32_t> numbers) {
  for (const std::int32_t number : numbers) (line += ' ') += std::to_string(number);
  lines.push_back(line);
  if (onLine) onLine(line);
}

}  // namespace trackloom::fakes
