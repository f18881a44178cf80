#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ports/Mp3Stream.h"
#include "runtime/Paths.h"

namespace trackloom {

/// The codes of `CDRipperEvents::RipStatus`; only RipProgress has a value, the sector that is being read.
enum RipStatusCode : std::int32_t { RipProgress = 7 };

/// What a rip engine tells its listener, always on the UI thread and never one event inside another. Sectors count from
/// the start of the disc.
class CDRipperEvents {
 public:
  virtual ~CDRipperEvents() = default;

  virtual void RipStarted() {}
  /// `path` is where the track lies until TrackFinished has returned; empty where no file could be made.
  virtual void TrackStarted(const HostPath& /*path*/, std::int32_t /*first*/, std::int32_t /*last*/,
                            std::int32_t /*callerNumber*/) {}
  virtual void RipStatus(std::int32_t /*code*/, std::int32_t /*value*/) {}
  virtual void TrackFinished() {}
  virtual void RipFinished() {}
};

/// The rip engine: CD drives of any kind, the disc in the one in use, and a queue of tracks to read into files. Drives
/// count from 0, tracks from 1. All members are called on the UI thread. While a rip runs nothing but CancelRip and the
/// questions has an effect.
class CDRipperX {
 public:
  virtual ~CDRipperX() = default;

  /// Who hears of the next events; nobody where it is null.
  virtual void listen(CDRipperEvents* listener) = 0;

  virtual std::int16_t DeviceCount() = 0;
  virtual std::string DeviceLetter(std::int16_t drive) = 0;
  virtual std::string DeviceVendor(std::int16_t drive) = 0;
  virtual std::string DeviceModel(std::int16_t drive) = 0;
  /// False: the drive could not be taken into use; LastDriveError tells why.
  virtual bool SelectRipDrive(std::int16_t drive) = 0;
  virtual std::int32_t LastDriveError() = 0;
  virtual bool DiscPresent() = 0;

  /// False: there is nothing to list. The tracks below are those that it read. A RuntimeError is possible.
  virtual bool ReadTOC() = 0;
  /// Data tracks included. A RuntimeError is possible.
  virtual std::int16_t TrackCount() = 0;
  virtual std::int32_t TrackStart(std::int16_t track) = 0;
  /// In sectors.
  virtual std::int32_t TrackLength(std::int16_t track) = 0;
  /// False also for a number outside of the disc.
  virtual bool TrackIsAudio(std::int16_t track) = 0;
  /// `MM:SS:FF`, FF in frames of 1/75 second; minutes take more digits from 100 on.
  virtual std::string SectorsToTime(std::int32_t sectors) = 0;

  /// A multiple of the base speed of 75 sectors a second.
  virtual std::int16_t MaxSpeed() = 0;
  /// 0: the drive's own choice.
  virtual void SetSpeed(std::int16_t multiple) = 0;

  /// `encoder` must outlive the rip that uses it.
  virtual bool AttachEncoder(Mp3Stream& encoder) = 0;
  /// True: tracks become MP3 files through the attached encoder; false: WAV files.
  virtual void SetUseEncoder(bool on) = 0;

  virtual void ClearQueue() = 0;
  virtual bool QueueTrack(std::int16_t track, const HostPath& path, std::int32_t callerNumber) = 0;
  /// False, and no event: the queue is empty, or the disc is gone. All events come after it has returned.
  virtual bool StartRip() = 0;
  /// The rip ends soon, with status 14 and RipFinished.
  virtual void CancelRip() = 0;
};

/// Makes rip engines, one for each ripper window.
class RipEngines {
 public:
  virtual ~RipEngines() = default;
  virtual std::unique_ptr<CDRipperX> create() = 0;
};

}  // namespace trackloom
