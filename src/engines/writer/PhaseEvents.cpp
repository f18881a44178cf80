#include "engines/writer/PhaseEvents.h"

#include <utility>

namespace trackloom::engines::writer {

PhaseEvents::PhaseEvents(OperationEvents& events, std::function<std::int16_t()> readLevel, ClosingsTold closingsTold)
    : events_(events), readLevel_(std::move(readLevel)), closingsTold_(closingsTold) {}

void PhaseEvents::trackStarted(std::int16_t track, std::int32_t blocks) {
  progress_.emplace(blocks);
  events_.raise([=](CDWriterEvents& listener) { listener.OnTrackWriteStart(track, blocks); });
}

void PhaseEvents::progress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) {
  if (!progress_->due(position)) return;
  const std::int16_t ahead = readLevel_();
  events_.raise([=](CDWriterEvents& listener) { listener.OnWriteProgress(track, position, bufferPercent); });
  events_.raise([=](CDWriterEvents& listener) { listener.OnReadBufferLevel(ahead); });
}

void PhaseEvents::trackClosing(std::int16_t track) {
  events_.raise([=](CDWriterEvents& listener) { listener.OnTrackClosing(track); });
}

void PhaseEvents::sessionClosing() {
  if (closingsTold_.session) events_.raise([](CDWriterEvents& listener) { listener.OnSessionClosing(); });
}

void PhaseEvents::discClosing() {
  if (closingsTold_.disc) events_.raise([](CDWriterEvents& listener) { listener.OnDiscClosing(); });
}

void PhaseEvents::erasing() {
  events_.raise([](CDWriterEvents& listener) { listener.OnEraseStarted(); });
}

}  // namespace trackloom::engines::writer
