#pragma once

#include <memory>
#include <string>

#include "engines/ripper/RipBoard.h"
#include "engines/ripper/RipEvents.h"
#include "engines/ripper/RipLog.h"
#include "engines/ripper/RipRequest.h"
#include "ports/EventQueue.h"
#include "ports/Wakefulness.h"

namespace trackloom::engines::ripper {

/// Whoever keeps one uses the drive.
using DriveUse = std::shared_ptr<void>;

/// One rip. Its threads keep it alive, and nobody waits for them: one that hangs, at a drive or a disk, ends by itself
/// when its call returns. All calls are made on the UI thread.
class Rip : public std::enable_shared_from_this<Rip> {
 public:
  Rip(RipRequest request, RipFacts facts, EventQueue& queue, std::shared_ptr<RipListener> listener);

  /// All events come after this call. The rip begins once its first event has been heard; where nobody hears it, there
  /// is none. `use` and `awake` are let go of when it has ended.
  void start(DriveUse use, Wakefulness::Hold awake);
  /// Ends soon, whatever hangs.
  void cancel();
  /// The same, and nothing more is told.
  void silence();
  bool over() const { return events_->over(); }

 private:
  void launch();
  void takeNames();
  void startThreads();
  void tell();
  void removeFilesLeft();
  void end(const std::vector<RippedTrack>& told);

  RipRequest request_;
  RipFacts facts_;
  RipBoard board_;
  std::shared_ptr<RipEvents> events_;
  DriveUse use_;
  Wakefulness::Hold awake_;
};

}  // namespace trackloom::engines::ripper
