#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/libburn/Drive.h"
#include "ports/DiscMounts.h"

namespace trackloom::engines::libburn {

/// A CD recorder of this machine. Each call opens its node and lets go of it, so that other programs can use the drive
/// while nothing runs; an operation holds it alone, with the tray locked. Looks at a drive that nobody has taken yet do
/// not wait until it is ready; a disc that the desktop has mounted is unmounted before anything is done to it. Safe
/// from any thread.
///
/// A write that ended early leaves a disc that nothing can be added to: its session is closed where the drive still
/// does that, and for as long as the disc is in the drive it is answered as closed in any case.
class LibburnRecorder : public Recorder {
 public:
  LibburnRecorder(std::string path, std::string id, std::shared_ptr<DiscMounts> mounts)
      : path_(std::move(path)), id_(std::move(id)), mounts_(std::move(mounts)) {}

  std::string id() const override { return id_; }
  bool take() override;
  void enableWriteGuard(bool on) override { writeGuard_ = on; }
  std::shared_ptr<const DriveSnapshot> look() override;
  void check(const WriteOrder& order) override;
  bool cachesAllFirst() const override { return true; }
  void write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
             const std::stop_token& stop) override;
  /// Cannot be stopped; a stop is told once the disc is blank.
  void erase(bool quick, OperationObserver& observer, const std::stop_token& stop) override;
  void close(bool alsoDisc, OperationObserver& observer, const std::stop_token& stop) override;
  std::vector<std::byte> read(std::int32_t block, std::int32_t count) override;
  void eject() override;

 private:
  struct Looked {
    Reply tables;
    std::shared_ptr<const DriveSnapshot> snapshot;
  };

  class Work;
  class HeldDrive;
  struct Operation;

  Drive alone() const;
  std::shared_ptr<const DriveSnapshot> lookAnew();
  DiscState discIn(Drive& drive, const Reply& tables) const;
  DiscState discOrThrow();
  void writeSession(bool blank, const WriteOrder& order, SectorSource& source, OperationObserver& observer,
                    const std::stop_token& stop);
  void writeTracks(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
                   const std::stop_token& stop);
  void spoil(const WriteOrder& order);
  void spoil(Drive& drive, const WriteOrder& order);
  void requireListed(const WriteOrder& order);

  std::string path_;
  std::string id_;
  /// None: there is no such service.
  std::shared_ptr<DiscMounts> mounts_;
  std::atomic<bool> writeGuard_ = false;
  std::mutex mutex_;
  bool working_ = false;
  bool taken_ = false;
  DriveIdentity identity_;
  std::optional<Looked> looked_;
  /// The tables of a disc that a write has left unusable, though its drive may not say so.
  std::optional<Reply> spoilt_;
  /// The tracks that were written last; a drive may count blocks to them that nobody has sent.
  std::vector<DiscTrack> written_;
};

}  // namespace trackloom::engines::libburn
