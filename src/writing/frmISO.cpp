#include "writing/frmISO.h"

#include "help/HelpLaunch.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Text.h"
#include "writing/IsoFiles.h"
#include "writing/LayoutTracks.h"

namespace trackloom {

frmISO::frmISO(Session& session, WritingForms&)
    : Form(session.host, "frmISO", "Create MP3 CD ISO Image"),
      CD1(*this, "CD1", session.ports.files),
      CDR1(session.ports.writers.create(*this)),
      session_(session) {
  txtImage.Locked = true;
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdBrowse.Click = [this] { cmdBrowse_Click(); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, IsoTopic); };
}

void frmISO::Load() {
  takePicture(session_, &frmImages::imgISO, Image1);
}

void frmISO::cmdBrowse_Click() {
  CD1.FileName = "";
  CD1.Filter = IsoFilter;
  CD1.Flags = {
      .pathMustExist = true, .overwritePrompt = true, .hideReadOnly = true, .longNames = true, .explorer = true};
  CD1.ShowSave();
  if (CD1.FileName.empty()) return;
  txtImage.Text = CD1.FileName;
  cmdOK.Enabled = true;
}

void frmISO::cmdOK_Click() {
  session_.mod.RecordConfirmed = true;
  for (Button* button : {&cmdBrowse, &cmdOK, &cmdCancel, &cmdHelp}) button->Enabled = false;
  CheckImageTracks();
  if (!session_.mod.RecordConfirmed) unload();
  BuildImage();
  session_.ask({"Creation Complete", "Creation of the specified ISO Image is now complete.", BoxButtons::Ok,
                BoxIcon::Information});
  unload();
}

void frmISO::CheckImageTracks() {
  if (!tracksExist(session_, "ISO creation")) session_.mod.RecordConfirmed = false;
}

void frmISO::BuildImage() {
  CDR1->SetDiscMode(DataBlocks);
  CDR1->ClearDataQueue();
  CDR1->SetVolumeLabel(Trim(txtLabel.Text.get()));
  queueDataRows(session_, *CDR1);
  CDR1->CreateIsoImage(HostPath(Trim(txtImage.Text.get())));
}

void frmISO::cmdCancel_Click() {
  session_.mod.RecordConfirmed = false;
  unload();
}

void frmISO::OnTrackCacheStart(std::int16_t, std::int32_t blocks) {
  pbCache.SetMax(blocks);
}

void frmISO::OnCacheProgress(std::int32_t position) {
  pbCache.SetValue(position);
}

void frmISO::OnImageTrackStart(std::int32_t track) {
  lblFile.Caption = "Reading && Writing Track #" + std::to_string(track) + "...";
  lblFile.Refresh();
}

void frmISO::OnWriteError(std::int32_t, std::int32_t) {
  session_.ask({"Write Error",
                std::string("An error was encountered while trying to write the specified ISO Image.") +
                    ParagraphBreak +
                    "Ensure there is enough drive space available to write the Image in the chosen destination and "
                    "proper file write permissions are in place."});
  unload();
}

}  // namespace trackloom
