#pragma once

#include <memory>

#include "engines/disc/Lazily.h"
#include "engines/disc/ReadingDrive.h"
#include "ports/CDRipperX.h"
#include "ports/EventQueue.h"
#include "ports/Patience.h"
#include "ports/Wakefulness.h"
#include "runtime/Paths.h"

namespace trackloom::engines::ripper {

struct RipperParts;

struct RipperSettings {
  /// Where Engines.ini lies, which is read at each start of a rip.
  HostPath programFolder;
  /// Tracks that are encoded at the same time; 0: as many as the machine has cores.
  unsigned cores = 0;
  /// Asked to keep the computer awake while a rip is under way; null: nobody is asked.
  std::shared_ptr<Wakefulness> wakefulness = nullptr;
};

/// Makes rip engines that share the machine's drives.
class DiscRippers final : public RipEngines {
 public:
  /// `events` and `patience` must outlive every instance. The drives are found when an instance is first asked for one.
  DiscRippers(Lazily<ReadingDrives> drives, EventQueue& events, Patience& patience, RipperSettings settings);

  std::unique_ptr<CDRipperX> create() override;

 private:
  std::shared_ptr<RipperParts> parts_;
};

}  // namespace trackloom::engines::ripper
