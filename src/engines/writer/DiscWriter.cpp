#include "engines/writer/DiscWriter.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>

#include "engines/disc/DriveId.h"
#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"
#include "engines/writer/EventsInCall.h"
#include "engines/writer/ImageFile.h"
#include "engines/writer/LetGo.h"
#include "engines/writer/PhaseEvents.h"
#include "engines/writer/Sources.h"

namespace trackloom::engines::writer {

namespace {

bool isThere(const HostPath& file) {
  std::error_code unknown;
  return std::filesystem::exists(file.text, unknown);
}

}  // namespace

DiscWriter::DiscWriter(std::shared_ptr<const WriterParts> parts, CDWriterEvents& listener)
    : parts_(std::move(parts)), listener_(listener), words_(std::make_shared<FailureWords>()) {
  words_->last = parts_->lastFailure;
}

DiscWriter::~DiscWriter() {
  DiscWriter::AbortWrite();
}

std::shared_ptr<Recorder> DiscWriter::recorderAt(std::int16_t drive) const {
  const auto place = static_cast<std::size_t>(drive);
  const RecorderList& all = parts_->drives->recorders;
  return drive >= 0 && place < all.size() ? all[place] : nullptr;
}

DriveSnapshot DiscWriter::look(const std::shared_ptr<Recorder>& drive) const {
  return drive ? *aside()([drive] { return drive->look(); }) : DriveSnapshot();
}

std::int16_t DiscWriter::DriveCount() {
  constexpr std::size_t most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min(parts_->drives->recorders.size(), most));
}

std::string DiscWriter::DriveLetter(std::int16_t drive) {
  if (recorderAt(drive) == nullptr) return "";
  return driveLetter(parts_->drives->places[static_cast<std::size_t>(drive)]);
}

std::string DiscWriter::DriveVendor(std::int16_t drive) {
  return look(recorderAt(drive)).identity.vendor;
}

std::string DiscWriter::DriveProduct(std::int16_t drive) {
  return look(recorderAt(drive)).identity.product;
}

bool DiscWriter::SelectDrive(std::int16_t drive) {
  drive_.reset();
  const auto recorder = recorderAt(drive);
  if (!recorder || !aside()([recorder] { return recorder->take(); })) return false;
  drive_ = recorder;
  return true;
}

bool DiscWriter::HasWriteGuard() {
  return look(drive_).identity.hasWriteGuard;
}

void DiscWriter::EnableWriteGuard(bool on) {
  if (drive_) aside()([drive = drive_, on] { drive->enableWriteGuard(on); });
}

std::int16_t DiscWriter::MaxWriteSpeed() {
  return look(drive_).identity.maxWriteSpeed;
}

std::int32_t DiscWriter::DiscStatus() {
  const auto now = disc();
  return now ? now->status : DiscStatusUnknown;
}

std::int32_t DiscWriter::DiscType() {
  const auto now = disc();
  return now ? now->type : DiscTypeUnknown;
}

std::int32_t DiscWriter::FreeBlocks(std::int32_t kind) {
  return disc().value_or(DiscState{}).freeBlocks(kind);
}

bool DiscWriter::EjectDisc() {
  try {
    requireIdleDrive();
    aside()([drive = drive_] { drive->eject(); });
    return true;
  } catch (const EngineError& error) {
    return refused(error);
  }
}

std::int32_t DiscWriter::BlocksToBytes(std::int32_t blocks, std::int32_t kind) {
  return bytesOfBlocks(blocks, kind);
}

std::string DiscWriter::BlocksToTime(std::int32_t blocks) {
  return timeOfBlocks(blocks);
}

void DiscWriter::ClearAudioQueue() {
  audioQueue_.clear();
  refusedTrack_.reset();
}

bool DiscWriter::AddAudioTrack(const HostPath& path, std::int16_t number) {
  const auto found = aside()([files = parts_->audioFiles, path] { return files->find(path); });
  if (found)
    audioQueue_.add({found->source, number, found->blocks});
  else if (!refusedTrack_)
    refusedTrack_ = aside()([path] { return unusable(path, noAudio); });
  return found.has_value();
}

