#include "layout/FileDrop.h"

#include "model/AddTrack.h"
#include "model/Capacity.h"
#include "model/Session.h"

namespace trackloom {

void addDroppedFiles(Session& session, const std::vector<std::string>& paths) {
  const Batch batch(session, Batch::Source::Drop);
  for (const std::string& path : paths) {
    const std::string name = SplitPath(session, path);
    const Candidate candidate{HostPath(path), session.mod.PathFolder, name};
    const bool full = AddTrack(batch, candidate, DroppedFiles) == AddOutcome::LayoutTooBig;
    if (!batch.goesOn()) return;
    if (full) break;
  }
  batch.finish();
  if (session.frmListing().ListView1.Count() > 0) UpdateCapacityDisplay(session);
}

}  // namespace trackloom
