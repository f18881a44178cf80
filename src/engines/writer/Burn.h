#pragma once

#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "engines/audio/AudioFiles.h"
#include "engines/disc/Recorder.h"
#include "engines/writer/DataQueue.h"
#include "engines/writer/OperationEvents.h"

namespace trackloom::engines::writer {

/// What an instance of the engine keeps until it is told otherwise.
struct WriteSettings {
  BlockKind kind = AudioBlocks;
  bool test = false;
  bool closeSession = false;
  bool closeDisc = false;
  bool cacheAudioTracks = false;
  bool cacheDataTrack = false;
  std::string volumeLabel;
  /// A multiple of the base speed; 0: the recorder's own choice.
  std::int16_t speed = 0;

  bool caches() const { return kind == AudioBlocks ? cacheAudioTracks : cacheDataTrack; }
};

/// All that one write needs, so that nothing that happens to the engine meanwhile can change it.
struct WriteRequest {
  /// None: no drive is in use.
  std::shared_ptr<Recorder> recorder;
  std::shared_ptr<audio::AudioFiles> audioFiles;
  WriteSettings settings;
  std::vector<HostPath> audioTracks;
  std::vector<DataEntry> dataEntries;
  /// Silent blocks between audio tracks.
  std::int32_t pause = 150;
  /// Where the caches of tracks lie.
  HostPath scratchFolder;
};

/// Writes a disc on the calling thread, from the first look at it to its closing, and raises the events of that but the
/// last. Throws EngineError, RuntimeError (a source), and Stopped; the disc is then spoilt if its first
/// sector had gone out, unless it was a test.
void burn(const WriteRequest& request, OperationEvents& events, const std::stop_token& stop);

}  // namespace trackloom::engines::writer