bool DiscWriter::AddDataFile(const DiscPath& disc, const HostPath& source) {
  const bool added = dataQueue_.add(disc, aside()([source] { return readableSource(source); }));
  if (added) return true;
  const auto [why, there] = aside()([source, disc] {
    return std::pair(unusable(source, "cannot be put onto the disc as " + disc.text), isThere(source));
  });
  if (!refusedFile_) refusedFile_ = why;
  if (there && !unreadableFile_) unreadableFile_ = why;
  return false;
}

void DiscWriter::ListAudioTracks() {
  CDWriterEvents& listener = listener_;
  for (const AudioEntry& entry : audioQueue_.entries())
    listener.OnAudioTrackListed(entry.source->path(), 0, 0, 0, entry.number);
}

void DiscWriter::ClearDataQueue() {
  dataQueue_.clear();
  unreadableFile_.reset();
  former_.reset();
}

bool DiscWriter::ImportLastSession(bool takeOver) {
  refusedFile_.reset();
  former_.reset();
  const auto now = disc();
  if (takeOver && now) former_ = FormerSession::on(drive_, *now);
  if (!former_) return false;
  try {
    aside()([session = *former_] { session.requireReadable(); });
    return true;
  } catch (const EngineError&) {
    return false;
  }
}

void DiscWriter::requireIdleDrive() const {
  if (!drive_) throw deviceError(sense::notReady, "no drive is in use");
  if (busy()) throw deviceError(sense::busy, "the drive is at work");
}

DiscState DiscWriter::requireDisc() const {
  requireIdleDrive();
  const auto now = disc();
  if (!now) throw deviceError(sense::noMedium, "no disc is in the drive");
  return *now;
}

bool DiscWriter::refused(const EngineError& error) {
  words_->deviceError = error.words();
  words_->last->remember(error.words());
  return false;
}

std::shared_ptr<OperationEvents> DiscWriter::newOperation(DeviceWords deviceWords) {
  words_->last->forget();
  operation_ = std::make_shared<OperationEvents>(parts_->events, listener_, words_, deviceWords);
  return operation_;
}

Wakefulness::Hold DiscWriter::stayAwake(const std::string& why) const {
  return parts_->wakefulness ? parts_->wakefulness->stayAwake(why) : nullptr;
}

void DiscWriter::start(const std::shared_ptr<OperationEvents>& events, Job::Operation operation,
                       void (OperationEvents::*done)()) {
  const auto tell = [events, done](const Outcome& outcome) {
    if (std::holds_alternative<Done>(outcome)) (*events.*done)();
    if (const auto* error = std::get_if<EngineError>(&outcome)) events->fail(*error);
  };
  // The operation's own thread keeps the hold until the drive is free.
  const auto awake = [operation = std::move(operation),
                      hold = stayAwake("A disc is being written")](const std::stop_token& stop) { operation(stop); };
  try {
    job_.emplace(awake, tell);
  } catch (const std::system_error& error) {
    events->fail({ErrorKind::WriteBuffer, 0, error.what()});
  }
}

std::optional<EngineError> DiscWriter::refusalOfQueue() const {
  const bool audio = settings_.kind == AudioBlocks;
  if (const auto& refusal = audio ? refusedTrack_ : refusedFile_) return refusal;
  if (audio ? audioQueue_.empty() : !dataQueue_.hasFiles())
    return EngineError(ErrorKind::File, 0, "there is nothing to write");
  return std::nullopt;
}

void DiscWriter::addTracks(WriteRequest& request) const {
  const auto tracks = audioQueue_.discOrder();
  for (const auto& track : tracks) request.files.push_back(track->path());
  request.sources = [opener = parts_->audioSource(tracks)](const DiscState&) { return opener; };
}

void DiscWriter::addFiles(WriteRequest& request) const {
  const auto entries = dataQueue_.entries();
  for (const DataEntry& entry : entries)
    if (entry.source) request.files.push_back(entry.source->path());
  request.sources = [entries, label = settings_.volumeLabel, former = former_, drive = drive_](const DiscState& disc) {
    ImageTerms terms{.label = label, .room = disc.freeDataBlocks, .start = disc.nextWritable};
    // As it is now: this disc may have got another session since it was looked at.
    if (former && former->liesOn(disc)) terms.former = FormerSession::on(drive, disc);
    return dataSource(entries, std::move(terms));
  };
}

