#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
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

  WriterTranscript();
  ~WriterTranscript() override;

  std::vector<std::string> lines;
  std::vector<Progress> progress;
  std::vector<std::int16_t> bufferLevels;
  std::vector<std::int32_t> cachePositions;
  std::vector<std::string> listed;
  /// Called with each line as it is written down.
  std::function<void(const std::string&)> onLine;

  bool ended() const;
  bool has(const std::string& line) const;

  void OnWriteStarting() override;
  void OnTrackCacheStart(std::int16_t track, std::int32_t blocks) override;
  void OnCacheProgress(std::int32_t position) override;
  void OnImageTrackStart(std::int32_t track) override;
  void OnTrackWriteStart(std::int16_t track, std::int32_t blocks) override;
  void OnWriteProgress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) override;
  void OnReadBufferLevel(std::int16_t percent) override;
  void OnTrackClosing(std::int16_t track) override;
  void OnSessionClosing() override;
  void OnDiscClosing() override;
  void OnOperationComplete() override;
  void OnWriteError(std::int32_t code, std::int32_t deviceError) override;
  void OnEraseStarted() override;
  void OnEraseComplete() override;
  void OnAudioTrackListed(const HostPath& path, std::int32_t, std::int32_t, std::int32_t, std::int16_t number) override;

 private:
  void add(std::string line, std::initializer_list<std::int32_t> numbers = {});
};

}  // namespace trackloom::fakes
