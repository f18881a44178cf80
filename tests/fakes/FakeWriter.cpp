#include "fakes/FakeWriter.h"

#include <algorithm>
#include <cstdio>

namespace trackloom::fakes {

namespace {

std::string truth(bool value) {
  return value ? "True" : "False";
}

}  // namespace

FakeWriter::FakeWriter(std::string name, WriterStage& stage, CDWriterEvents& listener)
    : events(listener), name_(std::move(name)), stage_(stage) {}

FakeWriter::~FakeWriter() = default;

bool FakeWriter::busy() const {
  return !steps_.empty();
}

std::string FakeWriter::DriveLetter(std::int16_t drive) {
  return driveAt(drive).letter;
}

std::string FakeWriter::DriveVendor(std::int16_t drive) {
  return driveAt(drive).vendor;
}

std::string FakeWriter::DriveProduct(std::int16_t drive) {
  return driveAt(drive).product;
}

std::int16_t FakeWriter::MaxWriteSpeed() {
  return selected_ ? driveAt(*selected_).maxSpeed : std::int16_t{0};
}

std::int32_t FakeWriter::DiscStatus() {
  return disc() != nullptr ? disc()->status : DiscStatusUnknown;
}

std::int32_t FakeWriter::DiscType() {
  return disc() != nullptr ? disc()->type : DiscTypeUnknown;
}

bool FakeWriter::DiscRewritable() {
  return disc() != nullptr && disc()->rewritable;
}

std::int16_t FakeWriter::SessionCount() {
  return disc() != nullptr ? disc()->sessions : std::int16_t{0};
}

std::int32_t FakeWriter::LastSessionStatus() {
  return disc() != nullptr ? disc()->lastSession : SessionEmpty;
}

std::int32_t FakeWriter::FreeBlocks(std::int32_t kind) {
  return disc() != nullptr ? disc()->room(kind) : 0;
}

std::int32_t FakeWriter::AudioQueueBlocks() {
  return audioQueue.blocks();
}

std::int32_t FakeWriter::DataQueueBlocks() {
  return dataQueue.blocks();
}

void FakeWriter::SetTestMode(bool on) {
  set("TestMode", testMode_, on);
}

bool FakeWriter::TestMode() {
  return testMode_;
}

void FakeWriter::SetCloseDisc(bool on) {
  set("CloseDisc", closeDisc_, on);
}

bool FakeWriter::CloseDisc() {
  return closeDisc_;
}

void FakeWriter::SetCacheAudioTracks(bool on) {
  set("CacheAudioTracks", cacheAudio_, on);
}

bool FakeWriter::CacheAudioTracks() {
  return cacheAudio_;
}

void FakeWriter::SetCacheDataTrack(bool on) {
  set("CacheDataTrack", cacheData_, on);
}

bool FakeWriter::CacheDataTrack() {
  return cacheData_;
}

std::string FakeWriter::LastDeviceErrorText() {
  return errorText;
}

void FakeWriter::note(const std::string& call) {
  stage_.note(name_ + "." + call);
}

void FakeWriter::add(std::function<void()> step) {
  steps_.push_back(std::move(step));
}

const FakeDrive& FakeWriter::driveAt(std::int16_t drive) const {
  static const FakeDrive none{"", "", "", 0, false, true};
  const bool known = drive >= 0 && static_cast<std::size_t>(drive) < stage_.drives.size();
  return known ? stage_.drives[static_cast<std::size_t>(drive)] : none;
}

FakeDisc* FakeWriter::disc() {
  return selected_ && stage_.disc ? &*stage_.disc : nullptr;
}

std::int16_t FakeWriter::DriveCount() {
  note("DriveCount");
  return static_cast<std::int16_t>(stage_.drives.size());
}

bool FakeWriter::SelectDrive(std::int16_t drive) {
  note("SelectDrive(" + std::to_string(drive) + ")");
  selected_.reset();
  if (driveAt(drive).refuses) return false;
  selected_ = drive;
  return true;
}

bool FakeWriter::HasWriteGuard() {
  note("HasWriteGuard");
  return selected_ && driveAt(*selected_).writeGuard;
}

void FakeWriter::EnableWriteGuard(bool on) {
  note("EnableWriteGuard(" + truth(on) + ")");
}

void FakeWriter::SetWriteSpeed(std::int16_t multiple) {
  note("SetWriteSpeed(" + std::to_string(multiple) + ")");
}

bool FakeWriter::MediaLoaded() {
  note("MediaLoaded");
  return disc() != nullptr;
}

bool FakeWriter::EjectDisc() {
  note("EjectDisc");
  if (!selected_ || stage_.ejectFails) return false;
  stage_.disc.reset();
  return true;
}

std::int32_t FakeWriter::BlocksToBytes(std::int32_t blocks, std::int32_t kind) {
  const std::int64_t bytes = std::int64_t{blocks} * (kind == AudioBlocks ? 2352 : 2048);
  return static_cast<std::int32_t>(std::min<std::int64_t>(bytes, 2147483647));
}

std::string FakeWriter::BlocksToTime(std::int32_t blocks) {
  const std::int32_t counted = std::max(blocks, 0);
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", counted / 4500, counted / 75 % 60, counted % 75);
  return text;
}

void FakeWriter::ClearAudioQueue() {
  note("ClearAudioQueue");
  audioQueue.clear();
  refusedAudio_ = false;
}

bool FakeWriter::AddAudioTrack(const HostPath& path, std::int16_t number) {
  note("AddAudioTrack(" + path.text + ", " + std::to_string(number) + ")");
  const auto file = stage_.audio.find(path.text);
  if (file == stage_.audio.end()) {
    refusedAudio_ = true;
    return false;
  }
  audioQueue.add({number, path.text, file->second});
  return true;
}

void FakeWriter::ListAudioTracks() {
  note("ListAudioTracks");
  const auto listed = audioQueue.entries();
  for (const auto& entry : listed) events.OnAudioTrackListed(HostPath(entry.path), 0, 0, 0, entry.number);
}

bool FakeWriter::RemoveAudioTrack(std::int16_t number) {
  note("RemoveAudioTrack(" + std::to_string(number) + ")");
  return audioQueue.remove(number);
}

void FakeWriter::ClearDataQueue() {
  note("ClearDataQueue");
  dataQueue.clear();
  refusedData_ = false;
}

bool FakeWriter::AddDataFile(const DiscPath& disc, const HostPath& source) {
  note("AddDataFile(" + disc.text + ", " + source.text + ")");
  const auto file = stage_.data.find(source.text);
  if (file == stage_.data.end()) {
    refusedData_ = true;
    return false;
  }
  dataQueue.add(disc.text, {source.text, file->second});
  return true;
}

bool FakeWriter::RemoveDataFile(const DiscPath& disc) {
  note("RemoveDataFile(" + disc.text + ")");
  return dataQueue.remove(disc.text);
}

bool FakeWriter::ImportLastSession(bool takeOver) {
  note("ImportLastSession(" + truth(takeOver) + ")");
  refusedData_ = false;
  return disc() != nullptr && disc()->status == DiscOpen && disc()->holds == DataBlocks;
}

void FakeWriter::SetDiscMode(std::int32_t mode) {
  note("DiscMode=" + std::to_string(mode));
  mode_ = mode == AudioBlocks ? AudioBlocks : DataBlocks;
}

void FakeWriter::set(const std::string& setting, bool& value, bool on) {
  stage_.tell(name_ + "." + setting + "=" + truth(on));
  value = on;
}

void FakeWriter::SetCloseSession(bool on) {
  note("CloseSession=" + truth(on));
  closeSession_ = on;
}

void FakeWriter::SetVolumeLabel(const std::string& label) {
  note("VolumeLabel=" + label);
}

std::unique_ptr<CDWriterXP> FakeEngines::create(CDWriterEvents& listener) {
  return std::make_unique<FakeWriter>("CDR" + std::to_string(++made_), stage, listener);
}

FakeEngines::FakeEngines() = default;

FakeEngines::~FakeEngines() = default;

}  // namespace trackloom::fakes
