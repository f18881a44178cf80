#include "layout/LayoutFile.h"

#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Files.h"
#include "runtime/ValueFile.h"

namespace trackloom {

std::string layoutText(Session& session) {
  const bool audio = isAudioLayout(session);
  const ListView& listing = session.frmListing().ListView1;
  ValueWriter values;
  values.text(layoutKind(session).fileWord).number(listing.Count()).text(session.mod.LayoutTotalText);
  for (int row = 1; row <= listing.Count(); ++row) {
    values.text(sourcePath(listing, row).text);
    if (!audio) values.text(listing.SubItem(row, FolderColumn));
  }
  return values.bytes();
}

void writeLayoutFile(Session& session, const HostPath& path) {
  ReplaceFile(path, layoutText(session));
}

void SaveLayout(Session& session) {
  writeLayoutFile(session, layoutFilePath(session, session.mod.LayoutFileName));
  session.mod.LayoutSaved = true;
}

}  // namespace trackloom
