#include "engines/writer/DiscWriter.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

#include "engines/ground/Blocks.h"
#include "engines/writer/ImageFile.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

DiscWriter::DiscWriter(std::shared_ptr<const WriterParts> parts, CDWriterEvents& listener)
    : parts_(std::move(parts)), listener_(listener) {}

DiscWriter::~DiscWriter() {
  if (operation_) operation_->silence();
}

Recorder* DiscWriter::recorderAt(std::int16_t drive) const {
  const auto place = static_cast<std::size_t>(drive);
  return drive >= 0 && place < parts_->recorders.size() ? parts_->recorders[place].get() : nullptr;
}

std::int16_t DiscWriter::DriveCount() {
  constexpr std::size_t most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min(parts_->recorders.size(), most));
}

std::string DiscWriter::DriveLetter(std::int16_t drive) {
  if (recorderAt(drive) == nullptr) return "";
  constexpr int lettersFromD = 'Z' - 'D' + 1;
  return {drive < lettersFromD ? static_cast<char>('D' + drive) : '?'};
}

std::string DiscWriter::DriveVendor(std::int16_t drive) {
  const Recorder* recorder = recorderAt(drive);
  return recorder == nullptr ? "" : recorder->identity().vendor;
}

std::string DiscWriter::DriveProduct(std::int16_t drive) {
  const Recorder* recorder = recorderAt(drive);
  return recorder == nullptr ? "" : recorder->identity().product;
}

bool DiscWriter::SelectDrive(std::int16_t drive) {
  waitForAbortedWrite();
  drive_.reset();
  Recorder* recorder = recorderAt(drive);
  if (recorder == nullptr || !recorder->take()) return false;
  drive_ = parts_->recorders[static_cast<std::size_t>(drive)];
  return true;
}

bool DiscWriter::HasWriteGuard() {
  return drive_ && drive_->identity().hasWriteGuard;
}

void DiscWriter::EnableWriteGuard(bool on) {
  if (drive_) drive_->enableWriteGuard(on);
}

std::int16_t DiscWriter::MaxWriteSpeed() {
  return drive_ ? drive_->identity().maxWriteSpeed : std::int16_t{0};
}

std::optional<DiscState> DiscWriter::look() {
  waitForAbortedWrite();
  return drive_ ? drive_->look() : std::nullopt;
}

std::int32_t DiscWriter::DiscStatus() {
  const auto disc = look();
  return disc ? disc->status : DiscStatusUnknown;
}

std::int32_t DiscWriter::DiscType() {
  const auto disc = look();
  return disc ? disc->type : DiscTypeUnknown;
}

std::int32_t DiscWriter::FreeBlocks(std::int32_t kind) {
  const DiscState disc = look().value_or(DiscState{});
  return kind == AudioBlocks ? disc.freeAudioBlocks : disc.freeDataBlocks;
}

bool DiscWriter::EjectDisc() {
  waitForAbortedWrite();
  return drive_ && drive_->eject();
}

std::int32_t DiscWriter::BlocksToBytes(std::int32_t blocks, std::int32_t kind) {
  return bytesOfBlocks(blocks, kind);
}

std::string DiscWriter::BlocksToTime(std::int32_t blocks) {
  return timeOfBlocks(blocks);
}

bool DiscWriter::AddAudioTrack(const HostPath& path, std::int16_t number) {
  const auto blocks = parts_->audioFiles->blocks(path);
  if (!blocks) return false;
  audioQueue_.add({path, number, *blocks});
  return true;
}

void DiscWriter::ListAudioTracks() {
  CDWriterEvents& listener = listener_;
  for (const AudioEntry& entry : audioQueue_.entries()) listener.OnAudioTrackListed(entry.path, 0, 0, 0, entry.number);
}

bool DiscWriter::ImportLastSession(bool /*takeOver*/) {
  return false;
}

void DiscWriter::waitForAbortedWrite() {
  if (job_ && !job_->running()) job_.reset();
}

std::shared_ptr<OperationEvents> DiscWriter::newOperation() {
  waitForAbortedWrite();
  operation_ = std::make_shared<OperationEvents>(parts_->events, listener_, deviceErrorText_);
  return operation_;
}

void DiscWriter::StartWrite() {
  if (job_ && job_->running()) return;
  const auto events = newOperation();
  const bool audio = settings_.kind == AudioBlocks;
  if (audio ? audioQueue_.empty() : !dataQueue_.hasFiles()) {
    events->fail(FileError, 0, "there is nothing to write");
    return;
  }
  WriteRequest request{drive_, parts_->audioFiles, settings_, {}, {}, parts_->pause, parts_->scratchFolder};
  if (audio)
    request.audioTracks = audioQueue_.discOrder();
  else
    request.dataEntries = dataQueue_.entries();
  try {
    job_.emplace(std::move(request), events);
  } catch (const std::system_error& error) {
    events->fail(WriteBufferError, 0, error.what());
  }
}

void DiscWriter::AbortWrite() {
  if (operation_) operation_->silence();
  if (job_) job_->requestStop();
}

bool DiscWriter::WriteIsoImage(const HostPath& image) {
  if (job_ && job_->running()) return false;
  newOperation()->fail(DeviceError, 0, image.text + " was not written: this engine does not write finished images");
  return false;
}

bool DiscWriter::CreateIsoImage(const HostPath& image) {
  CDWriterEvents& listener = listener_;
  try {
    writeImageFile(image, dataQueue_.entries(), settings_.volumeLabel, listener);
    return true;
  } catch (const RuntimeError& error) {
    *deviceErrorText_ = error.description();
    listener.OnWriteError(FileError, 0);
    return false;
  }
}

bool DiscWriter::EraseDisc(bool /*quick*/) {
  *deviceErrorText_ = "The disc was not erased: this engine does not erase discs";
  return false;
}

bool DiscWriter::CloseLastSession(bool /*alsoDisc*/) {
  *deviceErrorText_ = "The session was not closed: this engine does not close sessions by themselves";
  return false;
}

}  // namespace trackloom::engines::writer
