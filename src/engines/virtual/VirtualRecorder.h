#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "engines/disc/Recorder.h"
#include "engines/virtual/RecorderFolder.h"
#include "runtime/Paths.h"

namespace trackloom::engines::virtualrecorder {

/// A CD recorder that is a folder: the disc in it is the one folder in tray/. Every call looks at the folder as it is
/// at that moment, so discs may be changed from outside at any time. Safe from any thread.
///
/// What is out of order is answered so, and never touched: no tray, a file or a link instead of a tray or a disc, an
/// empty tray, or two discs in it: no disc. A disc.ini that is missing, unreadable or senseless, or that does not fit
/// the sectors beside it, and a disc whose write was cut off: a closed disc without room.
class VirtualRecorder : public Recorder {
 public:
  explicit VirtualRecorder(HostPath folder) : folder_(std::move(folder)) {}

  /// The name of its folder.
  std::string id() const override;
  bool take() override;
  void enableWriteGuard(bool on) override { writeGuard_ = on; }
  bool writeGuardEnabled() const { return writeGuard_; }
  std::shared_ptr<const DriveSnapshot> look() override;
  void check(const WriteOrder& order) override;
  CacheWatch cacheWatch() override;
  void write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
             const std::stop_token& stop) override;
  /// Also of a spoilt disc, but not of one whose disc.ini cannot be made sense of.
  void erase(bool quick, OperationObserver& observer, const std::stop_token& stop) override;
  void close(bool alsoDisc, OperationObserver& observer, const std::stop_token& stop) override;
  std::vector<std::byte> read(std::int32_t block, std::int32_t count) override;
  /// The same lock that operations have.
  std::shared_ptr<void> holdDisc() override;
  ReadConditions readConditions(std::int16_t speed) override;
  /// Moves the disc to the shelf and, with automatic feed, puts a blank one in its place; where that fails it is tried
  /// again at the next look. Refused while an operation runs.
  void eject() override;

 private:
  struct Looked {
    FolderStamp stamp;
    std::shared_ptr<const DriveSnapshot> snapshot;
  };

  void feedIfOwed();
  void feed(const RecorderFolder& recorder);

  HostPath folder_;
  std::atomic<bool> writeGuard_ = false;
  std::atomic<bool> feedOwed_ = false;
  std::mutex mutex_;
  std::optional<Looked> looked_;
};

}  // namespace trackloom::engines::virtualrecorder
