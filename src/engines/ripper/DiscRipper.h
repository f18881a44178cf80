#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engines/disc/ReadingDrive.h"
#include "engines/ripper/DiscRippers.h"
#include "engines/ripper/Rip.h"
#include "ports/CDRipperX.h"
#include "runtime/Aside.h"

namespace trackloom::engines::ripper {

/// A drive, and who uses it now: a rip whose drive hangs keeps it beyond its end.
struct DrivePlace {
  std::shared_ptr<ReadingDrive> drive;
  std::weak_ptr<void> use;
};

/// What all instances have in common. Belongs to the UI thread.
struct RipperParts {
  Lazily<std::vector<DrivePlace>> drives;
  EventQueue& events;
  RipperSettings settings;
  /// Where what a drive may keep waiting is done.
  Aside aside;
};

/// The rip engine over the drives that read. All of its state belongs to the UI thread; a rip gets copies. What a drive
/// may keep waiting is done aside, while the UI thread waits with patience.
class DiscRipper final : public CDRipperX {
 public:
  explicit DiscRipper(std::shared_ptr<RipperParts> parts);
  ~DiscRipper() override;
  DiscRipper(const DiscRipper&) = delete;
  DiscRipper& operator=(const DiscRipper&) = delete;

  void listen(CDRipperEvents* listener) override { listener_->who = listener; }

  std::int16_t DeviceCount() override;
  std::string DeviceLetter(std::int16_t drive) override;
  std::string DeviceVendor(std::int16_t drive) override;
  std::string DeviceModel(std::int16_t drive) override;
  bool SelectRipDrive(std::int16_t drive) override;
  std::int32_t LastDriveError() override { return lastError_; }
  bool DiscPresent() override;

  /// False where another rip still has the drive, too.
  bool ReadTOC() override;
  std::int16_t TrackCount() override { return static_cast<std::int16_t>(contents_.tracks.size()); }
  std::int32_t TrackStart(std::int16_t track) override;
  std::int32_t TrackLength(std::int16_t track) override;
  bool TrackIsAudio(std::int16_t track) override;
  std::string SectorsToTime(std::int32_t sectors) override;

  std::int16_t MaxSpeed() override;
  void SetSpeed(std::int16_t multiple) override;

  bool AttachEncoder(Mp3Stream& encoder) override;
  void SetUseEncoder(bool on) override;

  void ClearQueue() override;
  /// False for what is no audio track of the contents that were read.
  bool QueueTrack(std::int16_t track, const HostPath& path, std::int32_t callerNumber) override;
  /// False where the disc is not the one whose contents were read, too.
  bool StartRip() override;
  void CancelRip() override;

 private:
  struct Queued {
    std::int16_t track = 0;
    HostPath path;
    std::int32_t callerNumber = 0;
  };

  /// Null: there is no such drive.
  DrivePlace* placeAt(std::int16_t drive) const;
  DriveNames namesOf(std::int16_t drive) const;
  const ContentsTrack* trackAt(std::int16_t track) const;
  bool busy() const { return rip_ && !rip_->over(); }
  /// Whether nobody uses the drive any more, after a moment at the longest.
  bool isFree(const DrivePlace& place) const;
  bool discIsTheSame() const;
  TrackPlace placeAmongAudio(const ContentsTrack& track) const;
  RipRequest request() const;
  RipFacts facts() const;

  std::shared_ptr<RipperParts> parts_;
  std::shared_ptr<RipListener> listener_ = std::make_shared<RipListener>();
  DrivePlace* place_ = nullptr;
  std::int32_t lastError_ = 0;
  DiscContents contents_;
  std::int16_t speed_ = 0;
  Mp3Stream* encoder_ = nullptr;
  bool useEncoder_ = false;
  std::vector<Queued> queue_;
  std::shared_ptr<Rip> rip_;
};

}  // namespace trackloom::engines::ripper
