#include "model/QueueNumber.h"

#include "model/Session.h"
#include "model/TrackRow.h"

namespace trackloom {

void noteListedTrack(Session& session, const HostPath& path, std::int16_t number) {
  ListingWindow& window = session.frmListing();
  const int row = window.ListView1.SelectedRow();
  if (row != 0 && path == sourcePath(window.ListView1, row)) window.QueueIndexOfSelection = number;
}

}  // namespace trackloom
