#include "layout/frmFiles.h"

#include "help/HelpLaunch.h"
#include "model/AddTrack.h"
#include "model/Capacity.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Text.h"

namespace trackloom {

frmFiles::frmFiles(Session& session, LayoutForms&)
    : Form(session.host, "frmFiles", "File Selection"), session_(session) {
  allowAdding(false);
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  FT1.FolderChanged = [this](const std::string& folder) { listFolder(folder); };
  cmdCheckAll.Click = [this] { checkAll(true); };
  cmdClearAll.Click = [this] { checkAll(false); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, FilesTopic); };
}

void frmFiles::Load() {
  takePicture(session_, &frmImages::imgFiles, Image1);
  const std::string last = RTrim(session_.mod.Options.LastFolder);
  seeking_ = session_.ports.folders.find(HostPath(last), [this, last] { FT1.SetSelectedFolder(last); });
}

void frmFiles::listFolder(const std::string& path) {
  // What an earlier folder still owes is never heard.
  seeking_.reset();
  listing_.reset();
  ListView1.Clear();
  found_ = {};
  addingWasAllowed_ = cmdOK.Enabled;
  std::vector<std::string> extensions{".mp3"};
  if (isAudioLayout(session_)) extensions.emplace_back(".wav");
  listing_ = session_.ports.folders.list(HostPath(EnsureTrailingSep(path)), std::move(extensions), *this);
}

void frmFiles::fileFound(const std::string& name) {
  ListView1.Add({name, {}});
}

void frmFiles::lengthFound(std::int64_t bytes) {
  ListView1.SetSubItem(ListView1.Count(), 1, FormatSize(static_cast<double>(bytes), session_.ports.separators));
  ++found_.files;
  found_.bytes += bytes;
  allowAdding(true);
}

void frmFiles::allFound() {
  if (ListView1.Count() == 0) return;
  const Separators& signs = session_.ports.separators;
  StatusBar1.SetPanelText(
      1, FormatGrouped(found_.files, signs) + " Files, " + FormatSize(static_cast<double>(found_.bytes), signs));
  // The user may have gone to another row while the rows came.
  if (ListView1.SelectedRow() == 0) ListView1.SelectRow(1);
}

void frmFiles::listingFailed() {
  allowAdding(addingWasAllowed_);
}

void frmFiles::allowAdding(bool allowed) {
  cmdCheckAll.Enabled = allowed;
  cmdClearAll.Enabled = allowed;
  cmdOK.Enabled = allowed;
}

void frmFiles::checkAll(bool checked) {
  for (int row = 1; row <= ListView1.Count(); ++row) ListView1.SetChecked(row, checked);
}

void frmFiles::cmdOK_Click() {
  listing_.reset();
  hide();
  session_.ports.pump.pumpEvents();
  const std::string folder = EnsureTrailingSep(FT1.SelectedFolder());
  session_.mod.Options.setLastFolder(folder);
  const Batch batch(session_, Batch::Source::Dialog);
  const bool finished = addChecked(batch, folder);
  ListView& listing = session_.frmListing().ListView1;
  if (finished && listing.Count() > 0) listing.SelectRow(1);
  batch.finish();
  unload();
}

bool frmFiles::addChecked(const Batch& batch, const std::string& folder) {
  for (int row = 1; row <= ListView1.Count(); ++row) {
    if (!ListView1.Item(row).Checked) continue;
    const std::string name = ListView1.Item(row).Text;
    const Candidate candidate{HostPath(folder + name), folder, name};
    if (AddTrack(batch, candidate, PickedFiles) == AddOutcome::LayoutTooBig) return false;
  }
  return true;
}

}  // namespace trackloom
