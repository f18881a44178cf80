#include "writing/LayoutTracks.h"

#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Text.h"

namespace trackloom {

bool tracksExist(Session& session, const std::string& work) {
  const ListView& listing = session.frmListing().ListView1;
  for (int row = 1; row <= listing.Count(); ++row) {
    if (session.ports.folders.hasFile(sourcePath(listing, row))) continue;
    session.ask({"Missing Track", "Trackloom was unable to find Track #" + std::to_string(row) +
                                      " in the location specified in your Layout." + ParagraphBreak + work +
                                      " has stopped."});
    return false;
  }
  return true;
}

void queueDataRows(Session& session, CDWriterXP& writer) {
  const ListView& listing = session.frmListing().ListView1;
  for (int row = 1; row <= listing.Count(); ++row)
    writer.AddDataFile(DiscPathOf(listing.SubItem(row, FolderColumn), DiscName(listing.Item(row).Text)),
                       sourcePath(listing, row));
}

}  // namespace trackloom
