#include "layout/TrackRemoval.h"

#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Statements.h"

namespace trackloom {

namespace {

void removeFromAudioQueue(Session& session) {
  ListingWindow& window = session.frmListing();
  window.CDR1->ListAudioTracks();
  window.CDR1->RemoveAudioTrack(window.QueueIndexOfSelection);
}

void removeFromDataQueue(Session& session, int row) {
  ListView& listing = session.frmListing().ListView1;
  const std::string nameOnDisc = DiscName(listing.Item(row).Text);
  session.frmListing().CDR1->RemoveDataFile(DiscPathOf(listing.SubItem(row, FolderColumn), nameOnDisc));
}

/// A disc folder goes with the last row that names it. On an audio layout there is no such column, and reading it
/// fails.
void removeEmptyFolder(Session& session, int row) {
  ListView& listing = session.frmListing().ListView1;
  const std::string folder = listing.SubItem(row, FolderColumn);
  for (int other = 1; other <= listing.Count(); ++other)
    if (other != row && listing.SubItem(other, FolderColumn) == folder) return;
  session.frmListing().CDR1->RemoveDataFile(DiscPath(folder));
}

}  // namespace

void RemoveTrack(Session& session) {
  const BoxAnswer answer = session.ask(
      {"Remove Track", "Remove the selected track from your layout?", BoxButtons::OkCancel, BoxIcon::Question});
  if (answer == BoxAnswer::Cancel) return;
  ListView& listing = session.frmListing().ListView1;
  const int row = listing.SelectedRow();
  if (isAudioLayout(session))
    skipOnError([&] { removeFromAudioQueue(session); });
  else
    skipOnError([&] { removeFromDataQueue(session, row); });
  skipOnError([&] { removeEmptyFolder(session, row); });
  skipOnError([&] { listing.Remove(row); });
  session.mod.LayoutSaved = false;
}

}  // namespace trackloom
