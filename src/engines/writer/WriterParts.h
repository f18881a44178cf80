#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "engines/audio/AudioFiles.h"
#include "engines/disc/KnownDrives.h"
#include "engines/disc/Lazily.h"
#include "engines/writer/LastFailure.h"
#include "engines/writer/Reader.h"
#include "ports/EventQueue.h"
#include "ports/Patience.h"
#include "ports/Wakefulness.h"
#include "runtime/Aside.h"

namespace trackloom::engines::writer {

/// What all instances of the writer engine share.
struct WriterParts {
  Lazily<PlacedRecorders> drives;
  std::shared_ptr<audio::AudioFiles> audioFiles;
  /// The sound of these files as the tracks of a disc.
  std::function<SourceOpener(std::vector<std::shared_ptr<Source>>)> audioSource;
  /// Outlives every instance.
  EventQueue& events;
  /// Silent blocks between audio tracks.
  std::int32_t pause = standardPause;
  /// Where the caches of tracks lie.
  HostPath scratchFolder;
  /// Whether every sector of a real write is read back and compared.
  bool verified = false;
  /// How the calls that give a result wait. Outlives every instance.
  Patience& patience;
  std::shared_ptr<Aside> aside =
      std::make_shared<Aside>([&waiter = patience](const Aside::Wait& wait) { waiter.until(wait); });
  std::shared_ptr<LastFailure> lastFailure = std::make_shared<LastFailure>();
  /// Null: nobody keeps the computer awake.
  std::shared_ptr<Wakefulness> wakefulness = nullptr;
};

}  // namespace trackloom::engines::writer
