#include "engines/writer/DiscWriters.h"

#include <utility>

#include "engines/writer/DiscWriter.h"
#include "engines/writer/Sources.h"

namespace trackloom::engines::writer {

namespace {

std::shared_ptr<const WriterParts> partsOf(Lazily<PlacedRecorders> drives,
                                           std::shared_ptr<audio::AudioFiles> audioFiles, EventQueue& events,
                                           Patience& patience, WriterSettings settings) {
  const auto sound = [audioFiles](std::vector<std::shared_ptr<Source>> tracks) {
    return audioSource(audioFiles, std::move(tracks));
  };
  auto parts =
      std::make_shared<WriterParts>(WriterParts{std::move(drives), audioFiles, sound, events, settings.pause,
                                                std::move(settings.scratchFolder), settings.verified, patience});
  parts->wakefulness = std::move(settings.wakefulness);
  return parts;
}

}  // namespace

DiscWriters::DiscWriters(Lazily<PlacedRecorders> drives, std::shared_ptr<audio::AudioFiles> audioFiles,
                         EventQueue& events, Patience& patience, WriterSettings settings)
    : parts_(partsOf(std::move(drives), std::move(audioFiles), events, patience, std::move(settings))) {}

DiscWriters::DiscWriters(RecorderList recorders, std::shared_ptr<audio::AudioFiles> audioFiles, EventQueue& events,
                         Patience& patience, WriterSettings settings)
    : DiscWriters(Lazily<PlacedRecorders>(std::move(recorders)), std::move(audioFiles), events, patience,
                  std::move(settings)) {}

const FailureDetail& DiscWriters::failureDetail() const {
  return *parts_->lastFailure;
}

std::unique_ptr<CDWriterXP> DiscWriters::create(CDWriterEvents& listener) {
  return std::make_unique<DiscWriter>(parts_, listener);
}

}  // namespace trackloom::engines::writer
