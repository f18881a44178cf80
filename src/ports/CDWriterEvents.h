#pragma once

#include <cstdint>

#include "runtime/Paths.h"

namespace trackloom {

/// What a writer engine tells its owner, always on the UI thread. Tracks count from 1, positions and lengths are
/// blocks.
class CDWriterEvents {
 public:
  virtual ~CDWriterEvents() = default;

  virtual void OnWriteStarting() {}
  virtual void OnTrackCacheStart(std::int16_t /*track*/, std::int32_t /*blocks*/) {}
  virtual void OnCacheProgress(std::int32_t /*position*/) {}
  virtual void OnImageTrackStart(std::int32_t /*track*/) {}
  virtual void OnTrackWriteStart(std::int16_t /*track*/, std::int32_t /*blocks*/) {}
  virtual void OnWriteProgress(std::int16_t /*track*/, std::int32_t /*position*/, std::int16_t /*bufferPercent*/) {}
  virtual void OnReadBufferLevel(std::int16_t /*percent*/) {}
  virtual void OnTrackClosing(std::int16_t /*track*/) {}
  virtual void OnSessionClosing() {}
  virtual void OnDiscClosing() {}
  virtual void OnOperationComplete() {}
  virtual void OnWriteError(std::int32_t /*code*/, std::int32_t /*deviceError*/) {}
  virtual void OnEraseStarted() {}
  virtual void OnEraseComplete() {}
  virtual void OnAudioTrackListed(const HostPath& /*path*/, std::int32_t, std::int32_t, std::int32_t,
                                  std::int16_t /*number*/) {}
};

}  // namespace trackloom
