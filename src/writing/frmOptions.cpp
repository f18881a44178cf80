#include "writing/frmOptions.h"

#include "help/HelpLaunch.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr const char* DesignedVolume = "New MP3 CD";
constexpr const char* DefaultSpeed = "Default";

/// The next lower speed of the list: steps of four, and halves below five.
std::int16_t nextSpeed(std::int16_t speed) {
  return ToInt16(speed < 5 ? RoundHalfEven(speed / 2.0) : speed - 4.0);
}

}  // namespace

frmOptions::frmOptions(Session& session, WritingForms&)
    : Form(session.host, "frmOptions", "CD Creation Options"), session_(session) {
  optCreateOnly.select();
  optClose.select();
  txtCopies.Locked = true;
  Pic1.Visible = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  TS1.Click = [this] { showTab(); };
  txtVolume.GotFocus = [this] { txtVolume.SelectAll(); };
  VScroll1.Change = [this] { txtCopies.Text = std::to_string(VScroll1.Value.get()); };
  cboWriteSpeed.Click = [this] {
    if (cboWriteSpeed.Text() != DefaultSpeed)
      session_.frmListing().CDR1->SetWriteSpeed(ToInt16(cboWriteSpeed.ItemData()));
  };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, OptionsTopic); };
}

void frmOptions::Load() {
  takePicture(session_, &frmImages::imgOptions, Image1);
  const bool audio = isAudioLayout(session_);
  optTrack.Enabled = audio;
  lblTrack.Enabled = audio;
  optLeaveOpen.Enabled = !audio;
  lblLeaveOpen.Enabled = !audio;
  txtVolume.Enabled = !audio;
  lblVolume.Visible = !audio;
  if (!session_.frmListing().CDR1->HasWriteGuard()) chkCache.Value = true;
  FillWriteSpeeds();
}

void frmOptions::showTab() {
  Pic2.Visible = TS1.SelectedTab == 1;
  Pic1.Visible = TS1.SelectedTab == 2;
}

void frmOptions::FillWriteSpeeds() {
  std::int16_t speed = session_.frmListing().CDR1->MaxWriteSpeed();
  cboWriteSpeed.Clear();
  if (speed <= 0) cboWriteSpeed.AddItem(DefaultSpeed);
  for (; speed > 0; speed = nextSpeed(speed)) cboWriteSpeed.AddItem(std::to_string(speed) + "x", speed);
  cboWriteSpeed.SetListIndex(0);
}

void frmOptions::cmdOK_Click() {
  Trackloom50Mod1& mod = session_.mod;
  mod.RecordConfirmed = true;
  takeCloseMode();
  takeCache();
  if (!isAudioLayout(session_)) {
    const std::string label = Trim(txtVolume.Text.get());
    mod.DiscVolumeLabel = label.empty() ? DesignedVolume : label;
  }
  mod.CopiesWanted = ToInt16(Val(txtCopies.Text.get()));
  takeTestMode();
  mod.WriteSpeedText = "Write Speed:  " + cboWriteSpeed.Text();
  unload();
}

void frmOptions::takeCloseMode() {
  CDWriterXP& writer = *session_.frmListing().CDR1;
  if (optClose.selected()) {
    writer.SetCloseDisc(true);
    writer.SetCloseSession(true);
  } else if (!isAudioLayout(session_) && optLeaveOpen.selected()) {
    writer.SetCloseSession(true);
    writer.SetCloseDisc(false);
  } else if (isAudioLayout(session_) && optTrack.selected()) {
    writer.SetCloseSession(false);
    writer.SetCloseDisc(false);
  }
}

void frmOptions::takeCache() {
  CDWriterXP& writer = *session_.frmListing().CDR1;
  if (isAudioLayout(session_))
    writer.SetCacheAudioTracks(chkCache.Value);
  else
    writer.SetCacheDataTrack(chkCache.Value);
}

void frmOptions::takeTestMode() {
  const bool test = optTestOnly.selected() || optTestWrite.selected();
  session_.frmListing().CDR1->SetTestMode(test);
  session_.mod.WritePhase = optTestOnly.selected() ? TestOnly : optTestWrite.selected() ? TestBeforeWrite : RealWrite;
}

}  // namespace trackloom
