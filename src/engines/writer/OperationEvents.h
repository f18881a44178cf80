#pragma once

#include <functional>
#include <memory>
#include <string>

#include "engines/ground/EngineError.h"
#include "engines/writer/LastFailure.h"
#include "ports/CDWriterEvents.h"
#include "ports/EventQueue.h"

namespace trackloom::engines::writer {

/// Where the words of an instance's failures go.
struct FailureWords {
  /// What LastDeviceErrorText answers.
  std::string deviceError;
  std::shared_ptr<LastFailure> last;
};

/// Whether the program tells the words of a device's failure itself, as it does of a write.
enum class DeviceWords { ToldByProgram, ToldAside };

/// The way of one operation's events from its thread to the listener. Once silenced, nothing arrives any more, not even
/// what had been posted before. The state belongs to the UI thread; only raise() and the ends may be called from
/// others.
class OperationEvents : public std::enable_shared_from_this<OperationEvents> {
 public:
  OperationEvents(EventQueue& queue, CDWriterEvents& listener, std::shared_ptr<FailureWords> words,
                  DeviceWords deviceWords = DeviceWords::ToldByProgram);

  void raise(std::function<void(CDWriterEvents&)> event);
  /// Ends the operation with OnWriteError; the words are in their places just before.
  void fail(const EngineError& error);
  /// Ends the operation with OnOperationComplete.
  void complete();
  /// Ends the operation with OnEraseComplete.
  void erased();

  void silence() { ended_ = true; }
  /// The listener has heard the last of it, or hears it now.
  bool ended() const { return ended_; }

 private:
  void end(std::function<void()> last);
  void keepWords(const EngineError& error);

  EventQueue& queue_;
  CDWriterEvents& listener_;
  std::shared_ptr<FailureWords> words_;
  DeviceWords deviceWords_;
  bool ended_ = false;
};

}  // namespace trackloom::engines::writer
