#include "engines/ripper/RipTeller.h"

#include <chrono>
#include <future>
#include <memory>

namespace trackloom::engines::ripper {

namespace {

/// Positions come at least every 50 ms.
constexpr std::chrono::milliseconds beat{40};
/// For so long the words of a track's end can be read.
constexpr std::chrono::milliseconds readable{1000};

}  // namespace

void RipTeller::run() {
  for (std::size_t track = 0; track < request_.tracks.size(); ++track) tellTrack(track);
}

void RipTeller::tellTrack(std::size_t track) {
  const RipTrack& mine = request_.tracks[track];
  const HostPath path = board_.awaitOpened(track);
  events_.raise([path, place = mine.place, number = mine.callerNumber](CDRipperEvents& listener) {
    listener.TrackStarted(path, place.start, place.end(), number);
  });
  tellReading(track);
  TrackEnd end = board_.takeEnd(track);
  if (end.code != status::whole)
    tellCode(end.code);
  else if (mine.place.length > 0)
    events_.progress(mine.place.end());
  tellUntilHeard([](CDRipperEvents& listener) { listener.TrackFinished(); });
  const HostPath file = settle(end);
  told_.push_back({mine, file, end.code, *end.sums, board_.troublesOf(track)});
}

void RipTeller::tellReading(std::size_t track) {
  const ContentsTrack& place = request_.tracks[track].place;
  for (;;) {
    const TrackNews news = board_.await(track, beat);
    for (const Trouble& trouble : news.troubles) events_.status(trouble.code, trouble.sector);
    if (news.ended) return;
    if (place.length > 0) events_.progress(place.start + news.done);
  }
}

void RipTeller::tellCode(std::int32_t code) {
  tellUntilHeard([code](CDRipperEvents& listener) { listener.RipStatus(code, 0); });
  board_.pause(readable);
}

void RipTeller::tellUntilHeard(RipEvents::Tell event) {
  const auto fate = std::make_shared<std::promise<EventFate>>();
  events_.raise(std::move(event), [fate](EventFate what) { fate->set_value(what); });
  if (fate->get_future().get() == EventFate::Dropped) throw Stopped();
}

/// The name of a whole track's file; empty: there is none, and what was made of it goes.
HostPath RipTeller::settle(TrackEnd& end) {
  const std::unique_ptr<RipFile> file = std::move(end.file);
  if (!file || end.code != status::whole) return {};
  try {
    return file->takeName(made_);
  } catch (const TrackFailed& failed) {
    end.code = failed.code;
    tellCode(failed.code);
    return {};
  }
}

}  // namespace trackloom::engines::ripper
