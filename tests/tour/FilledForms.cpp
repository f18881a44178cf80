#include "tour/FilledForms.h"

#include "model/Capacity.h"
#include "tour/EveryForm.h"

namespace trackloom {

namespace {

constexpr std::int32_t TwipsPerPixel = 15;
constexpr std::int32_t BlocksOfDisc = 359849;
const std::string Drive = "ACMECORP SUPER WRITER 52X (D:)";

void fillMainWindow(ListingWindow& window) {
  window.placement = Placement{WindowState::Normal, 0, 0, 1000 * TwipsPerPixel, 640 * TwipsPerPixel};
  window.ListView1.Clear();
  window.ListView1.Add({"Aubade.mp3", {"/home/anna/Music/Mornings/", "00:03:42:18", "No Folder"}});
  window.ListView1.Add(
      {"Nocturne in E minor for two guitars.mp3", {"/home/anna/Music/Evenings/", "00:11:08:03", "Night"}});
  window.ListView1.Add({"Round dance.wav", {"/home/anna/Music/", "00:02:07:71", "Dances"}});
  window.ListView1.SelectRow(2);
  for (const char* tool : {"Record", "Delete", "Print", "mnuActionsRecord", "mnuActionsDelete"})
    window.DockStudio1.tool(tool).Enabled = true;
  window.panel1.Text = "Standard Audio CD (JOLIET)";
  window.panel3.Text = "Layout Time:  01:19:57 - Disc Time:  01:19:57 ";
  window.panel2.Text = Drive;
  window.Progress1.Maximum = BlocksOfDisc;
  window.Progress1.Value = BlocksOfDisc / 3;
  window.Progress1.Text = "359,849 Blocks of 359,849 Blocks  (100% of CD Used)";
  window.DockStudio1.AddEntry(window.cboMainDrive, Drive, "9");
}

void fill(LayoutForms& forms) {
  forms.frmFiles->ListView1.Add({"Aubade.mp3", {"1023.99 MB"}, 1, 0, true});
  forms.frmFiles->ListView1.Add({"Nocturne in E minor for two guitars.mp3", {"12.40 MB"}});
  forms.frmFiles->ListView1.SelectRow(1);
  forms.frmFiles->StatusBar1.SetPanelText(1, "1,024 Files, 1023.99 MB");
  for (Button* button : {&forms.frmFiles->cmdCheckAll, &forms.frmFiles->cmdClearAll, &forms.frmFiles->cmdOK})
    button->Enabled = true;
  forms.frmSave->txtName.Text = "Summer evenings";
  forms.frmOpenLayout->ListView1.Add({"Summer evenings", {"99", "01:19:57", "Audio CD"}});
  forms.frmOpenLayout->ListView1.Add({"For the car", {"1,204", "698.25 MB", "MP3 CD"}});
  forms.frmOpenLayout->ListView1.SelectRow(1);
  forms.frmFolder->ListView1.Add({"Nocturne in E minor for two guitars.mp3", {}});
  forms.frmFolder->cboFolder.AddItem("Evenings");
}

void fill(WritingForms& forms) {
  frmStatus& status = forms.frmStatus.get();
  status.lblOperation.Caption =
      "Closing disc...This operation can take several minutes on slower CD recording drives...Please wait...";
  status.lblSpeed.Caption = "Write Speed:  Maximum";
  status.lblTracks.Caption = "99 of 99";
  status.lblBuffer.Caption = "100%";
  status.lblDevice.Caption = "100%";
  for (ProgressBarEx* bar : {&status.pbCache, &status.pbTrack, &status.pbOverall}) bar->SetValue(bar->Max() / 2);
  forms.frmDone->lblTypeInfo.Caption =
      "The created audio disc has been left open so you can add further audio tracks.  The disc cannot be played as a "
      "standard Audio CD until you choose Close Session from the Tools/CD Information Info option with the disc "
      "inserted.";
  forms.frmError->lblError.Caption =
      " A device error has occurred. Device Error: 201731\r\nError Data - write error at block 359849 (3/0C/00)";
  forms.frmISO->txtImage.Text = "/home/anna/Images/For the car.iso";
  forms.frmISO->lblFile.Caption = "Reading && Writing Track #1024...";
  frmDiskInfo& info = forms.frmDiskInfo.get();
  info.ListView1.Clear();
  info.ListView1.Add({"Inserted CD Status:", {"CD is Open"}});
  info.ListView1.Add({"Inserted CD Type:", {"CD-DA/CD-ROM"}});
  info.ListView1.Add({"Number of CD Sessions:", {"12"}});
  info.ListView1.Add({"Last Session Status:", {"Incomplete Session"}});
  info.ListView1.Add({"Free Space & Time on CD:", {"702.83 MB, 01:19:57"}});
  info.imgStatus.Visible = true;
  info.lblStatus.Caption = "Closing Last Incomplete Session...This operation cannot be cancelled...";
  forms.frmErase->imgStatus.Visible = true;
  forms.frmErase->lblStatus.Caption =
      "Erasing CDRW Media Disc...This operation can take up to 15 minutes for a Full Erase Operation on some CD "
      "Recording Drives and the system may appear to stop responding...Please wait...";
}

void fill(SearchForms& forms) {
  forms.frmSearch->ListView1.Add({"Aubade.mp3", {"MP3", "1023.99 MB", "/home/anna/Music/Mornings/"}, 1, 0, true});
  forms.frmSearch->ListView1.Add({"Round dance.wav", {"WAV", "12.40 MB", "/home/anna/Music/"}});
}

void fill(PrintingForms& forms) {
  forms.frmReadStatus->Label1.Caption = "Reading ID3 Tag Information from Track #1024...";
  forms.frmPrintList->ListView1.Add({"01", {"The Strings of Evening", "Nocturne in E minor for two guitars"}});
  forms.frmPrintList->ListView1.Add({"02", {"Anna", "Aubade"}});
  forms.frmEdit->suggest("The Strings of Evening", "Nocturne in E minor for two guitars");
  forms.session.mod.PrintTitle = "Trackloom - Summer evenings";
  forms.session.mod.ListingFontSize = 10;
  forms.session.mod.TrackTimes = {"11:0", "3:42"};
}

void fill(RipperForms& forms) {
  forms.mod.DiscArtist = "The Strings of Evening";
  frmRipMain& ripper = forms.frmRipMain.get();
  ripper.ImageCombo1.Clear();
  ripper.ImageCombo1.AddItem("D: ACMECORP SUPER READER 52X", 0, 1);
  ripper.ImageCombo1.SetListIndex(0);
  for (const char* speed : {"AUTO", "52X"}) ripper.cboSpeeds.AddItem(speed);
  ripper.cboSpeeds.SetListIndex(1);
  ripper.caption = "Trackloom CD Ripper (The Strings of Evening - Nocturnes)";
  ripper.ListView2.Add({"Aubade", {"00:02:00", "03:44:18", "03:42:18"}, 1, 0, true});
  ripper.ListView2.Add({"Nocturne in E minor for two guitars", {"03:44:18", "74:52:21", "71:08:03"}});
  ripper.StatusBar1.SetPanelText(1, "Contents of current inserted CD listed...");
  // It keeps the window's controls off, and here both stand side by side.
  forms.frmReading.get();
  for (Control* control : ripper.controls()) control->Enabled = true;
  forms.frmRipOptions->txtFolder.Text = "/home/anna/Music/The Strings of Evening/";
  frmRipStatus& status = forms.frmRipStatus.get();
  status.StatusBar1.SetPanelText(1, "Ripping Track(s) as MP3 format (320 kbps)...");
  status.lblTime.Caption = "Track 02     71:08:03 / 71:08:03";
  for (ProgressBarEx* bar : {&status.prgTrack, &status.prgTotal}) bar->SetValue(bar->Max() / 2);
}

}  // namespace

std::vector<std::shared_ptr<Form>> filledForms(Program& program, std::int16_t kind) {
  ProgramForms& forms = program.forms();
  frmNewOption& style = forms.layout.frmNewOption.get();
  (kind == AudioLayout ? style.optStandard : style.optMP3).click();
  style.cmdOK.click();
  // While there are no tracks every form can load, also those that an audio layout never opens.
  fill(forms.layout);
  fill(forms.writing);
  fill(forms.search);
  fill(forms.printing);
  fill(forms.ripper);
  fillMainWindow(program.session().frmListing());
  std::vector<std::shared_ptr<Form>> all;
  const auto keep = [&all](Form& form) { all.push_back(form.keepAlive()); };
  keep(program.session().frmListing());
  for (const FormPlace& place : everyForm()) keep(place.form(program));
  return all;
}

}  // namespace trackloom
