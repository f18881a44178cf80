#include "engines/writer/FakeRecorder.h"

#include <thread>
#include <utility>

#include "engines/disc/Sense.h"

namespace trackloom::engines::writer {

FakeDisc FakeDisc::blank(std::int32_t blocks) {
  FakeDisc disc;
  disc.state.freeAudioBlocks = blocks;
  disc.state.freeDataBlocks = blocks;
  return disc;
}

FakeDisc FakeDisc::closed() {
  FakeDisc disc;
  disc.state.status = DiscClosed;
  disc.state.sessions = 1;
  disc.state.lastSession = SessionClosed;
  return disc;
}

FakeRecorder::FakeRecorder() : name{" Fake ", "Recorder\t", 16, true} {}

FakeRecorder::~FakeRecorder() = default;

void FakeRecorder::insert(FakeDisc disc) {
  const std::lock_guard lock(mutex_);
  disc_ = std::move(disc);
}

std::optional<FakeDisc> FakeRecorder::disc() const {
  const std::lock_guard lock(mutex_);
  return disc_;
}

std::string FakeRecorder::id() const {
  return "fake";
}

bool FakeRecorder::cachesAllFirst() const {
  return cachesAll;
}

CacheWatch FakeRecorder::cacheWatch() {
  return [this](std::int64_t blocks) { cached.push_back(blocks); };
}

bool FakeRecorder::take() {
  return !refuseTake;
}

void FakeRecorder::enableWriteGuard(bool on) {
  guardOn = on;
}

std::shared_ptr<const DriveSnapshot> FakeRecorder::look() {
  const std::lock_guard lock(mutex_);
  return std::make_shared<DriveSnapshot>(DriveSnapshot{name, disc_ ? std::optional(disc_->state) : std::nullopt});
}

void FakeRecorder::check(const WriteOrder& order) {
  const auto disc = look()->disc;
  if (!disc) throw deviceError(sense::noMedium, "no disc is in the drive");
  requireFits(order, *disc);
}

void FakeRecorder::erase(bool quick, OperationObserver& observer, const std::stop_token& stop) {
  erases.push_back(quick);
  work(observer, stop, &OperationObserver::erasing);
  insert(FakeDisc::blank());
}

void FakeRecorder::close(bool alsoDisc, OperationObserver& observer, const std::stop_token& stop) {
  work(observer, stop, &OperationObserver::sessionClosing);
  FakeDisc closed = *disc();
  closed.state.lastSession = SessionClosed;
  if (alsoDisc) closed.state.status = DiscClosed;
  insert(closed);
}

std::vector<std::byte> FakeRecorder::read(std::int32_t, std::int32_t) {
  return {};
}

void FakeRecorder::eject() {
  const std::lock_guard lock(mutex_);
  if (refuseEject || writesUnderWay != 0) throw deviceError(sense::trayStuck, "the tray is stuck");
  disc_.reset();
}

void FakeRecorder::work(OperationObserver& observer, const std::stop_token& stop, void (OperationObserver::*phase)()) {
  (observer.*phase)();
  if (failChange) throw deviceError(sense::writeError, "the drive smokes");
  std::this_thread::sleep_for(everyWrite);
  if (stop.stop_requested()) throw Stopped();
}

}  // namespace trackloom::engines::writer
