#include "engines/writer/OperationEvents.h"

#include <utility>

namespace trackloom::engines::writer {

OperationEvents::OperationEvents(EventQueue& queue, CDWriterEvents& listener,
                                 std::shared_ptr<std::string> deviceErrorText)
    : queue_(queue), listener_(listener), deviceErrorText_(std::move(deviceErrorText)) {}

void OperationEvents::raise(std::function<void(CDWriterEvents&)> event) {
  queue_.post([self = shared_from_this(), event = std::move(event)] {
    if (!self->ended_) event(self->listener_);
  });
}

void OperationEvents::end(std::function<void()> last) {
  queue_.post([self = shared_from_this(), last = std::move(last)] {
    if (std::exchange(self->ended_, true)) return;
    last();
  });
}

void OperationEvents::fail(WriteErrorCode code, std::int32_t deviceError, std::string words) {
  end([this, code, deviceError, words = std::move(words)] {
    *deviceErrorText_ = words;
    listener_.OnWriteError(code, deviceError);
  });
}

void OperationEvents::complete() {
  end([this] { listener_.OnOperationComplete(); });
}

}  // namespace trackloom::engines::writer
