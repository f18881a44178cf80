#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ports/CDWriterEvents.h"
#include "runtime/Paths.h"

namespace trackloom {

/// How a block is counted: 2352 bytes of audio or 2048 bytes of data.
enum BlockKind : std::int32_t { AudioBlocks = 0, DataBlocks = 1 };

/// What `CDWriterXP::DiscStatus` answers.
enum DiscStatusCode : std::int32_t { DiscEmpty = 0, DiscOpen = 1, DiscClosed = 2, DiscStatusUnknown = 3 };

/// What `CDWriterXP::LastSessionStatus` answers.
enum SessionStatusCode : std::int32_t { SessionEmpty = 0, SessionIncomplete = 1, SessionClosed = 3 };

/// What `CDWriterXP::DiscType` answers.
enum DiscTypeCode : std::int32_t { DiscTypeCdRom = 0, DiscTypeCdi = 16, DiscTypeXa = 32, DiscTypeUnknown = 255 };

/// The codes of `CDWriterEvents::OnWriteError`.
enum WriteErrorCode : std::int32_t { ReadBufferError = 0, WriteBufferError = 1, FileError = 2, DeviceError = 3 };

/// The writer engine: drives, the disc in the drive, one queue of audio tracks and one of data files, and all disc
/// operations. An instance has its own queues, settings and listener. All members are called on the UI thread.
/// Operations return at once and report by events, which come after the call has returned, except those of
/// ListAudioTracks and CreateIsoImage. Settings and queues survive an operation.
class CDWriterXP {
 public:
  virtual ~CDWriterXP() = default;

  virtual std::int16_t DriveCount() = 0;
  virtual std::string DriveLetter(std::int16_t drive) = 0;
  virtual std::string DriveVendor(std::int16_t drive) = 0;
  virtual std::string DriveProduct(std::int16_t drive) = 0;
  /// False: the drive could not be taken into use, and none is in use now.
  virtual bool SelectDrive(std::int16_t drive) = 0;
  virtual bool HasWriteGuard() = 0;
  virtual void EnableWriteGuard(bool on) = 0;
  /// A multiple of the base speed of 75 blocks a second; 0 or less: not known.
  virtual std::int16_t MaxWriteSpeed() = 0;
  virtual void SetWriteSpeed(std::int16_t multiple) = 0;

  // The disc, as it lies in the drive at the moment of the call.
  virtual bool MediaLoaded() = 0;
  virtual std::int32_t DiscStatus() = 0;
  virtual std::int32_t DiscType() = 0;
  virtual bool DiscRewritable() = 0;
  virtual std::int16_t SessionCount() = 0;
  virtual std::int32_t LastSessionStatus() = 0;
  /// 0 or less: no writing available.
  virtual std::int32_t FreeBlocks(std::int32_t kind) = 0;
  virtual bool EjectDisc() = 0;

  // Conversions: they need no drive.
  /// Saturates at 2,147,483,647 bytes.
  virtual std::int32_t BlocksToBytes(std::int32_t blocks, std::int32_t kind) = 0;
  /// `MM:SS:FF`, FF in frames of 1/75 second; minutes take more digits from 100 on.
  virtual std::string BlocksToTime(std::int32_t blocks) = 0;

  virtual void ClearAudioQueue() = 0;
  /// False: not a 44.1 kHz stereo MP3 or WAV file that can be read.
  virtual bool AddAudioTrack(const HostPath& path, std::int16_t number) = 0;
  /// Raises OnAudioTrackListed once for each entry, in queue order, before it returns.
  virtual void ListAudioTracks() = 0;
  /// Removes the first entry of that number; False: there is none.
  virtual bool RemoveAudioTrack(std::int16_t number) = 0;
  virtual std::int32_t AudioQueueBlocks() = 0;

  virtual void ClearDataQueue() = 0;
  /// An equal disc path is the same entry, its source replaced. False: the source cannot be read.
  virtual bool AddDataFile(const DiscPath& disc, const HostPath& source) = 0;
  /// Removes the file or the empty folder of exactly that path; False: there is none.
  virtual bool RemoveDataFile(const DiscPath& disc) = 0;
  virtual std::int32_t DataQueueBlocks() = 0;
  /// True: the disc holds an earlier data session, and the next data track continues it.
  virtual bool ImportLastSession(bool takeOver) = 0;

  /// 0 audio disc, 1 data disc.
  virtual void SetDiscMode(std::int32_t mode) = 0;
  virtual void SetTestMode(bool on) = 0;
  virtual bool TestMode() = 0;
  virtual void SetCloseDisc(bool on) = 0;
  virtual bool CloseDisc() = 0;
  virtual void SetCloseSession(bool on) = 0;
  virtual void SetCacheAudioTracks(bool on) = 0;
  virtual bool CacheAudioTracks() = 0;
  virtual void SetCacheDataTrack(bool on) = 0;
  virtual bool CacheDataTrack() = 0;
  virtual void SetVolumeLabel(const std::string& label) = 0;

  virtual void StartWrite() = 0;
  /// Nothing more is raised after it; a real write leaves the disc unusable.
  virtual void AbortWrite() = 0;
  virtual bool WriteIsoImage(const HostPath& image) = 0;
  /// Blocks until done; its events come before it returns.
  virtual bool CreateIsoImage(const HostPath& image) = 0;
  virtual bool EraseDisc(bool quick) = 0;
  virtual bool CloseLastSession(bool alsoDisc) = 0;
  virtual std::string LastDeviceErrorText() = 0;
};

/// Makes the engine instances of the forms.
class WriterEngines {
 public:
  virtual ~WriterEngines() = default;

  /// `listener` must outlive the instance.
  virtual std::unique_ptr<CDWriterXP> create(CDWriterEvents& listener) = 0;
};

}  // namespace trackloom
