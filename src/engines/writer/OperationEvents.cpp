#include "engines/writer/OperationEvents.h"

#include <cstdint>
#include <utility>

namespace trackloom::engines::writer {

OperationEvents::OperationEvents(EventQueue& queue, CDWriterEvents& listener, std::shared_ptr<FailureWords> words,
                                 DeviceWords deviceWords)
    : queue_(queue), listener_(listener), words_(std::move(words)), deviceWords_(deviceWords) {}

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

void OperationEvents::keepWords(const EngineError& error) {
  const bool ofDevice = error.kind() == ErrorKind::Device;
  if (ofDevice) words_->deviceError = error.words();
  if (!ofDevice || deviceWords_ == DeviceWords::ToldAside) words_->last->remember(error.words());
}

void OperationEvents::fail(const EngineError& error) {
  end([this, error] {
    keepWords(error);
    listener_.OnWriteError(static_cast<std::int32_t>(error.kind()), error.number());
  });
}

void OperationEvents::complete() {
  end([this] { listener_.OnOperationComplete(); });
}

void OperationEvents::erased() {
  end([this] { listener_.OnEraseComplete(); });
}

}  // namespace trackloom::engines::writer
