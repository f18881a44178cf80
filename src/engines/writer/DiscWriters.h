#pragma once

#include <cstdint>
#include <memory>

#include "engines/audio/AudioFiles.h"
#include "engines/disc/KnownDrives.h"
#include "engines/disc/Lazily.h"
#include "ports/CDWriterXP.h"
#include "ports/EventQueue.h"
#include "ports/FailureDetail.h"
#include "ports/Patience.h"
#include "ports/Wakefulness.h"

namespace trackloom::engines::writer {

struct WriterParts;

struct WriterSettings {
  /// Silent blocks between audio tracks.
  std::int32_t pause = standardPause;
  /// Where the caches of tracks lie; made when it is first needed.
  HostPath scratchFolder;
  /// Whether every sector of a real write is read back and compared before its success is told.
  bool verified = false;
  /// Asked to keep the computer awake while an operation or an image file is under way; null: nobody is asked.
  std::shared_ptr<Wakefulness> wakefulness = nullptr;
};

/// Makes writer engines that share the machine's recorders and what was learned of its audio files.
class DiscWriters final : public WriterEngines {
 public:
  /// `events` and `patience` must outlive every instance. The drives are found when an instance is first asked for one.
  DiscWriters(Lazily<PlacedRecorders> drives, std::shared_ptr<audio::AudioFiles> audioFiles, EventQueue& events,
              Patience& patience, WriterSettings settings);
  /// Of a machine whose drives are known already.
  DiscWriters(RecorderList recorders, std::shared_ptr<audio::AudioFiles> audioFiles, EventQueue& events,
              Patience& patience, WriterSettings settings);

  std::unique_ptr<CDWriterXP> create(CDWriterEvents& listener) override;
  /// What the last failure of any instance was about.
  const FailureDetail& failureDetail() const;

 private:
  std::shared_ptr<const WriterParts> parts_;
};

}  // namespace trackloom::engines::writer
