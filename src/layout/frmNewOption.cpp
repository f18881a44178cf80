#include "layout/frmNewOption.h"

#include "help/HelpLaunch.h"
#include "model/AddTrack.h"
#include "model/CommandStates.h"
#include "model/DriveReadiness.h"
#include "model/Session.h"
#include "runtime/Files.h"

namespace trackloom {

frmNewOption::frmNewOption(Session& session) : Form(session.host, "frmNewOption", "Select Option"), session_(session) {
  Image1.Picture = "NewLayout";
  optStandard.select();
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, NewOptionTopic); };
}

void frmNewOption::cmdOK_Click() {
  // The marker is made before the disc is looked at, so it stands even when the user then refuses to insert one.
  if (chkNoShow.Value) TouchFile(HostPath(session_.mod.AppFolder + "NoShow.dat"));
  chooseKind();
  hide();
  ReadDiscCapacity(session_);
  UpdateCommandStates(session_);
  if (session_.mod.LayoutOpen) beginLayout();
  unload();
}

void frmNewOption::chooseKind() {
  ListingWindow& window = session_.frmListing();
  const bool audio = optStandard.selected();
  session_.mod.LayoutType = audio ? AudioLayout : Mp3Layout;
  window.panel1.Text = audio ? "Standard Audio CD (JOLIET)" : "MP3 Data CD (JOLIET)";
  session_.mod.LayoutOpen = true;
  if (audio) window.ListView1.SetSorted(false);
}

void frmNewOption::beginLayout() {
  session_.mod.NextTrackNumber = 1;
  session_.frmListing().ListView1.Enabled = true;
  if (session_.mod.LayoutType != Mp3Layout) return;
  addFolderColumn(session_);
  ApplyListingSort(session_);
}

}  // namespace trackloom
