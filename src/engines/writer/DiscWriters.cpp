#include "engines/writer/DiscWriters.h"

#include <utility>

#include "engines/writer/DiscWriter.h"

namespace trackloom::engines::writer {

DiscWriters::DiscWriters(RecorderList recorders, std::shared_ptr<audio::AudioFiles> audioFiles, EventQueue& events,
                         WriterSettings settings)
    : parts_(std::make_shared<const WriterParts>(WriterParts{std::move(recorders), std::move(audioFiles), events,
                                                             settings.pause, std::move(settings.scratchFolder)})) {}

std::unique_ptr<CDWriterXP> DiscWriters::create(CDWriterEvents& listener) {
  return std::make_unique<DiscWriter>(parts_, listener);
}

}  // namespace trackloom::engines::writer
