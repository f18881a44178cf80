#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <utility>

#include "fakes/FakeWriter.h"

namespace trackloom::fakes {

namespace {

constexpr std::int16_t BufferPercent = 97;
constexpr std::int32_t Pause = 150;
constexpr std::size_t MostTracks = 99;

std::int32_t sumOf(const std::vector<std::int32_t>& tracks) {
  std::int32_t sum = 0;
  for (const std::int32_t blocks : tracks) sum += blocks;
  return sum;
}

/// Where a track of so many blocks tells how far it has come.
std::set<std::int32_t> milestones(std::int32_t blocks) {
  return {1, std::max(1, blocks / 4), std::max(1, blocks / 2), std::max(1, blocks - blocks / 4), blocks};
}

}  // namespace

void FakeWriter::step() {
  const auto next = std::move(steps_.front());
  steps_.pop_front();
  next();
}

void FakeWriter::finish() {
  while (busy()) step();
}

void FakeWriter::fail(std::int32_t code, std::int32_t number, const std::string& words) {
  add([=, this] {
    errorText = words;
    spoil();
    events.OnWriteError(code, number);
  });
}

void FakeWriter::spoil() {
  if (std::exchange(writing_, false) && disc() != nullptr) disc()->status = DiscClosed;
}

bool FakeWriter::sourcesAreThere() const {
  if (mode_ == AudioBlocks)
    return !refusedAudio_ && std::all_of(audioQueue.entries().begin(), audioQueue.entries().end(),
                                         [&](const auto& entry) { return stage_.audio.contains(entry.path); });
  const auto files = dataQueue.files();
  return !refusedData_ &&
         std::all_of(files.begin(), files.end(), [&](const auto& file) { return stage_.data.contains(file.source); });
}

bool FakeWriter::refused(const Order& order) {
  const FakeDisc* target = disc();
  const std::int32_t pauses = order.kind == AudioBlocks ? Pause * static_cast<std::int32_t>(order.tracks.size()) : 0;
  if (target == nullptr)
    fail(DeviceError, 0x023A00, "2/3A/00 no disc");
  else if (target->status == DiscClosed)
    fail(DeviceError, 0x053005, "5/30/05 the disc is closed");
  else if (target->holds && target->holds != order.kind)
    fail(DeviceError, 0x056400, "5/64/00 the disc holds the other kind");
  else if (order.tracks.size() > MostTracks)
    fail(DeviceError, 0x057205, "5/72/05 more than 99 tracks");
  else if (sumOf(order.tracks) + pauses > target->room(order.kind))
    fail(DeviceError, 0x056300, "5/63/00 the disc has no room");
  else
    return false;
  return true;
}

FakeWriter::Order FakeWriter::orderOfQueue() const {
  Order order{mode_, {}, mode_ == AudioBlocks ? cacheAudio_ : cacheData_, closeDisc_};
  if (mode_ == DataBlocks) order.tracks.push_back(dataQueue.blocks());
  if (mode_ == AudioBlocks)
    for (const auto& entry : audioQueue.discOrder()) order.tracks.push_back(entry.blocks);
  return order;
}

void FakeWriter::StartWrite() {
  note("StartWrite");
  steps_.clear();
  if (mode_ == AudioBlocks ? audioQueue.empty() : dataQueue.files().empty())
    return fail(FileError, 0, "there is nothing to write");
  if (!sourcesAreThere()) return fail(FileError, 0, "a source is not there");
  const Order order = orderOfQueue();
  if (!refused(order)) begin(order);
}

void FakeWriter::begin(const Order& order) {
  add([this] { events.OnWriteStarting(); });
  std::int32_t before = 0;
  for (std::size_t place = 0; place < order.tracks.size(); ++place) {
    const auto track = static_cast<std::int16_t>(place + 1);
    if (order.cached) cacheTrack(track, order.tracks[place]);
    if (!writeTrack(track, order.tracks[place], before)) return;
    before += order.tracks[place];
  }
  if (closeSession_) add([this] { events.OnSessionClosing(); });
  if (closeDisc_) add([this] { events.OnDiscClosing(); });
  add([=, this] {
    record(order);
    events.OnOperationComplete();
  });
}

void FakeWriter::cacheTrack(std::int16_t track, std::int32_t blocks) {
  add([=, this] { events.OnTrackCacheStart(track, blocks); });
  for (const std::int32_t position : milestones(blocks)) add([=, this] { events.OnCacheProgress(position); });
}

bool FakeWriter::writeTrack(std::int16_t track, std::int32_t blocks, std::int32_t before) {
  add([=, this] {
    writing_ = !testMode_;
    events.OnTrackWriteStart(track, blocks);
  });
  const auto& fault = stage_.fault;
  for (const std::int32_t position : milestones(blocks)) {
    if (fault && before + position > fault->block) {
      fail(fault->code, fault->number, fault->words);
      return false;
    }
    add([=, this] {
      events.OnWriteProgress(track, position, BufferPercent);
      events.OnReadBufferLevel(BufferPercent);
    });
  }
  add([=, this] { events.OnTrackClosing(track); });
  return true;
}

void FakeWriter::record(const Order& order) {
  if (!std::exchange(writing_, false)) return;
  FakeDisc& written = *disc();
  const bool closed = order.closesDisc || closeSession_;
  const bool goesOn = written.lastSession == SessionIncomplete;
  written.holds = order.kind;
  written.tracks += order.tracks.size();
  written.status = order.closesDisc ? DiscClosed : DiscOpen;
  written.lastSession = closed ? SessionClosed : SessionIncomplete;
  if (!goesOn) ++written.sessions;
  const std::int32_t used = sumOf(order.tracks) + Pause * static_cast<std::int32_t>(order.tracks.size());
  written.used += used;
  written.freeAudio -= used;
  written.freeData -= used;
}

void FakeWriter::AbortWrite() {
  note("AbortWrite");
  steps_.clear();
  spoil();
}

bool FakeWriter::WriteIsoImage(const HostPath& image) {
  note("WriteIsoImage(" + image.text + ")");
  steps_.clear();
  const auto file = stage_.data.find(image.text);
  if (file == stage_.data.end()) {
    fail(FileError, 0, image.text + " cannot be read");
    return true;
  }
  const Order order{DataBlocks, {file->second}, false, true};
  if (!refused(order)) begin(order);
  return true;
}

bool FakeWriter::CreateIsoImage(const HostPath& image) {
  note("CreateIsoImage(" + image.text + ")");
  if (!std::ofstream(image.text)) {
    events.OnWriteError(FileError, 0);
    return false;
  }
  std::int32_t track = 0;
  for (const FakeDataQueue::Entry& file : dataQueue.files()) {
    if (!stage_.data.contains(file.source)) continue;
    events.OnImageTrackStart(++track);
    events.OnTrackCacheStart(static_cast<std::int16_t>(track), file.blocks);
    for (const std::int32_t position : milestones(file.blocks)) events.OnCacheProgress(position);
  }
  return true;
}

bool FakeWriter::EraseDisc(bool quick) {
  note(std::string("EraseDisc(") + (quick ? "True)" : "False)"));
  if (disc() == nullptr || !disc()->rewritable) return false;
  add([this] { events.OnEraseStarted(); });
  add([this] {
    if (FakeDisc* old = disc())
      *old = {.rewritable = true, .freeAudio = old->freeAudio + old->used, .freeData = old->freeData + old->used};
    events.OnEraseComplete();
  });
  return true;
}

bool FakeWriter::CloseLastSession(bool alsoDisc) {
  note(std::string("CloseLastSession(") + (alsoDisc ? "True)" : "False)"));
  if (disc() == nullptr || disc()->lastSession != SessionIncomplete) return false;
  add([this] { events.OnSessionClosing(); });
  if (alsoDisc) add([this] { events.OnDiscClosing(); });
  add([=, this] {
    if (disc() != nullptr) {
      disc()->lastSession = SessionClosed;
      if (alsoDisc) disc()->status = DiscClosed;
    }
    events.OnOperationComplete();
  });
  return true;
}

}  // namespace trackloom::fakes
