#include "engines/virtual/VirtualRecorder.h"

#include <string>
#include <system_error>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/virtual/RecorderFolder.h"
#include "engines/virtual/VirtualWrite.h"

namespace trackloom::engines::virtualrecorder {

namespace {

std::optional<RecorderSettings> settingsOf(const HostPath& folder) {
  try {
    return RecorderFolder(folder).settings();
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

DiscState stateOf(const DiscFolder& disc) {
  try {
    return disc.load().state();
  } catch (const DamagedDisc&) {
    return stateOfDamagedDisc();
  }
}

/// A blank disc that cannot be made (the computer's disk is full) leaves an open tray, which is no failure of the
/// eject.
void feedIfPossible(const RecorderFolder& recorder) {
  try {
    recorder.feedBlank();
  } catch (const std::system_error&) {
    return;
  }
}

std::string nameOf(const HostPath& folder) {
  return folder.text.substr(folder.text.find_last_of(HostSep) + 1);
}

}  // namespace

DriveIdentity VirtualRecorder::identity() const {
  const RecorderSettings settings = settingsOf(folder_).value_or(RecorderSettings{});
  return {settings.vendor, settings.product, settings.maximumSpeed, settings.writeGuard};
}

bool VirtualRecorder::take() {
  const std::optional<RecorderSettings> settings = settingsOf(folder_);
  return settings && !settings->refuseSelect;
}

std::optional<DiscState> VirtualRecorder::look() {
  try {
    const std::optional<DiscFolder> disc = RecorderFolder(folder_).discInTray();
    if (!disc) return std::nullopt;
    return stateOf(*disc);
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

bool VirtualRecorder::eject() {
  try {
    const RecorderFolder recorder(folder_);
    const RecorderSettings settings = recorder.settings();
    if (settings.refuseEject || !recorder.lock()) return false;
    recorder.clearTray();
    if (settings.automaticFeed) feedIfPossible(recorder);
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

std::unique_ptr<DiscWrite> VirtualRecorder::begin(const WriteOrder& order) {
  const std::string name = nameOf(folder_);
  try {
    RecorderFolder recorder(folder_);
    if (!recorder.lock()) throw deviceError(sense::busy, name + " is busy: something else writes its disc");
    std::optional<DiscFolder> disc = recorder.discInTray();
    if (!disc) throw deviceError(sense::noMedium, "no disc in " + name);
    return std::make_unique<VirtualWrite>(std::move(recorder), std::move(*disc), order);
  } catch (const std::system_error& error) {
    throw deviceError(sense::noMedium, "no disc in " + name + ": " + error.what());
  }
}

}  // namespace trackloom::engines::virtualrecorder
