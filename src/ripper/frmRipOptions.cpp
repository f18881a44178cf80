#include "ripper/frmRipOptions.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "ripper/RipperForms.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "runtime/ValueFile.h"

namespace trackloom {

namespace {

/// Longer than any path of the system; what is longer is no file of the program's.
constexpr std::size_t LargestFolderFile = 64 * 1024;
constexpr std::size_t DigitsOfRate = 3;

HostPath folderFile(const Session& session) {
  return HostPath(session.mod.AppFolder + "Folder.dat");
}

}  // namespace

frmRipOptions::frmRipOptions(Session& session, RipperForms& forms)
    : Form(session.host, "frmRipOptions", "Define CD Ripping Options"), session_(session), forms_(forms) {
  txtFolder.Locked = true;
  optNameList.select();
  Combo1.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdFolder.Click = [this] { cmdFolder_Click(); };
  optNameCustom.Click = [this] { optNameCustom_Click(); };
  txtName.GotFocus = [this] { txtName.SelectAll(); };
  chkMP3.Click = [this] { Combo1.Enabled = chkMP3.Value.get(); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, RipOptionsTopic); };
}

void frmRipOptions::Load() {
  takePicture(session_, &frmImages::imgRipOptions, Image1);
  takeSavedFolder();
  for (const char* rate : {"128", "160", "192", "224", "256", "320"}) Combo1.AddItem(std::string(rate) + " kbps");
  Combo1.SetListIndex(0);
  if (Trim(forms_.mod.DiscArtist.get()).empty()) {
    optNameListArtist.Enabled = false;
    optNameListAlbum.Enabled = false;
  }
  txtName.Enabled = false;
}

void frmRipOptions::takeSavedFolder() {
  const HostPath file = folderFile(session_);
  if (!FileExists(file)) return;
  const std::string folder = Trim(ValueReader(ReadStart(file, LargestFolderFile)).next());
  seeking_ = session_.ports.folders.find(HostPath(folder), [this, folder] {
    txtFolder.Text = folder;
    forms_.mod.RipFolder = folder;
  });
}

void frmRipOptions::optNameCustom_Click() {
  txtName.Enabled = true;
  txtName.SetFocus();
}

void frmRipOptions::cmdFolder_Click() {
  // The saved folder is not heard of any more, however late it is found.
  seeking_.reset();
  const auto chosen = session_.ports.files.browseForFolder("Select Folder to Store Extracted Tracks to:");
  // What the box shows stays, but a cancelled choice is none.
  if (!chosen) return forms_.mod.RipFolder.clear();
  forms_.mod.RipFolder = EnsureTrailingSep(chosen->text.substr(0, chosen->text.find('\0')));
  txtFolder.Text = forms_.mod.RipFolder;
}

void frmRipOptions::cmdOK_Click() {
  if (!answersAreWhole()) return;
  skipOnError([this] { saveFolder(); });
  CDRipperMod1& mod = forms_.mod;
  mod.RipNameMethod = chosenNaming();
  if (mod.RipNameMethod == CustomName) mod.RipCustomName = Trim(txtName.Text.get());
  mod.RipToMP3 = chkMP3.Value;
  if (mod.RipToMP3) mod.RipBitRate = ToInt16(Val(Left(Combo1.Text(), DigitsOfRate)));
  unload();
}

bool frmRipOptions::answersAreWhole() {
  if (txtFolder.Text.get().empty()) {
    session_.ask({"No Folder", "You have not selected a folder to store the selected tracks in."});
    cmdFolder.SetFocus();
    return false;
  }
  if (optNameCustom.selected() && Trim(txtName.Text.get()).empty()) {
    session_.ask(
        {"No Name", "You have selected to use the custom naming method but have not entered a default name to use."});
    txtName.SetFocus();
    return false;
  }
  return true;
}

void frmRipOptions::saveFolder() {
  ReplaceFile(folderFile(session_), ValueWriter().text(forms_.mod.RipFolder).bytes());
}

std::int16_t frmRipOptions::chosenNaming() const {
  if (optNameList.selected()) return NameOfList;
  if (optNameListArtist.selected()) return ArtistAndName;
  return optNameListAlbum.selected() ? AlbumAndName : CustomName;
}

void frmRipOptions::cmdCancel_Click() {
  forms_.mod.RipFolder.clear();
  unload();
}

}  // namespace trackloom
