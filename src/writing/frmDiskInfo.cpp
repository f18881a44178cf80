#include "writing/frmDiskInfo.h"

#include "help/HelpLaunch.h"
#include "model/Capacity.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

namespace {

/// A status that nobody knows leaves its cell empty.
std::string discStatusText(std::int32_t status) {
  switch (status) {
    case DiscEmpty:
      return "Empty CD";
    case DiscOpen:
      return "CD is Open";
    case DiscClosed:
      return "CD is Closed";
    case DiscStatusUnknown:
      return "Unknown";
    default:
      return "";
  }
}

/// The same for a type.
std::string discTypeText(std::int32_t type) {
  switch (type) {
    case DiscTypeCdRom:
      return "CD-DA/CD-ROM";
    case DiscTypeCdi:
      return "CDI";
    case DiscTypeXa:
      return "CD-ROM XA";
    case DiscTypeUnknown:
      return "Unknown";
    default:
      return "";
  }
}

std::string sessionStatusText(std::int32_t status) {
  switch (status) {
    case SessionEmpty:
      return "Empty Session";
    case SessionIncomplete:
      return "Incomplete Session";
    case SessionClosed:
      return "Closed Session";
    default:
      return "Unknown";
  }
}

}  // namespace

frmDiskInfo::frmDiskInfo(Session& session, WritingForms&)
    : Form(session.host, "frmDiskInfo", "CD Information"), session_(session) {
  ListView1.SmallIcons = &ImageList1;
  imgStatus.Visible = false;
  cmdCloseSession.Enabled = false;
  cmdCloseDisc.Enabled = false;
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  cmdCloseSession.Click = [this] { cmdCloseSession_Click(); };
  cmdCloseDisc.Click = [this] { cmdCloseDisc_Click(); };
  cmdOK.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, DiskInfoTopic); };
  Timer1.Tick = [this] { blink(imgStatus); };
}

void frmDiskInfo::Load() {
  takePicture(session_, &frmImages::imgDiskInfo, Image1);
  CDWriterXP& writer = *session_.frmListing().CDR1;
  addRow("Inserted CD Status:", discStatusText(writer.DiscStatus()));
  addRow("Inserted CD Type:", discTypeText(writer.DiscType()));
  addRow("Number of CD Sessions:", std::to_string(writer.SessionCount()));
  const std::int32_t lastSession = writer.LastSessionStatus();
  addRow("Last Session Status:", sessionStatusText(lastSession));
  cmdCloseSession.Enabled = lastSession == SessionIncomplete;
  cmdCloseDisc.Enabled = lastSession == SessionIncomplete;
  addRow("Free Space & Time on CD:", freeSpace());
}

void frmDiskInfo::addRow(const std::string& item, const std::string& value) {
  ListView1.Add({item, {value}});
}

std::string frmDiskInfo::freeSpace() {
  CDWriterXP& writer = *session_.frmListing().CDR1;
  const std::int32_t audio = writer.FreeBlocks(AudioBlocks);
  const std::int32_t data = writer.FreeBlocks(DataBlocks);
  if (data <= 0) return "0 (No Writing Available)";
  return FormatSize(writer.BlocksToBytes(data, DataBlocks), session_.ports.separators) + ", " +
         writer.BlocksToTime(audio);
}

void frmDiskInfo::cmdCloseSession_Click() {
  // The answer changes nothing: this button never closes more than the session.
  session_.ask({"Close Disc", "Do you wish to close the disc as well for any further writing?", BoxButtons::YesNo,
                BoxIcon::Question});
  beginClosing("Closing Last Incomplete Session...This operation cannot be cancelled...");
  if (session_.frmListing().CDR1->CloseLastSession(session_.mod.SessionAndDiscClosed)) return;
  Timer1.Enabled = false;
  tellFailure("There was an error encountered trying to close the last session on the inserted CD.");
}

void frmDiskInfo::cmdCloseDisc_Click() {
  beginClosing("Closing Disc...This operation cannot be cancelled...");
  if (session_.frmListing().CDR1->CloseLastSession(true)) return;
  tellFailure("There was an error encountered trying to close the current disc.");
}

void frmDiskInfo::beginClosing(const std::string& words) {
  closing_ = true;
  for (Button* button : {&cmdOK, &cmdCloseSession, &cmdCloseDisc, &cmdHelp}) button->Enabled = false;
  imgStatus.Visible = true;
  lblStatus.Caption = words;
  lblStatus.Refresh();
  Timer1.Enabled = true;
  session_.mod.WriteActive = false;
  session_.mod.DiscCloseActive = true;
}

void frmDiskInfo::tellFailure(const std::string& words) {
  session_.ask({.title = "Error", .text = words, .ofFailure = true});
  unload();
}

}  // namespace trackloom
