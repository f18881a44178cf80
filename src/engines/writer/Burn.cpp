#include "engines/writer/Burn.h"

#include <chrono>

#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"
#include "engines/writer/WriteProof.h"

namespace trackloom::engines::writer {

namespace {

/// How long the sources of a write that was given up may take to answer before the next write is refused.
constexpr std::chrono::milliseconds patience{1000};

DiscState discFor(const WriteRequest& request) {
  if (!request.recorder) throw deviceError(sense::notReady, "no drive is in use");
  const auto disc = request.recorder->look()->disc;
  if (!disc) throw deviceError(sense::noMedium, "no disc is in the drive");
  return *disc;
}

Caching cachingOf(const WriteRequest& request) {
  if (!request.cached) return Caching::None;
  return request.recorder->cachesAllFirst() ? Caching::AllTracks : Caching::EachTrack;
}

void awaitFormerReader(const WriteRequest& request, const std::stop_token& stop) {
  if (const auto file = request.inUse->awaitFree(request.files, patience, stop))
    throw fileError(*file, "the recording that was cancelled still waits for an answer");
}

}  // namespace

void burn(const WriteRequest& request, const std::shared_ptr<OperationEvents>& events, const std::stop_token& stop) {
  const DiscState disc = discFor(request);
  awaitFormerReader(request, stop);
  WriteOrder order = request.order;
  Reader reader({request.sources(disc), request.inUse, bytesOfSector(order.kind), cachingOf(request),
                 request.recorder->cacheWatch(), request.scratchFolder, events},
                std::make_shared<HandOver>(), stop);
  const Measured measured = reader.measured();
  order.trackBlocks = measured.trackBlocks;
  order.text = measured.text;
  request.recorder->check(order);
  if (request.cached) {
    reader.takeRoom();
    // Disc and cache may lie on one disk of the computer.
    request.recorder->check(order);
  }
  events->raise([](CDWriterEvents& listener) { listener.OnWriteStarting(); });
  PhaseEvents phases(
      *events, [&reader] { return reader.bufferPercent(); }, request.closingsTold);
  const bool readBack = request.verified && !order.test;
  WriteProof proof(order, reader, phases, readBack);
  request.recorder->write(order, proof, proof, stop);
  proof.requireAllRecorded();
  if (readBack) proof.requireReadBack(*request.recorder, stop);
}

}  // namespace trackloom::engines::writer
