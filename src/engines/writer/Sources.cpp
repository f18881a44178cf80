#include "engines/writer/Sources.h"

#include <utility>

#include "engines/ground/EngineError.h"
#include "engines/writer/DataImage.h"
#include "engines/writer/ReadAhead.h"

namespace trackloom::engines::writer {

namespace {

using Files = std::shared_ptr<audio::AudioFiles>;
using Tracks = std::vector<std::shared_ptr<Source>>;

ReadAhead::Opener openerOf(const Files& files, const Tracks& tracks, const std::vector<ReadAhead::Track>& measured) {
  return [=](std::size_t track) {
    auto stream = files->open(tracks[track]);
    if (stream->blocks() != measured[track].blocks)
      throw fileError(tracks[track]->path(), "changed while it was being recorded");
    return stream;
  };
}

OpenedSource openAudio(const Files& files, const Tracks& tracks, const std::shared_ptr<SourcesInUse>& inUse,
                       const std::stop_token& stop) {
  OpenedSource opened;
  std::vector<ReadAhead::Track> measured;
  for (const auto& track : tracks) {
    if (stop.stop_requested()) throw Stopped();
    const SourcesInUse::Use use(inUse, track->path());
    measured.push_back({track->path(), files->provenBlocks(track)});
    opened.trackBlocks.push_back(measured.back().blocks);
  }
  opened.sectors = std::make_unique<ReadAhead>(measured, openerOf(files, tracks, measured), inUse, stop);
  return opened;
}

}  // namespace

SourceOpener audioSource(Files files, Tracks tracks) {
  return [files = std::move(files), tracks = std::move(tracks)](const std::shared_ptr<SourcesInUse>& inUse,
                                                                const std::stop_token& stop) {
    return openAudio(files, tracks, inUse, stop);
  };
}

SourceOpener dataSource(std::vector<DataEntry> entries, std::string volumeLabel, std::int32_t room) {
  return [entries = std::move(entries), volumeLabel = std::move(volumeLabel), room](
             const std::shared_ptr<SourcesInUse>& inUse, const std::stop_token& stop) {
    auto image = std::make_unique<DataImage>(
        entries, ImageTerms{.label = volumeLabel, .missing = Missing::Refused, .room = room}, inUse, stop);
    const std::int32_t blocks = image->blocks();
    return OpenedSource{std::move(image), {blocks}};
  };
}

}  // namespace trackloom::engines::writer
