#include "layout/frmFiles.h"

#include "help/HelpLaunch.h"
#include "model/AddTrack.h"
#include "model/Capacity.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom {

frmFiles::frmFiles(Session& session, LayoutForms&)
    : Form(session.host, "frmFiles", "File Selection"), session_(session) {
  cmdCheckAll.Enabled = false;
  cmdClearAll.Enabled = false;
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  FT1.FolderChanged = [this](const std::string& folder) { skipOnError([&] { listFolder(folder); }); };
  cmdCheckAll.Click = [this] { checkAll(true); };
  cmdClearAll.Click = [this] { checkAll(false); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, FilesTopic); };
}

void frmFiles::Load() {
  takePicture(session_, &frmImages::imgFiles, Image1);
  skipOnError([this] { FT1.SetSelectedFolder(RTrim(session_.mod.Options.LastFolder)); });
}

void frmFiles::listFolder(const std::string& path) {
  ListView1.Clear();
  const std::string folder = EnsureTrailingSep(path);
  Found found;
  listFiles(folder, ".mp3", found);
  if (isAudioLayout(session_)) listFiles(folder, ".wav", found);
  if (ListView1.Count() == 0) return;
  const Separators& signs = session_.ports.separators;
  StatusBar1.SetPanelText(
      1, FormatGrouped(found.files, signs) + " Files, " + FormatSize(static_cast<double>(found.bytes), signs));
  cmdCheckAll.Enabled = true;
  cmdClearAll.Enabled = true;
  cmdOK.Enabled = true;
  ListView1.SelectRow(1);
}

void frmFiles::listFiles(const std::string& folder, std::string_view extension, Found& found) {
  for (const std::string& name : ListFiles(HostPath(folder), extension)) {
    const int row = ListView1.Add({name, {}});
    const std::int64_t bytes = FileLength(HostPath(folder + name));
    ListView1.SetSubItem(row, 1, FormatSize(static_cast<double>(bytes), session_.ports.separators));
    ++found.files;
    found.bytes += bytes;
  }
}

void frmFiles::checkAll(bool checked) {
  for (int row = 1; row <= ListView1.Count(); ++row) ListView1.SetChecked(row, checked);
}

void frmFiles::cmdOK_Click() {
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
