#include "engines/writer/Sources.h"

#include <utility>

#include "engines/audio/SoundTags.h"
#include "engines/ground/EngineError.h"
#include "engines/writer/FinishedImage.h"
#include "engines/writer/ReadAhead.h"
#include "engines/writer/TextOfDisc.h"

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
  std::vector<audio::SoundTags> tags;
  for (const auto& track : tracks) {
    if (stop.stop_requested()) throw Stopped();
    const SourcesInUse::Use use(inUse, track->path());
    measured.push_back({track->path(), files->provenBlocks(track)});
    opened.measured.trackBlocks.push_back(measured.back().blocks);
    tags.push_back(audio::tagsOf(track->path()));
  }
  opened.measured.text = textOfDisc(tags);
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

SourceOpener dataSource(std::vector<DataEntry> entries, ImageTerms terms) {
  return [entries = std::move(entries), terms = std::move(terms)](const std::shared_ptr<SourcesInUse>& inUse,
                                                                  const std::stop_token& stop) {
    auto image = std::make_unique<DataImage>(entries, terms, inUse, stop);
    const std::int32_t blocks = image->blocks();
    return OpenedSource{std::move(image), {{blocks}, {}}};
  };
}

SourceOpener finishedImage(std::shared_ptr<Source> image) {
  return [image = std::move(image)](const std::shared_ptr<SourcesInUse>& inUse, const std::stop_token&) {
    auto finished = std::make_unique<FinishedImage>(image, inUse);
    const std::int32_t blocks = finished->blocks();
    return OpenedSource{std::move(finished), {{blocks}, {}}};
  };
}

}  // namespace trackloom::engines::writer
