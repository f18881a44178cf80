#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "engines/disc/Recorder.h"
#include "engines/writer/AudioQueue.h"
#include "engines/writer/Burn.h"
#include "engines/writer/DataQueue.h"
#include "engines/writer/FormerSession.h"
#include "engines/writer/Job.h"
#include "engines/writer/OperationEvents.h"
#include "engines/writer/WriterParts.h"
#include "ports/CDWriterXP.h"

namespace trackloom::engines::writer {

/// What an instance of the engine keeps until it is told otherwise.
struct WriteSettings {
  BlockKind kind = AudioBlocks;
  bool test = false;
  bool closeSession = false;
  bool closeDisc = false;
  bool cacheAudioTracks = false;
  bool cacheDataTrack = false;
  std::string volumeLabel;
  /// A multiple of the base speed; 0: the recorder's own choice.
  std::int16_t speed = 0;

  bool caches() const { return kind == AudioBlocks ? cacheAudioTracks : cacheDataTrack; }
};

/// The writer engine over the recorder interface. All of its state belongs to the UI thread; an operation gets copies,
/// runs on its own threads, and speaks through the event queue alone. A second operation while one runs is not begun.
/// What a file or a drive may keep waiting is done aside, while the UI thread waits with patience.
///
/// Whole or not at all: a file that was refused since its queue was begun anew (ClearAudioQueue, ImportLastSession)
/// keeps every write of that queue from the disc.
class DiscWriter final : public CDWriterXP {
 public:
  DiscWriter(std::shared_ptr<const WriterParts> parts, CDWriterEvents& listener);
  ~DiscWriter() override;
  DiscWriter(const DiscWriter&) = delete;
  DiscWriter& operator=(const DiscWriter&) = delete;

  std::int16_t DriveCount() override;
  std::string DriveLetter(std::int16_t drive) override;
  std::string DriveVendor(std::int16_t drive) override;
  std::string DriveProduct(std::int16_t drive) override;
  bool SelectDrive(std::int16_t drive) override;
  bool HasWriteGuard() override;
  void EnableWriteGuard(bool on) override;
  std::int16_t MaxWriteSpeed() override;
  void SetWriteSpeed(std::int16_t multiple) override { settings_.speed = multiple; }

  // Without a disc: not loaded, status and type unknown, an empty last session, and 0 for the rest.
  bool MediaLoaded() override { return disc().has_value(); }
  std::int32_t DiscStatus() override;
  std::int32_t DiscType() override;
  bool DiscRewritable() override { return disc().value_or(DiscState{}).rewritable; }
  std::int16_t SessionCount() override { return disc().value_or(DiscState{}).sessions; }
  std::int32_t LastSessionStatus() override { return disc().value_or(DiscState{}).lastSession; }
  std::int32_t FreeBlocks(std::int32_t kind) override;
  bool EjectDisc() override;

  std::int32_t BlocksToBytes(std::int32_t blocks, std::int32_t kind) override;
  std::string BlocksToTime(std::int32_t blocks) override;

  void ClearAudioQueue() override;
  bool AddAudioTrack(const HostPath& path, std::int16_t number) override;
  void ListAudioTracks() override;
  bool RemoveAudioTrack(std::int16_t number) override { return audioQueue_.remove(number); }
  std::int32_t AudioQueueBlocks() override { return audioQueue_.blocks(); }

  /// Lets go of a session that was taken over, too.
  void ClearDataQueue() override;
  bool AddDataFile(const DiscPath& disc, const HostPath& source) override;
  bool RemoveDataFile(const DiscPath& disc) override { return dataQueue_.remove(disc); }
  std::int32_t DataQueueBlocks() override { return dataQueue_.blocks(); }
  /// The tree of the last data session goes into every data track that is written onto this disc, until the next
  /// import. False for one that cannot be read, too; such a write then fails.
  bool ImportLastSession(bool takeOver) override;

  void SetDiscMode(std::int32_t mode) override { settings_.kind = mode == AudioBlocks ? AudioBlocks : DataBlocks; }
  void SetTestMode(bool on) override { settings_.test = on; }
  bool TestMode() override { return settings_.test; }
  void SetCloseDisc(bool on) override { settings_.closeDisc = on; }
  bool CloseDisc() override { return settings_.closeDisc; }
  void SetCloseSession(bool on) override { settings_.closeSession = on; }
  void SetCacheAudioTracks(bool on) override { settings_.cacheAudioTracks = on; }
  bool CacheAudioTracks() override { return settings_.cacheAudioTracks; }
  void SetCacheDataTrack(bool on) override { settings_.cacheDataTrack = on; }
  bool CacheDataTrack() override { return settings_.cacheDataTrack; }
  void SetVolumeLabel(const std::string& label) override { settings_.volumeLabel = label; }

  void StartWrite() override;
  /// Returns when the drive has stopped, which a source that hangs does not hold up.
  void AbortWrite() override;
  /// The image as the last track of the disc, which is closed; CloseSession and CloseDisc say what is told of that.
  /// False for a file that cannot be such an image, with OnWriteError after the call.
  bool WriteIsoImage(const HostPath& image) override;
  bool CreateIsoImage(const HostPath& image) override;
  bool EraseDisc(bool quick) override;
  bool CloseLastSession(bool alsoDisc) override;
  std::string LastDeviceErrorText() override { return words_->deviceError; }

 private:
  /// Null: there is no such drive.
  std::shared_ptr<Recorder> recorderAt(std::int16_t drive) const;
  /// What the drive tells now; of no drive nothing.
  DriveSnapshot look(const std::shared_ptr<Recorder>& drive) const;
  std::optional<DiscState> disc() const { return look(drive_).disc; }
  Aside& aside() const { return *parts_->aside; }
  bool busy() const { return operation_ && !operation_->ended(); }
  std::shared_ptr<OperationEvents> newOperation(DeviceWords deviceWords);
  WriteRequest newRequest(BlockKind kind) const;
  WriteRequest requestOfQueue() const;
  WriteRequest requestOfImage(const std::shared_ptr<Source>& image) const;
  void addTracks(WriteRequest& request) const;
  void addFiles(WriteRequest& request) const;
  std::optional<EngineError> refusalOfQueue() const;
  void requireIdleDrive() const;
  DiscState requireDisc() const;
  bool refused(const EngineError& error);
  void startWrite(const std::shared_ptr<OperationEvents>& events, WriteRequest request);
  Wakefulness::Hold stayAwake(const std::string& why) const;
  void start(const std::shared_ptr<OperationEvents>& events, Job::Operation operation, void (OperationEvents::*done)());

  std::shared_ptr<const WriterParts> parts_;
  CDWriterEvents& listener_;
  std::shared_ptr<Recorder> drive_;
  AudioQueue audioQueue_;
  DataQueue dataQueue_;
  std::optional<FormerSession> former_;
  std::optional<EngineError> refusedTrack_;
  std::optional<EngineError> refusedFile_;
  /// A refused file that is there all the same, since ClearDataQueue: an image without it would have a silent gap.
  std::optional<EngineError> unreadableFile_;
  WriteSettings settings_;
  std::shared_ptr<FailureWords> words_;
  std::shared_ptr<OperationEvents> operation_;
  /// By this write, and by those before it that still wait for a source.
  std::shared_ptr<SourcesInUse> inUse_ = std::make_shared<SourcesInUse>();
  std::optional<Job> job_;
};

}  // namespace trackloom::engines::writer
