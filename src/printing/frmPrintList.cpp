#include "printing/frmPrintList.h"

#include <algorithm>
#include <utility>

#include "help/HelpLaunch.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "printing/PrintingForms.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr int Blue = 3;
constexpr int TenPoints = 1;
constexpr int WhiteImage = 7;
constexpr std::size_t BeforeCyan = 5;

}  // namespace

frmPrintList::frmPrintList(Session& session, PrintingForms& forms)
    : Form(session.host, "frmPrintList", "Print Current Layout Track Listing"), session_(session), forms_(forms) {
  ImageCombo1.Images = &ImageList1;
  cmdCancel.Cancel = true;
  cmdEdit.Click = [this] { editSelected(); };
  ListView1.DblClick = [this] { editSelected(); };
  txtTitle.GotFocus = [this] { txtTitle.SelectAll(); };
  cmdPrint.Click = [this] { cmdPrint_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, PrintListTopic); };
}

void frmPrintList::Load() {
  takePicture(session_, &frmImages::imgPrint, Image1);
  offerStyles();
  suggestTitle();
  offerColours();
  offerFonts();
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

void frmPrintList::offerColours() {
  for (const char* colour : {"Red", "Green", "Yellow", "Blue", "Magenta", "Cyan"})
    ImageCombo1.AddItem(colour, 0, ImageList1.Number(colour));
  ImageCombo1.InsertItem(BeforeCyan, "White", WhiteImage);
  ImageCombo1.SetListIndex(Blue);
}

void frmPrintList::offerFonts() {
  std::vector<std::string> fonts = session_.ports.prints.ScreenFonts();
  const auto before = [](const std::string& one, const std::string& other) { return UCase(one) < UCase(other); };
  std::stable_sort(fonts.begin(), fonts.end(), before);
  for (const std::string& font : fonts) Combo1.AddItem(font);
  const auto isArial = [](const std::string& font) { return UCase(Trim(font)) == "ARIAL"; };
  const auto last = std::find_if(fonts.rbegin(), fonts.rend(), isArial);
  Combo1.SetListIndex(static_cast<int>(fonts.rend() - last) - 1);
}

void frmPrintList::Activate() {
  if (std::exchange(HintShown, true)) return;
  ListView1.SelectRow(std::min(1, ListView1.Count()));
  if (session_.mod.TagsMissing)
    session_.ask(
        {"Track Information",
         std::string("Some of the listed tracks did not contain ID3 Tag information or the information could "
                     "not be read.  These tracks will be listed as Unknown for either the Artist or the Title "
                     "field, or both.") +
             ParagraphBreak +
             "You can edit these tracks by selecting a track and choosing the Edit Selected Track option or by "
             "double clicking a track in the listing."});
}

void frmPrintList::editSelected() {
  const int row = ListView1.SelectedRow();
  if (row == 0) return;
  forms_.frmEdit->suggest(ListView1.SubItem(row, 1), ListView1.SubItem(row, 2));
  forms_.frmEdit->showModal(this);
}

void frmPrintList::cmdPrint_Click() {
  Trackloom50Mod1& mod = session_.mod;
  mod.HeaderColour = ImageCombo1.Text();
  mod.ListingFont = Combo1.Text();
  mod.ListingFontSize = ToInt16(Val(Combo2.Text()));
  mod.PrintTitle = Trim(txtTitle.Text.get());
  mod.PrintStyle = optAudio.selected() ? InsertTemplate : StandardPage;
  // Hidden, it keeps its list for the page.
  hide();
  forms_.frmPrint->showModal(&session_.frmListing());
  unload();
}

void frmPrintList::Unload() {
  // The order that frmChooseSort gave the rows stays, but new rows go to the end again.
  if (session_.mod.Options.SortMode == NoSorting) session_.frmListing().ListView1.SetSorted(false);
}

}  // namespace trackloom
