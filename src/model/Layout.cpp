#include "model/Layout.h"

#include <algorithm>

#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr const char* Extension = ".mixl";
constexpr std::size_t ExtensionLength = 5;

}  // namespace

bool isAudioLayout(const Session& session) {
  return session.mod.LayoutType == AudioLayout;
}

bool isMp3Layout(const Session& session) {
  return session.mod.LayoutType == Mp3Layout;
}

void setLayoutKind(Session& session, const LayoutKind& kind) {
  session.mod.LayoutType = kind.type;
  session.frmListing().panel1.Text = kind.panelText;
}

const LayoutKind& layoutKind(const Session& session) {
  return isAudioLayout(session) ? AudioKind : Mp3Kind;
}

void ApplyListingSort(Session& session) {
  ListView& listing = session.frmListing().ListView1;
  const std::int16_t mode = session.mod.Options.SortMode;
  const bool sorted = !isAudioLayout(session) && mode <= SortByDiscFolder;
  if (sorted) listing.SetSortKey(mode == SortByDiscFolder ? FolderColumn : NameColumn);
  listing.SetSorted(sorted);
}

void addFolderColumn(Session& session) {
  ListView& listing = session.frmListing().ListView1;
  if (listing.columns().size() != FolderColumn) return;
  listing.AddColumn({"CD Folder", "CD Folder", listing.Width / 4.5, true});
}

void removeFolderColumn(Session& session) {
  ListView& listing = session.frmListing().ListView1;
  if (listing.columns().size() == FolderColumn + 1) listing.RemoveColumn(FolderColumn + 1);
}

bool needsSaving(Session& session) {
  if (session.mod.LayoutSaved) return false;
  return session.frmListing().ListView1.Count() > 0 || !session.mod.LayoutFileName.empty();
}

std::string layoutsFolder(const Session& session) {
  return session.mod.AppFolder + "Layouts" + HostSep;
}

std::string layoutFileName(const std::string& name) {
  return name + Extension;
}

std::string layoutName(const std::string& fileName) {
  return Left(fileName, std::max(Len(fileName), ExtensionLength) - ExtensionLength);
}

HostPath layoutFilePath(const Session& session, const std::string& fileName) {
  return HostPath(layoutsFolder(session) + fileName);
}

}  // namespace trackloom
