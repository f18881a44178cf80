#include "layout/frmFolder.h"

#include <unordered_set>

#include "help/HelpLaunch.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "model/frmImages.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

std::unordered_set<std::string> foldersInUse(const ListView& listing) {
  std::unordered_set<std::string> folders;
  for (int row = 1; row <= listing.Count(); ++row) folders.insert(listing.SubItem(row, FolderColumn));
  return folders;
}

}  // namespace

frmFolder::frmFolder(Session& session, LayoutForms&)
    : Form(session.host, "frmFolder", "MP3 CD Folder"), session_(session) {
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  txtFolder.GotFocus = [this] { txtFolder.SelectAll(); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, FolderTopic); };
}

void frmFolder::Load() {
  takePicture(session_, &frmImages::imgFolder, Image1);
  listFolders();
  listTracks();
}

void frmFolder::listFolders() {
  const ListView& listing = session_.frmListing().ListView1;
  std::unordered_set<std::string> known;
  for (int row = 1; row <= listing.Count(); ++row) {
    const std::string& folder = listing.SubItem(row, FolderColumn);
    if (known.insert(folder).second) cboFolder.AddItem(folder);
  }
  if (!known.contains(NoFolder)) cboFolder.AddItem(NoFolder);
}

void frmFolder::listTracks() {
  const ListView& listing = session_.frmListing().ListView1;
  const bool onlyInRoot = session_.mod.ShowNoFolderOnly != 0;
  for (int row = 1; row <= listing.Count(); ++row) {
    if (onlyInRoot && listing.SubItem(row, FolderColumn) != NoFolder) continue;
    ListItem track;
    track.Text = listing.Item(row).Text;
    track.Tag = row;
    ListView1.Add(std::move(track));
  }
}

void frmFolder::cmdOK_Click() {
  std::vector<std::string> left;
  for (int row = 1; row <= ListView1.Count(); ++row) {
    if (!ListView1.Selected(row)) continue;
    std::string folder = moveTrack(ListView1.Item(row).Tag);
    if (folder != NoFolder) left.push_back(std::move(folder));
  }
  removeFoldersWithoutTracks(left);
  session_.mod.LayoutSaved = false;
  ApplyListingSort(session_);
  unload();
}

std::string frmFolder::moveTrack(int row) {
  ListView& listing = session_.frmListing().ListView1;
  CDWriterXP& writer = *session_.frmListing().CDR1;
  const std::string nameOnDisc = DiscName(listing.Item(row).Text);
  const std::string old = listing.SubItem(row, FolderColumn);
  writer.RemoveDataFile(DiscPathOf(old, nameOnDisc));
  const std::string folder = chosenFolder();
  listing.SetSubItem(row, FolderColumn, folder);
  writer.AddDataFile(DiscPathOf(folder, nameOnDisc), sourcePath(listing, row));
  return old;
}

/// What is typed goes before what is chosen. Its last separator is taken off in the box itself, so each further track
/// takes one more where several were typed.
std::string frmFolder::chosenFolder() {
  if (Trim(txtFolder.Text.get()).empty()) return cboFolder.Text();
  std::string typed = txtFolder.Text.get();
  if (typed.ends_with(DiscSep)) {
    typed.pop_back();
    txtFolder.Text = typed;
  }
  return typed.starts_with(DiscSep) ? typed : DiscSep + typed;
}

void frmFolder::removeFoldersWithoutTracks(const std::vector<std::string>& folders) {
  const std::unordered_set<std::string> used = foldersInUse(session_.frmListing().ListView1);
  for (const std::string& folder : folders)
    if (!used.contains(folder)) session_.frmListing().CDR1->RemoveDataFile(DiscPath(folder));
}

}  // namespace trackloom
