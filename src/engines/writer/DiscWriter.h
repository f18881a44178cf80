#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "engines/audio/AudioFiles.h"
#include "engines/disc/Recorder.h"
#include "engines/writer/AudioQueue.h"
#include "engines/writer/DataQueue.h"
#include "engines/writer/OperationEvents.h"
#include "engines/writer/WriteJob.h"
#include "ports/CDWriterXP.h"

namespace trackloom::engines::writer {

/// What all instances of the writer engine share.
struct WriterParts {
  RecorderList recorders;
  std::shared_ptr<audio::AudioFiles> audioFiles;
  /// Outlives every instance.
  EventQueue& events;
  /// Silent blocks between audio tracks.
  std::int32_t pause = 150;
  /// Where the caches of tracks lie.
  HostPath scratchFolder;
};

/// The writer engine over the recorder interface. All of its state belongs to the UI thread; a write gets copies, runs
/// on its own threads, and speaks through the event queue alone. A second write while one runs is not begun.
class DiscWriter final : public CDWriterXP {
 public:
  DiscWriter(std::shared_ptr<const WriterParts> parts, CDWriterEvents& listener);
  ~DiscWriter() override;
  DiscWriter(const DiscWriter&) = delete;
  DiscWriter& operator=(const DiscWriter&) = delete;

  std::int16_t DriveCount() override;
  /// "D" is the first; "?" from the 24th on.
  std::string DriveLetter(std::int16_t drive) override;
  std::string DriveVendor(std::int16_t drive) override;
  std::string DriveProduct(std::int16_t drive) override;
  bool SelectDrive(std::int16_t drive) override;
  bool HasWriteGuard() override;
  void EnableWriteGuard(bool on) override;
  std::int16_t MaxWriteSpeed() override;
  void SetWriteSpeed(std::int16_t multiple) override { settings_.speed = multiple; }

  // Without a disc: not loaded, status and type unknown, an empty last session, and 0 for the rest.
  bool MediaLoaded() override { return look().has_value(); }
  std::int32_t DiscStatus() override;
  std::int32_t DiscType() override;
  bool DiscRewritable() override { return look().value_or(DiscState{}).rewritable; }
  std::int16_t SessionCount() override { return look().value_or(DiscState{}).sessions; }
  std::int32_t LastSessionStatus() override { return look().value_or(DiscState{}).lastSession; }
  std::int32_t FreeBlocks(std::int32_t kind) override;
  bool EjectDisc() override;

  std::int32_t BlocksToBytes(std::int32_t blocks, std::int32_t kind) override;
  std::string BlocksToTime(std::int32_t blocks) override;

  void ClearAudioQueue() override { audioQueue_.clear(); }
  bool AddAudioTrack(const HostPath& path, std::int16_t number) override;
  void ListAudioTracks() override;
  bool RemoveAudioTrack(std::int16_t number) override { return audioQueue_.remove(number); }
  std::int32_t AudioQueueBlocks() override { return audioQueue_.blocks(); }

  void ClearDataQueue() override { dataQueue_.clear(); }
  bool AddDataFile(const DiscPath& disc, const HostPath& source) override { return dataQueue_.add(disc, source); }
  bool RemoveDataFile(const DiscPath& disc) override { return dataQueue_.remove(disc); }
  std::int32_t DataQueueBlocks() override { return dataQueue_.blocks(); }
  /// False always: no earlier session is taken over yet.
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
  /// Returns at once; whatever touches the disc next waits until the write has let go of it.
  void AbortWrite() override;
  /// Refused: False, and OnWriteError after the call.
  bool WriteIsoImage(const HostPath& image) override;
  bool CreateIsoImage(const HostPath& image) override;
  /// Refused: False, with words in LastDeviceErrorText.
  bool EraseDisc(bool quick) override;
  /// Refused: False, with words in LastDeviceErrorText.
  bool CloseLastSession(bool alsoDisc) override;
  std::string LastDeviceErrorText() override { return *deviceErrorText_; }

 private:
  Recorder* recorderAt(std::int16_t drive) const;
  std::optional<DiscState> look();
  void waitForAbortedWrite();
  std::shared_ptr<OperationEvents> newOperation();

  std::shared_ptr<const WriterParts> parts_;
  CDWriterEvents& listener_;
  std::shared_ptr<Recorder> drive_;
  AudioQueue audioQueue_;
  DataQueue dataQueue_;
  WriteSettings settings_;
  std::shared_ptr<std::string> deviceErrorText_ = std::make_shared<std::string>();
  std::shared_ptr<OperationEvents> operation_;
  std::optional<WriteJob> job_;
};

}  // namespace trackloom::engines::writer
