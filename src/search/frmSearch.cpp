#include "search/frmSearch.h"

#include <string_view>

#include "help/HelpLaunch.h"
#include "model/AddTrack.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "search/SearchForms.h"

namespace trackloom {

namespace {

constexpr const char* StartCaption = "&Start Search Now";
constexpr const char* StopCaption = "Stop Search";

}  // namespace

frmSearch::frmSearch(Session& session, SearchForms& forms)
    : Form(session.host, "frmSearch", "Search for Audio Files"), session_(session), forms_(forms) {
  allowAdding(false);
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdStart.Click = [this] { cmdStart_Click(); };
  cmdCheckAll.Click = [this] { checkAll(true); };
  cmdClearAll.Click = [this] { checkAll(false); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, SearchTopic); };
}

void frmSearch::Load() {
  takePicture(session_, &frmImages::imgSearch, Image1);
  findHardDrives();
  Combo1.AddItem("MP3 Files");
  if (!isMp3Layout(session_)) {
    Combo1.AddItem("WAV Files");
    Combo1.AddItem("All Audio Files");
  }
  Combo1.SetListIndex(0);
}

void frmSearch::findHardDrives() {
  constexpr std::string_view End("\0", 1);
  std::string roots = GetDriveRoots(session_);
  while (!roots.empty() && roots != End) {
    const std::string root = NextRoot(roots);
    if (DriveTypeText(session_, root) == "Hard") HardDrives.push_back(root);
  }
}

bool frmSearch::searching() const {
  return cmdStart.Caption == std::string(StopCaption);
}

void frmSearch::cmdStart_Click() {
  if (searching()) {
    forms_.mod.StopSearch = true;
    return;
  }
  beginSearch();
  searchDrives();
  tellResult();
  cmdStart.Caption = StartCaption;
  allowLeaving(true);
}

void frmSearch::beginSearch() {
  ListView1.Clear();
  forms_.mod.FilesFound = 0;
  cmdStart.Caption = StopCaption;
  forms_.mod.StopSearch = false;
  allowLeaving(false);
  allowAdding(false);
}

void frmSearch::searchDrives() {
  for (const std::string& root : HardDrives) {
    if (forms_.mod.StopSearch) {
      cmdStart.Caption = StartCaption;
      return;
    }
    SearchDrive(forms_, root);
  }
}

void frmSearch::tellResult() {
  if (ListView1.Count() == 0) {
    session_.ask({"Found Audio Files",
                  "The search of all available hard drives did not find any specified type Audio Files.",
                  BoxButtons::Ok, BoxIcon::Information});
    return;
  }
  session_.ask({"Found Audio Files",
                "The search of all available hard drives has found " +
                    FormatGrouped(forms_.mod.FilesFound, session_.ports.separators) + " Audio Files.",
                BoxButtons::Ok, BoxIcon::Information});
  allowAdding(true);
}

void frmSearch::allowLeaving(bool allowed) {
  cmdCancel.Enabled = allowed;
  cmdHelp.Enabled = allowed;
  Combo1.Enabled = allowed;
}

void frmSearch::allowAdding(bool allowed) {
  cmdCheckAll.Enabled = allowed;
  cmdClearAll.Enabled = allowed;
  cmdOK.Enabled = allowed;
}

void frmSearch::checkAll(bool checked) {
  for (int row = 1; row <= ListView1.Count(); ++row) ListView1.SetChecked(row, checked);
}

void frmSearch::cmdOK_Click() {
  hide();
  session_.ports.pump.pumpEvents();
  const Batch batch(session_, Batch::Source::Dialog);
  if (addChecked(batch)) {
    if (isMp3Layout(session_)) ApplyListingSort(session_);
    ListView& listing = session_.frmListing().ListView1;
    if (listing.Count() > 0) listing.SelectRow(1);
  }
  batch.finish();
  unload();
}

bool frmSearch::addChecked(const Batch& batch) {
  for (int row = 1; row <= ListView1.Count(); ++row) {
    if (!ListView1.Item(row).Checked) continue;
    const std::string name = ListView1.Item(row).Text;
    const std::string folder = ListView1.SubItem(row, 3);
    const Candidate candidate{HostPath(folder + name), folder, name};
    if (AddTrack(batch, candidate, PickedFiles) == AddOutcome::LayoutTooBig) return false;
  }
  return true;
}

}  // namespace trackloom
