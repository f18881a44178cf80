#include "layout/LayoutFile.h"

#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Files.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

std::string quotedLine(const std::string& text) {
  return '"' + text + '"' + CrLf;
}

}  // namespace

std::string layoutText(Session& session) {
  const bool audio = isAudioLayout(session);
  const ListView& listing = session.frmListing().ListView1;
  std::string text = quotedLine(layoutKind(session).fileWord);
  text += std::to_string(listing.Count()) + CrLf;
  text += quotedLine(session.mod.LayoutTotalText);
  for (int row = 1; row <= listing.Count(); ++row) {
    text += quotedLine(sourcePath(listing, row).text);
    if (!audio) text += quotedLine(listing.SubItem(row, FolderColumn));
  }
  return text;
}

void writeLayoutFile(Session& session, const HostPath& path) {
  ReplaceFile(path, layoutText(session));
}

void SaveLayout(Session& session) {
  writeLayoutFile(session, layoutFilePath(session, session.mod.LayoutFileName));
  session.mod.LayoutSaved = true;
}

}  // namespace trackloom
