#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "ports/CDWriterEvents.h"
#include "ports/CDWriterXP.h"
#include "ports/EventQueue.h"

namespace trackloom::engines::writer {

/// The way of one operation's events from its thread to the listener. Once silenced, nothing arrives any more, not even
/// what had been posted before. The state belongs to the UI thread; only raise(), fail() and complete() may be called
/// from others.
class OperationEvents : public std::enable_shared_from_this<OperationEvents> {
 public:
  /// `deviceErrorText` gets the words of a failure just before the listener hears of it.
  OperationEvents(EventQueue& queue, CDWriterEvents& listener, std::shared_ptr<std::string> deviceErrorText);

  void raise(std::function<void(CDWriterEvents&)> event);
  /// Ends the operation with OnWriteError.
  void fail(WriteErrorCode code, std::int32_t deviceError, std::string words);
  /// Ends the operation with OnOperationComplete.
  void complete();

  void silence() { ended_ = true; }
  /// The listener has heard the last of it, or hears it now.
  bool ended() const { return ended_; }

 private:
  void end(std::function<void()> last);

  EventQueue& queue_;
  CDWriterEvents& listener_;
  std::shared_ptr<std::string> deviceErrorText_;
  bool ended_ = false;
};

}  // namespace trackloom::engines::writer
