#include "engines/writer/Sources.h"

#include <utility>

#include "engines/ground/EngineError.h"
#include "engines/writer/DataImage.h"
#include "engines/writer/ReadAhead.h"

namespace trackloom::engines::writer {

namespace {

using Files = std::shared_ptr<audio::AudioFiles>;

std::int32_t measured(audio::AudioFiles& files, const HostPath& path) {
  const auto blocks = files.blocks(path);
  if (!blocks) throw unusable(path, noAudio);
  return *blocks;
}

ReadAhead::Opener openerOf(const Files& files, const std::vector<HostPath>& paths,
                           const std::vector<std::int32_t>& lengths) {
  return [=](std::size_t track) {
    auto stream = files->open(paths[track]);
    if (stream->blocks() != lengths[track]) throw fileError(paths[track], "changed since it was measured");
    return stream;
  };
}

OpenedSource openAudio(const Files& files, const std::vector<HostPath>& paths, HandOver& handOver,
                       const std::stop_token& stop) {
  OpenedSource opened;
  for (const HostPath& path : paths) {
    if (stop.stop_requested()) throw Stopped();
    handOver.tellReading(path.text);
    opened.trackBlocks.push_back(measured(*files, path));
    opened.trackNames.push_back(path.text);
  }
  opened.sectors = std::make_unique<ReadAhead>(opened.trackBlocks, openerOf(files, paths, opened.trackBlocks), stop);
  return opened;
}

}  // namespace

SourceOpener audioSource(Files files, std::vector<HostPath> tracks) {
  return [files = std::move(files), tracks = std::move(tracks)](HandOver& handOver, const std::stop_token& stop) {
    return openAudio(files, tracks, handOver, stop);
  };
}

SourceOpener dataSource(std::vector<DataEntry> entries, std::string volumeLabel, std::int32_t room) {
  return [entries = std::move(entries), volumeLabel = std::move(volumeLabel), room](HandOver& handOver,
                                                                                    const std::stop_token& stop) {
    const std::string name = "the files of the data disc";
    handOver.tellReading(name);
    auto image = std::make_unique<DataImage>(entries, volumeLabel, Unreadable::Refused, stop, room);
    const std::int32_t blocks = image->blocks();
    return OpenedSource{std::move(image), {blocks}, {name}};
  };
}

}  // namespace trackloom::engines::writer
