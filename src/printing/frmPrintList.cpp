#include "printing/frmPrintList.h"

#include "help/HelpLaunch.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr int Blue = 3;
constexpr int TenPoints = 1;

}  // namespace

frmPrintList::frmPrintList(Session& session, PrintingForms&)
    : Form(session.host, "frmPrintList", "Print Current Layout Track Listing"), session_(session) {
  cmdCancel.Cancel = true;
  txtTitle.GotFocus = [this] { txtTitle.SelectAll(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, PrintListTopic); };
}

void frmPrintList::Load() {
  takePicture(session_, &frmImages::imgPrint, Image1);
  // Only tracks of the list can be edited and printed, and the list is empty.
  cmdEdit.Enabled = false;
  cmdPrint.Enabled = false;
  offerStyles();
  suggestTitle();
  for (const char* colour : {"Red", "Green", "Yellow", "Blue", "Magenta", "White", "Cyan"}) ImageCombo1.AddItem(colour);
  ImageCombo1.SetListIndex(Blue);
  for (const char* points : {"8", "10", "12"}) Combo2.AddItem(points);
  Combo2.SetListIndex(TenPoints);
}

void frmPrintList::offerStyles() {
  const bool mp3 = isMp3Layout(session_);
  optAudio.Enabled = !mp3;
  (mp3 ? optStandard : optAudio).select();
}

void frmPrintList::suggestTitle() {
  const std::string& file = session_.mod.LayoutFileName;
  const std::string name = Trim(file).empty() ? "Untitled Layout" : layoutName(file);
  txtTitle.Text = "Trackloom - " + name;
}

void frmPrintList::Unload() {
  // The order that frmChooseSort gave the rows stays, but new rows go to the end again.
  if (session_.mod.Options.SortMode == NoSorting) session_.frmListing().ListView1.SetSorted(false);
}

}  // namespace trackloom
