#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ports/CDWriterEvents.h"

namespace trackloom::fakes {

/// Writes down what a writer engine tells, one line an event, such as "OnTrackWriteStart 1 75". The three runs of
/// numbers that come at intervals are kept apart.
class WriterTranscript : public CDWriterEvents {
 public:
  struct Progress {
    std::int16_t track = 0;
    std::int32_t position = 0;
    std::int16_t bufferPercent = 0;
  };

  std::vector<std::string> lines;
  std::vector<Progress> progress;
  std::vector<std::int16_t> bufferLevels;
  std::vector<std::int32_t> cachePositions;
  std::vector<std::string> listed;
  /// Called with each line as it is written down.
  std::function<void(const std::string&)> onLine;

  bool ended() const {
    return has("OnOperationComplete") || has("OnEraseComplete") ||
           std::ranges::any_of(lines, [](const std::string& line) { return line.starts_with("OnWriteError"); });
  }
  bool has(const std::string& line) const { return std::ranges::find(lines, line) != lines.end(); }

  void OnWriteStarting() override { add("OnWriteStarting"); }
  void OnTrackCacheStart(std::int16_t track, std::int32_t blocks) override { add("OnTrackCacheStart", track, blocks); }
  void OnCacheProgress(std::int32_t position) override { cachePositions.push_back(position); }
  void OnImageTrackStart(std::int32_t track) override { add("OnImageTrackStart", track); }
  void OnTrackWriteStart(std::int16_t track, std::int32_t blocks) override { add("OnTrackWriteStart", track, blocks); }
  void OnWriteProgress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) override {
    progress.push_back({track, position, bufferPercent});
    if (onLine) onLine("OnWriteProgress");
  }
  void OnReadBufferLevel(std::int16_t percent) override { bufferLevels.push_back(percent); }
  void OnTrackClosing(std::int16_t track) override { add("OnTrackClosing", track); }
  void OnSessionClosing() override { add("OnSessionClosing"); }
  void OnDiscClosing() override { add("OnDiscClosing"); }
  void OnOperationComplete() override { add("OnOperationComplete"); }
  void OnWriteError(std::int32_t code, std::int32_t deviceError) override { add("OnWriteError", code, deviceError); }
  void OnEraseStarted() override { add("OnEraseStarted"); }
  void OnEraseComplete() override { add("OnEraseComplete"); }
  void OnAudioTrackListed(const HostPath& path, std::int32_t, std::int32_t, std::int32_t,
                          std::int16_t number) override {
    listed.push_back(std::to_string(number) + " " + path.text);
    if (onLine) onLine("OnAudioTrackListed");
  }

 private:
  template <typename... Numbers>
  void add(std::string line, Numbers... numbers) {
    ((line += " " + std::to_string(numbers)), ...);
    lines.push_back(line);
    if (onLine) onLine(line);
  }
};

}  // namespace trackloom::fakes
