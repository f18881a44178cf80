#pragma once

#include <memory>
#include <thread>

#include "engines/writer/Burn.h"
#include "engines/writer/OperationEvents.h"

namespace trackloom::engines::writer {

/// A write on a thread of its own. It reports every end but a stop as an event; destroying it stops the write and waits
/// for the thread, which never waits for the UI thread in turn.
class WriteJob {
 public:
  /// Throws std::system_error when no thread can be had.
  WriteJob(WriteRequest request, std::shared_ptr<OperationEvents> events);

  /// Returns at once.
  void requestStop() { thread_.request_stop(); }
  bool running() const { return !events_->ended(); }

 private:
  std::shared_ptr<OperationEvents> events_;
  std::jthread thread_;
};

}  // namespace trackloom::engines::writer
