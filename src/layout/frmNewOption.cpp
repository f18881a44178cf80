#include "layout/frmNewOption.h"

#include "help/HelpLaunch.h"
#include "model/CommandStates.h"
#include "model/DriveReadiness.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Files.h"

namespace trackloom {

frmNewOption::frmNewOption(Session& session, LayoutForms&)
    : Form(session.host, "frmNewOption", "Select Option"), session_(session) {
  optStandard.select();
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, NewOptionTopic); };
}

void frmNewOption::Load() {
  takePicture(session_, &frmImages::imgNewLayout, Image1);
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
  const bool audio = optStandard.selected();
  setLayoutKind(session_, audio ? AudioKind : Mp3Kind);
  session_.mod.LayoutOpen = true;
  if (audio) session_.frmListing().ListView1.SetSorted(false);
}

void frmNewOption::beginLayout() {
  session_.mod.NextTrackNumber = 1;
  session_.frmListing().ListView1.Enabled = true;
  if (!isMp3Layout(session_)) return;
  addFolderColumn(session_);
  ApplyListingSort(session_);
}

}  // namespace trackloom
