#include "engines/writer/DiscWriters.h"

#include <utility>

#include "engines/writer/DiscWriter.h"
#include "engines/writer/Sources.h"

namespace trackloom::engines::writer {

DiscWriters::DiscWriters(RecorderList recorders, std::shared_ptr<audio::AudioFiles> audioFiles, EventQueue& events,
                         Patience& patience, WriterSettings settings)
    : parts_(std::make_shared<const WriterParts>(WriterParts{std::move(recorders), audioFiles,
                                                             [audioFiles](std::vector<std::shared_ptr<Source>> tracks) {
                                                               return audioSource(audioFiles, std::move(tracks));
                                                             },
                                                             events, settings.pause, std::move(settings.scratchFolder),
                                                             settings.verified, patience})) {}

const FailureDetail& DiscWriters::failureDetail() const {
  return *parts_->lastFailure;
}

std::unique_ptr<CDWriterXP> DiscWriters::create(CDWriterEvents& listener) {
  return std::make_unique<DiscWriter>(parts_, listener);
}

}  // namespace trackloom::engines::writer
