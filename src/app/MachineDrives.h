#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engines/disc/DriveSurvey.h"
#include "engines/disc/KnownDrives.h"
#include "engines/disc/ReadingDrive.h"
#include "ports/DiscMounts.h"
#include "ports/Patience.h"

namespace trackloom {

/// All drives of this start of the program, virtual ones too, in their places. Those of the machine are asked from the
/// moment that this is made; one that has not answered by the limit counts as absent until the next start. Belongs to
/// the window's thread, but for `readers`.
class MachineDrives {
 public:
  struct Around {
    HostPath programFolder;
    engines::RecorderList virtualOnes;
    /// Null: there is no such service.
    std::shared_ptr<DiscMounts> mounts;
    /// Outlives this.
    Patience& patience;
    std::chrono::milliseconds limit{2500};
    /// Hears, once, why drives that are there cannot be used; not where all can.
    std::function<void(const std::vector<std::string>& why)> whenUnusable = nullptr;
  };

  explicit MachineDrives(Around around);

  /// Waits for them, puts them into their places, and keeps these in Engines.ini; at later calls, what was found.
  engines::PlacedRecorders recorders();
  /// All drives that read, once `recorders` has found them. Safe from any thread.
  std::shared_future<engines::ReadingDrives> readers() const { return readers_; }
  /// Why drives that are there cannot be used, where there is no recorder at all.
  const std::string& whyNone() const { return whyNone_; }

 private:
  void find();

  Around around_;
  std::chrono::steady_clock::time_point end_;
  engines::DriveSurvey survey_;
  std::optional<engines::PlacedRecorders> recorders_;
  std::string whyNone_;
  std::promise<engines::ReadingDrives> found_;
  std::shared_future<engines::ReadingDrives> readers_ = found_.get_future().share();
};

}  // namespace trackloom
