#pragma once

#include <functional>
#include <optional>

#include "engines/disc/Recorder.h"
#include "engines/writer/OperationEvents.h"
#include "engines/writer/Progress.h"

namespace trackloom::engines::writer {

/// Which closings of those that are made are told.
struct ClosingsTold {
  bool session = true;
  bool disc = true;
};

/// The phases of an operation at the drive as the engine's events.
class PhaseEvents final : public OperationObserver {
 public:
  /// `readLevel`: how full the buffer is that a write is read ahead into.
  explicit PhaseEvents(
      OperationEvents& events, std::function<std::int16_t()> readLevel = [] { return std::int16_t{100}; },
      ClosingsTold closingsTold = {});

  void trackStarted(std::int16_t track, std::int32_t blocks) override;
  void progress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) override;
  void trackClosing(std::int16_t track) override;
  void sessionClosing() override;
  void discClosing() override;
  void erasing() override;

 private:
  OperationEvents& events_;
  std::function<std::int16_t()> readLevel_;
  ClosingsTold closingsTold_;
  std::optional<Progress> progress_;
};

}  // namespace trackloom::engines::writer
