#include "fakes/FakeWriter.h"

#include <algorithm>
#include <cstdio>

namespace trackloom::fakes {

namespace {

std::string truth(bool value) {
  return value ? "True" : "False";
}

}  // namespace

std::int16_t FakeWriter::DriveCount() {
  note("DriveCount");
  return static_cast<std::int16_t>(stage_.drives.size());
}

bool FakeWriter::SelectDrive(std::int16_t drive) {
  note("SelectDrive(" + std::to_string(drive) + ")");
  selected_.reset();
  const bool known = drive >= 0 && static_cast<std::size_t>(drive) < stage_.drives.size();
  if (!known || drive_(drive).refuses) return false;
  selected_ = drive;
  return true;
}

bool FakeWriter::HasWriteGuard() {
  note("HasWriteGuard");
  return selected_ && drive_(*selected_).writeGuard;
}

void FakeWriter::EnableWriteGuard(bool on) {
  note("EnableWriteGuard(" + truth(on) + ")");
}

void FakeWriter::SetWriteSpeed(std::int16_t multiple) {
  note("SetWriteSpeed(" + std::to_string(multiple) + ")");
}

bool FakeWriter::MediaLoaded() {
  note("MediaLoaded");
  return stage_.disc.has_value();
}

std::int32_t FakeWriter::FreeBlocks(std::int32_t kind) {
  if (!stage_.disc) return 0;
  return kind == AudioBlocks ? stage_.disc->freeAudio : stage_.disc->freeData;
}

bool FakeWriter::EjectDisc() {
  note("EjectDisc");
  if (stage_.ejectFails) return false;
  stage_.disc.reset();
  return true;
}

std::int32_t FakeWriter::BlocksToBytes(std::int32_t blocks, std::int32_t kind) {
  const std::int64_t bytes = std::int64_t{blocks} * (kind == AudioBlocks ? 2352 : 2048);
  return static_cast<std::int32_t>(std::min<std::int64_t>(bytes, 2147483647));
}

std::string FakeWriter::BlocksToTime(std::int32_t blocks) {
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", blocks / 4500, blocks / 75 % 60, blocks % 75);
  return text;
}

void FakeWriter::ClearAudioQueue() {
  note("ClearAudioQueue");
  audioQueue.clear();
  audioBlocks_ = 0;
}

bool FakeWriter::AddAudioTrack(const HostPath& path, std::int16_t number) {
  note("AddAudioTrack(" + path.text + ", " + std::to_string(number) + ")");
  if (!stage_.audio.contains(path.text)) return false;
  audioQueue.emplace_back(number, path.text);
  audioBlocks_ += stage_.audio.at(path.text);
  return true;
}

void FakeWriter::ListAudioTracks() {
  note("ListAudioTracks");
  const auto listed = audioQueue;
  for (const auto& [number, path] : listed) events.OnAudioTrackListed(HostPath(path), 0, 0, 0, number);
}

bool FakeWriter::RemoveAudioTrack(std::int16_t number) {
  note("RemoveAudioTrack(" + std::to_string(number) + ")");
  const auto entry =
      std::find_if(audioQueue.begin(), audioQueue.end(), [&](const auto& e) { return e.first == number; });
  if (entry == audioQueue.end()) return false;
  audioBlocks_ -= stage_.audio.at(entry->second);
  audioQueue.erase(entry);
  return true;
}

void FakeWriter::ClearDataQueue() {
  note("ClearDataQueue");
  dataQueue.clear();
  dataBlocks_ = 0;
}

bool FakeWriter::AddDataFile(const DiscPath& disc, const HostPath& source) {
  note("AddDataFile(" + disc.text + ", " + source.text + ")");
  if (!stage_.data.contains(source.text)) return false;
  takeOut(disc);
  dataQueue[disc.text] = source.text;
  dataBlocks_ += stage_.data.at(source.text);
  return true;
}

bool FakeWriter::RemoveDataFile(const DiscPath& disc) {
  note("RemoveDataFile(" + disc.text + ")");
  return takeOut(disc);
}

bool FakeWriter::takeOut(const DiscPath& disc) {
  const auto entry = dataQueue.find(disc.text);
  if (entry == dataQueue.end()) return false;
  dataBlocks_ -= stage_.data.at(entry->second);
  dataQueue.erase(entry);
  return true;
}

bool FakeWriter::ImportLastSession(bool takeOver) {
  note("ImportLastSession(" + truth(takeOver) + ")");
  return stage_.disc && stage_.disc->status == DiscOpen;
}

void FakeWriter::SetDiscMode(std::int32_t mode) {
  note("DiscMode=" + std::to_string(mode));
}
void FakeWriter::SetCloseSession(bool on) {
  note("CloseSession=" + truth(on));
}
void FakeWriter::SetVolumeLabel(const std::string& label) {
  note("VolumeLabel=" + label);
}
void FakeWriter::StartWrite() {
  note("StartWrite");
}
void FakeWriter::AbortWrite() {
  note("AbortWrite");
}

std::unique_ptr<CDWriterXP> FakeEngines::create(CDWriterEvents& listener) {
  return std::make_unique<FakeWriter>("CDR" + std::to_string(++made_), stage, listener);
}

}  // namespace trackloom::fakes
