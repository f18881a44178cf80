#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "engines/disc/Sense.h"
#include "engines/writer/FakeRecorder.h"

namespace trackloom::engines::writer {

namespace {

/// One write of a FakeRecorder.
class FakeWrite {
 public:
  FakeWrite(FakeRecorder& recorder, const WriteOrder& order) : recorder_(recorder), order_(order) {
    ++recorder_.writesUnderWay;
  }
  ~FakeWrite() {
    if (touched_ && !finished_ && !order_.test) recorder_.insert(FakeDisc::closed());
    --recorder_.writesUnderWay;
  }
  FakeWrite(const FakeWrite&) = delete;
  FakeWrite& operator=(const FakeWrite&) = delete;

  void run(SectorSource& source, OperationObserver& observer, const std::stop_token& stop) {
    for (std::int16_t track = 1; track <= std::ssize(order_.trackBlocks); ++track) {
      source.beginTrack(track);
      requireNotStopped(stop);
      touched_ = true;
      writeTrack(track, source, observer, stop);
    }
    if (order_.closeSession) observer.sessionClosing();
    if (order_.closeSession) failIfClosing("session");
    if (order_.closeDisc) observer.discClosing();
    if (order_.closeDisc) failIfClosing("disc");
    requireNotStopped(stop);
    finish();
  }

 private:
  static void requireNotStopped(const std::stop_token& stop) {
    if (stop.stop_requested()) throw Stopped();
  }
  void writeTrack(std::int16_t track, SectorSource& source, OperationObserver& observer, const std::stop_token& stop) {
    const std::int32_t length = order_.trackBlocks[static_cast<std::size_t>(track) - 1];
    observer.trackStarted(track, length);
    std::string content;
    const std::int32_t taken = length - recorder_.leavesOut;
    for (std::int32_t position = 0; position < taken;) {
      requireNotStopped(stop);
      const std::int32_t step = position == 0 ? 1 : std::min({16, taken - position, std::max(1, length / 4)});
      std::string sectors(static_cast<std::size_t>(step) * bytesOfSector(order_.kind), '\0');
      source.read(std::as_writable_bytes(std::span(sectors)));
      take(step);
      content += sectors;
      position += step;
      if (position <= length - recorder_.keepsBack) observer.progress(track, position, 97);
    }
    tracks_.push_back(std::move(content));
    requireNotStopped(stop);
    observer.trackClosing(track);
    failIfClosing("track");
  }
  void take(std::int32_t blocks) {
    std::this_thread::sleep_for(recorder_.everyWrite);
    blocks_ += blocks;
    if (recorder_.failAtBlock && blocks_ > *recorder_.failAtBlock)
      throw deviceError(sense::writeError, "write error at block " + std::to_string(*recorder_.failAtBlock));
  }
  void failIfClosing(const std::string& part) const {
    if (recorder_.failClosing == part) throw deviceError(0x057200, part + " could not be closed");
  }
  void finish() {
    finished_ = true;
    if (order_.test) return;
    const bool closed = order_.closeSession || order_.closeDisc;
    FakeDisc disc = *recorder_.disc();
    disc.tracks.insert(disc.tracks.end(), tracks_.begin(), tracks_.end());
    disc.state.status = order_.closeDisc ? DiscClosed : DiscOpen;
    disc.state.lastSession = closed ? SessionClosed : SessionIncomplete;
    disc.state.sessions = static_cast<std::int16_t>(disc.state.sessions + 1);
    const auto used = static_cast<std::int32_t>(blocks_);
    disc.state.freeAudioBlocks = order_.closeDisc ? 0 : disc.state.freeAudioBlocks - used;
    disc.state.freeDataBlocks = order_.closeDisc ? 0 : disc.state.freeDataBlocks - used;
    recorder_.insert(disc);
  }

  FakeRecorder& recorder_;
  const WriteOrder& order_;
  std::vector<std::string> tracks_;
  std::int64_t blocks_ = 0;
  bool touched_ = false;
  bool finished_ = false;
};

}  // namespace

void FakeRecorder::write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
                         const std::stop_token& stop) {
  check(order);
  orders.push_back(order);
  FakeWrite(*this, order).run(source, observer, stop);
}

}  // namespace trackloom::engines::writer
