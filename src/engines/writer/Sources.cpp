#include "engines/writer/Sources.h"

#include <utility>

#include "engines/ground/EngineError.h"
#include "engines/writer/DataImage.h"
#include "engines/writer/ReadAhead.h"

namespace trackloom::engines::writer {

namespace {

using Files = std::shared_ptr<audio::AudioFiles>;
using Tracks = std::vector<std::shared_ptr<Source>>;

ReadAhead::Opener openerOf(const Files& files, const Tracks& tracks, const std::vector<std::int32_t>& lengths) {
  return [=](std::size_t track) {
    auto stream = files->open(tracks[track]);
    if (stream->blocks() != lengths[track])
      throw fileError(tracks[track]->path(), "changed while it was being recorded");
    return stream;
  };
}

OpenedSource openAudio(const Files& files, const Tracks& tracks, HandOver& handOver, const std::stop_token& stop) {
  OpenedSource opened;
  for (const auto& track : tracks) {
    if (stop.stop_requested()) throw Stopped();
    const std::string& name = track->path().text;
    handOver.tellReading(name);
    opened.trackBlocks.push_back(files->provenBlocks(track));
    opened.trackNames.push_back(name);
  }
  opened.sectors = std::make_unique<ReadAhead>(opened.trackBlocks, openerOf(files, tracks, opened.trackBlocks), stop);
  return opened;
}

}  // namespace

SourceOpener audioSource(Files files, Tracks tracks) {
  return [files = std::move(files), tracks = std::move(tracks)](HandOver& handOver, const std::stop_token& stop) {
    return openAudio(files, tracks, handOver, stop);
  };
}

SourceOpener dataSource(std::vector<DataEntry> entries, std::string volumeLabel, std::int32_t room) {
  return [entries = std::move(entries), volumeLabel = std::move(volumeLabel), room](HandOver& handOver,
                                                                                    const std::stop_token& stop) {
    const std::string name = "the files of the data disc";
    handOver.tellReading(name);
    auto image = std::make_unique<DataImage>(entries, volumeLabel, Missing::Refused, stop, room);
    const std::int32_t blocks = image->blocks();
    return OpenedSource{std::move(image), {blocks}, {name}};
  };
}

}  // namespace trackloom::engines::writer
