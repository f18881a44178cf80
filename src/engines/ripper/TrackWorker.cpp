#include "engines/ripper/TrackWorker.h"

#include <memory>
#include <new>
#include <utility>

#include "engines/ripper/RipFile.h"
#include "engines/ripper/TrackSink.h"

namespace trackloom::engines::ripper {

namespace {

std::unique_ptr<Mp3Track> beginEncoding(const RipRequest& request, RipBoard& board) {
  std::unique_ptr<Mp3Track> encoder;
  try {
    board.unlessCancelled([&] {
      if (request.encoder != nullptr) encoder = request.encoder->begin(request.kbps);
    });
  } catch (const EngineError&) {
    throw TrackFailed{status::noBuffer};
  }
  return encoder;
}

void fill(RipFile& file, Checksums& sums, const RipRequest& request, std::size_t track, RipBoard& board) {
  const std::int32_t sectors = request.tracks[track].place.length;
  file.requireRoom(roomFor(sectors, request.kbps));
  TrackSink sink(file, beginEncoding(request, board), sectors);
  while (const auto sound = board.take(track)) {
    if (request.log) sums.add(*sound);
    sink.put(*sound);
    board.advance(track, static_cast<std::int32_t>(sound->size() / audioSectorBytes));
  }
  sink.finish();
  file.complete();
}

TrackEnd makeTrack(const RipRequest& request, std::size_t track, RipBoard& board) {
  const RipTrack& mine = request.tracks[track];
  TrackEnd end;
  try {
    end.sums.emplace(mine.among, mine.place.length);
    end.file = std::make_unique<RipFile>(mine.target);
    board.opened(track, end.file->path());
    fill(*end.file, *end.sums, request, track, board);
  } catch (const TrackFailed& failed) {
    end.code = failed.code;
  } catch (const std::bad_alloc&) {
    end.code = status::noBuffer;
  }
  return end;
}

}  // namespace

void workAtTracks(const RipRequest& request, RipBoard& board) {
  try {
    while (const auto track = board.claim()) board.end(*track, makeTrack(request, *track, board));
  } catch (const Stopped&) {
    return;
  }
}

}  // namespace trackloom::engines::ripper