WriteRequest DiscWriter::newRequest(BlockKind kind) const {
  WriteRequest request;
  request.recorder = drive_;
  request.order = {kind,           {}, parts_->pause, settings_.test, settings_.closeSession, settings_.closeDisc,
                   settings_.speed};
  request.scratchFolder = parts_->scratchFolder;
  request.verified = parts_->verified;
  request.inUse = inUse_;
  return request;
}

WriteRequest DiscWriter::requestOfQueue() const {
  WriteRequest request = newRequest(settings_.kind);
  request.cached = settings_.caches();
  if (settings_.kind == AudioBlocks)
    addTracks(request);
  else
    addFiles(request);
  return request;
}

WriteRequest DiscWriter::requestOfImage(const std::shared_ptr<Source>& image) const {
  WriteRequest request = newRequest(DataBlocks);
  request.order.closeSession = request.order.closeDisc = true;
  request.closingsTold = {settings_.closeSession, settings_.closeDisc};
  request.files = {image->path()};
  request.sources = [image](const DiscState&) { return finishedImage(image); };
  return request;
}

void DiscWriter::startWrite(const std::shared_ptr<OperationEvents>& events, WriteRequest request) {
  const auto write = [request = std::move(request), events](const std::stop_token& stop) {
    burn(request, events, stop);
  };
  start(events, write, &OperationEvents::complete);
}

void DiscWriter::StartWrite() {
  if (busy()) return;
  const auto events = newOperation(DeviceWords::ToldByProgram);
  if (const auto refusal = refusalOfQueue())
    events->fail(*refusal);
  else
    startWrite(events, requestOfQueue());
}

void DiscWriter::AbortWrite() {
  if (operation_) operation_->silence();
  if (job_) job_->cancel(parts_->patience);
}

bool DiscWriter::WriteIsoImage(const HostPath& image) {
  if (busy()) return false;
  const auto events = newOperation(DeviceWords::ToldByProgram);
  const auto source = aside()([image] { return readableSource(image); });
  if (!source)
    events->fail(aside()([image] { return unusable(image, "not a regular file"); }));
  else if (source->note().size == 0)
    events->fail(fileError(image, "the file is empty"));
  else
    startWrite(events, requestOfImage(source));
  return source && source->note().size != 0;
}

bool DiscWriter::CreateIsoImage(const HostPath& image) {
  CDWriterEvents& listener = listener_;
  words_->last->forget();
  const auto awake = stayAwake("An image file is being written");
  const auto events = std::make_shared<EventsInCall>();
  const LetGo letGo;
  const auto make = [events, image, entries = dataQueue_.entries(), label = settings_.volumeLabel,
                     refusal = unreadableFile_, stop = letGo.source.get_token()] {
    events->end(outcomeOf([&] {
      if (refusal) throw *refusal;
      writeImageFile(image, entries, label, *events, stop);
    }));
  };
  try {
    std::thread(make).detach();
  } catch (const std::system_error& error) {
    events->end(fileError(image, error.what()));
  }
  parts_->patience.until([&](std::chrono::milliseconds atMost) { return events->tell(listener, atMost); });
  const auto* error = std::get_if<EngineError>(&events->outcome());
  if (error == nullptr) return true;
  words_->last->remember(error->words());
  listener.OnWriteError(FileError, 0);
  return false;
}

bool DiscWriter::EraseDisc(bool quick) {
  try {
    if (!requireDisc().rewritable)
      throw deviceError(sense::cannotWriteMedium, "the disc cannot be erased: it can be written once only");
  } catch (const EngineError& error) {
    return refused(error);
  }
  const auto events = newOperation(DeviceWords::ToldAside);
  const auto erase = [drive = drive_, quick, events](const std::stop_token& stop) {
    PhaseEvents phases(*events);
    drive->erase(quick, phases, stop);
  };
  start(events, erase, &OperationEvents::erased);
  return true;
}

bool DiscWriter::CloseLastSession(bool alsoDisc) {
  try {
    if (requireDisc().lastSession != SessionIncomplete)
      throw deviceError(sense::badSequence, "the disc has no incomplete session that could be closed");
  } catch (const EngineError& error) {
    return refused(error);
  }
  const auto events = newOperation(DeviceWords::ToldAside);
  const auto close = [drive = drive_, alsoDisc, events](const std::stop_token& stop) {
    PhaseEvents phases(*events);
    drive->close(alsoDisc, phases, stop);
  };
  start(events, close, &OperationEvents::complete);
  return true;
}

}  // namespace trackloom::engines::writer
