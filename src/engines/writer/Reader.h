#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/writer/HandOver.h"
#include "engines/writer/OperationEvents.h"
#include "engines/writer/PieceSource.h"
#include "engines/writer/SourcesInUse.h"
#include "runtime/Paths.h"

namespace trackloom::engines::writer {

/// The sources of a write, opened and measured.
struct OpenedSource {
  std::unique_ptr<PieceSource> sectors;
  Measured measured;
};

/// Opens and looks at all sources. Called on the reader's thread, since the system may let that wait for ever; every
/// file is told to be in use for as long as any thread has it in its hands. Throws EngineError, Stopped.
using SourceOpener =
    std::function<OpenedSource(const std::shared_ptr<SourcesInUse>& inUse, const std::stop_token& stop)>;

/// What goes into the cache as a whole before its first sector is handed out.
enum class Caching { None, EachTrack, AllTracks };

/// What the reader of one write needs; it outlives everything else of the write where a source hangs.
struct ReadOrder {
  SourceOpener open;
  std::shared_ptr<SourcesInUse> inUse;
  std::size_t sectorBytes = 0;
  Caching caching = Caching::None;
  CacheWatch cacheWatch;
  HostPath scratchFolder;
  std::shared_ptr<OperationEvents> events;
};

/// The reading half of a write, on a thread of its own: opens and measures the sources, fills the caches, and hands the
/// sectors over. Destroyed, it lets go of a thread that a source keeps waiting; that thread ends by itself when the
/// system answers, and touches nothing of the write any more.
class Reader final : public SectorSource {
 public:
  /// `handOver` is a new one. Throws std::system_error when no thread can be had.
  Reader(ReadOrder order, std::shared_ptr<HandOver> handOver, const std::stop_token& stop);
  ~Reader() override;

  /// Waits until all sources are opened and measured.
  Measured measured() { return handOver_->measured(stop_); }
  /// Lets the cache take its room, of a write that has one.
  void takeRoom() { handOver_->prepare(stop_); }
  void beginTrack(std::int16_t track) override { handOver_->want(track, stop_); }
  void read(std::span<std::byte> sectors) override { handOver_->take(sectors, stop_); }
  std::int16_t bufferPercent() override { return handOver_->level(); }

 private:
  std::shared_ptr<HandOver> handOver_;
  std::stop_token stop_;
  std::stop_source ownStop_;
  std::stop_callback<std::function<void()>> passOn_;
};

}  // namespace trackloom::engines::writer
