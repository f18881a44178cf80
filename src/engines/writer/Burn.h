#pragma once

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/writer/PhaseEvents.h"
#include "engines/writer/Reader.h"

namespace trackloom::engines::writer {

/// All that one write needs, so that nothing that happens to the engine meanwhile can change it.
struct WriteRequest {
  /// None: no drive is in use.
  std::shared_ptr<Recorder> recorder;
  /// The lengths of tracks come from the sources.
  WriteOrder order;
  /// The sources for this disc.
  std::function<SourceOpener(const DiscState& disc)> sources;
  ClosingsTold closingsTold = {};
  bool cached = false;
  /// Whether every sector of a real write is read back and compared.
  bool verified = false;
  /// Where the caches of tracks lie.
  HostPath scratchFolder;
  /// All files that the write reads.
  std::vector<HostPath> files;
  /// Of all writes of the same engine.
  std::shared_ptr<SourcesInUse> inUse;
};

/// Writes a disc on the calling thread, and raises the events of that but the last. All sources are opened, measured,
/// and compared with the disc before OnWriteStarting is raised, and what is refused until then leaves the disc as it
/// was. Throws EngineError and Stopped.
void burn(const WriteRequest& request, const std::shared_ptr<OperationEvents>& events, const std::stop_token& stop);

}  // namespace trackloom::engines::writer
