#include "engines/virtual/VirtualRecorder.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/virtual/VirtualChange.h"
#include "engines/virtual/VirtualWrite.h"

namespace trackloom::engines::virtualrecorder {

namespace {

DriveIdentity identityOf(const RecorderSettings& settings) {
  return {settings.vendor, settings.product, settings.maximumSpeed, settings.writeGuard};
}

std::optional<DiscState> stateOf(const std::optional<DiscFolder>& disc) {
  if (!disc) return std::nullopt;
  try {
    DiscState state = disc->load().state();
    state.id = disc->id();
    return state;
  } catch (const DamagedDisc&) {
    return stateOfDamagedDisc();
  }
}

/// A tray that cannot be read holds no disc.
std::shared_ptr<const DriveSnapshot> snapshotOf(const RecorderFolder& recorder) {
  auto snapshot = std::make_shared<DriveSnapshot>();
  snapshot->identity = identityOf(recorder.settings());
  try {
    snapshot->disc = stateOf(recorder.discInTray());
  } catch (const std::system_error&) {
    snapshot->disc.reset();
  }
  return snapshot;
}

std::string nameOf(const HostPath& folder) {
  return folder.text.substr(folder.text.find_last_of(HostSep) + 1);
}

/// The recorder with the disc in it, which nothing else changes while this lives.
struct Workplace {
  RecorderFolder recorder;
  DiscFolder disc;
  RecorderSettings settings;
};

RecorderFolder locked(const HostPath& folder) {
  RecorderFolder recorder(folder);
  if (!recorder.lock()) throw deviceError(sense::busy, nameOf(folder) + " is busy: something else writes its disc");
  return recorder;
}

Workplace workplaceIn(const HostPath& folder) {
  try {
    RecorderFolder recorder = locked(folder);
    std::optional<DiscFolder> disc = recorder.discInTray();
    if (!disc) throw deviceError(sense::noMedium, "no disc in " + nameOf(folder));
    RecorderSettings settings = recorder.settings();
    return {std::move(recorder), std::move(*disc), std::move(settings)};
  } catch (const std::system_error& error) {
    throw deviceError(sense::noMedium, "no disc in " + nameOf(folder) + ": " + error.what());
  }
}

/// Of a folder that has gone the defaults.
RecorderSettings settingsIn(const HostPath& folder) {
  try {
    return RecorderFolder(folder).settings();
  } catch (const std::system_error&) {
    return {};
  }
}

}  // namespace

std::string VirtualRecorder::id() const {
  return nameOf(folder_);
}

bool VirtualRecorder::take() {
  try {
    return !RecorderFolder(folder_).settings().refuseSelect;
  } catch (const std::system_error&) {
    return false;
  }
}

std::shared_ptr<const DriveSnapshot> VirtualRecorder::look() {
  feedIfOwed();
  try {
    const RecorderFolder recorder(folder_);
    FolderStamp stamp = recorder.stamp();
    const std::lock_guard lock(mutex_);
    if (!looked_ || !looked_->stamp.counts() || looked_->stamp != stamp)
      looked_ = {std::move(stamp), snapshotOf(recorder)};
    return looked_->snapshot;
  } catch (const std::system_error&) {
    return std::make_shared<DriveSnapshot>(DriveSnapshot{identityOf({}), std::nullopt});
  }
}

void VirtualRecorder::check(const WriteOrder& order) {
  planWrite(workplaceIn(folder_).disc, order);
}

CacheWatch VirtualRecorder::cacheWatch() {
  const RecorderSettings settings = settingsIn(folder_);
  if (!settings.failCachingAt) return {};
  return [settings](std::int64_t blocks) {
    const std::int64_t at = *settings.failCachingAt;
    if (blocks > at) settings.fail("the cache failed at block " + std::to_string(at));
  };
}

void VirtualRecorder::write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
                            const std::stop_token& stop) {
  const Workplace at = workplaceIn(folder_);
  VirtualWrite(at.disc, at.settings, order, source, observer, stop).run();
}

void VirtualRecorder::erase(bool quick, OperationObserver& observer, const std::stop_token& stop) {
  const Workplace at = workplaceIn(folder_);
  eraseDisc(at.disc, at.settings, quick, observer, stop);
}

void VirtualRecorder::close(bool alsoDisc, OperationObserver& observer, const std::stop_token& stop) {
  const Workplace at = workplaceIn(folder_);
  closeLastSession(at.disc, at.settings, alsoDisc, observer, stop);
}

std::vector<std::byte> VirtualRecorder::read(std::int32_t block, std::int32_t count) {
  try {
    const std::optional<DiscFolder> disc = RecorderFolder(folder_).discInTray();
    if (!disc) throw deviceError(sense::noMedium, "no disc in " + nameOf(folder_));
    return readDisc(*disc, block, count);
  } catch (const std::system_error& error) {
    throw deviceError(sense::readError, error.what());
  }
}

std::shared_ptr<void> VirtualRecorder::holdDisc() {
  try {
    return std::make_shared<RecorderFolder>(locked(folder_));
  } catch (const std::system_error& error) {
    throw deviceError(sense::noMedium, "no disc in " + nameOf(folder_) + ": " + error.what());
  }
}

ReadConditions VirtualRecorder::readConditions(std::int16_t speed) {
  return settingsIn(folder_).readConditions(speed);
}

void VirtualRecorder::eject() {
  try {
    const RecorderFolder recorder = locked(folder_);
    const RecorderSettings settings = recorder.settings();
    if (settings.failEjecting) settings.fail("the disc could not be ejected");
    if (settings.refuseEject) throw deviceError(sense::trayStuck, "the tray of " + nameOf(folder_) + " is stuck");
    if (const auto disc = recorder.discInTray()) mendCueSheetOf(*disc);
    recorder.clearTray();
    if (settings.automaticFeed) feed(recorder);
  } catch (const std::system_error& error) {
    throw deviceError(sense::trayStuck, "the tray of " + nameOf(folder_) + " cannot be opened: " + error.what());
  }
}

/// A blank disc that cannot be made (the computer's disk is full) leaves an open tray, which is no failure of the
/// eject.
void VirtualRecorder::feed(const RecorderFolder& recorder) {
  try {
    feedOwed_ = true;
    recorder.feedBlank();
    feedOwed_ = false;
  } catch (const std::system_error&) {
    return;
  }
}

void VirtualRecorder::feedIfOwed() {
  if (!feedOwed_) return;
  try {
    const RecorderFolder recorder(folder_);
    if (!recorder.lock()) return;
    if (recorder.trayIsEmpty() && recorder.settings().automaticFeed)
      feed(recorder);
    else
      feedOwed_ = false;
  } catch (const std::system_error&) {
    return;
  }
}

}  // namespace trackloom::engines::virtualrecorder
