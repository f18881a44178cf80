#include <catch2/catch.hpp>

#include "fakes/Machine.h"

namespace trackloom {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// A running program with a layout of one track, on a machine that has the help file.
class Running : public Machine {
 public:
  explicit Running(std::int16_t kind = AudioLayout) {
    folder.write("Trackloom.chm", "help");
    startQuietly();
    newLayout(kind);
    addTrack("a.mp3", 10);
    engines.stage.take();
  }
  ProgramForms& forms() { return program().forms(); }
};

/// The buttons of a form that can be pressed.
Lines enabledButtons(const Form& form) {
  Lines names;
  for (const Control* control : form.controls())
    if (dynamic_cast<const Button*>(control) != nullptr && control->Enabled) names.push_back(control->name());
  return names;
}

/// The texts of a form in their order, but those of its lists.
Lines wordsOf(const Form& form) {
  Lines words{form.caption.get()};
  for (Control* control : form.controls()) {
    if (const auto* label = dynamic_cast<const Label*>(control)) words.push_back(label->Caption);
    if (const auto* frame = dynamic_cast<const Frame*>(control)) words.push_back(frame->Caption);
    if (const auto* button = dynamic_cast<const Button*>(control)) words.push_back(button->Caption);
    if (const auto* option = dynamic_cast<const OptionButton*>(control)) words.push_back(option->Caption);
    if (const auto* box = dynamic_cast<const CheckBox*>(control)) words.push_back(box->Caption);
  }
  return words;
}

Lines columnsOf(const ListView& list) {
  Lines names;
  for (const ListColumn& column : list.columns()) names.push_back(column.text);
  return names;
}

/// Presses Help and then the button that leaves; the form goes and asks for its own topic, and no engine is touched.
template <class T>
void checkHelpAndLeaving(Running& machine, FormSlot<T>& slot, std::int32_t topic, Button& leave) {
  slot->cmdHelp.click();
  REQUIRE(machine.help.calls.size() == 1);
  CHECK(machine.help.calls[0].command == 15);
  CHECK(machine.help.calls[0].data == topic);
  CHECK(machine.help.calls[0].target == machine.folder / "Trackloom.chm>main");
  leave.click();
  CHECK_FALSE(slot.exists());
  CHECK(machine.engines.stage.take().empty());
  CHECK(machine.desk.boxes.empty());
}

}  // namespace

TEST_CASE("frmOpenLayout opens with its words and nothing to open") {
  Running machine;
  auto& slot = machine.forms().layout.frmOpenLayout;
  CHECK(wordsOf(slot.get()) ==
        Lines{"Open CD Layout", "Open a Saved CD Layout", "&Open", "&Delete", "&Close", "&Help"});
  CHECK(columnsOf(slot->ListView1) == Lines{"Layout Name", "Tracks", "Time/Size", "Layout Style"});
  CHECK(enabledButtons(slot.get()) == Lines{"cmdCancel", "cmdHelp"});
  checkHelpAndLeaving(machine, slot, 81, slot->cmdCancel);
  CHECK(machine.mod().LayoutOpen);
}

TEST_CASE("frmFolder opens with its words and no track to put into a folder") {
  Running machine(Mp3Layout);
  auto& slot = machine.forms().layout.frmFolder;
  CHECK(wordsOf(slot.get()) == Lines{"MP3 CD Folder", "Define MP3 CD Folders",
                                     "Select tracks you want to apply this folder to:", "New Folder:", "&OK", "&Cancel",
                                     "&Help"});
  CHECK(columnsOf(slot->ListView1) == Lines{"Track Name"});
  CHECK(enabledButtons(slot.get()) == Lines{"cmdCancel", "cmdHelp"});
  checkHelpAndLeaving(machine, slot, 80, slot->cmdCancel);
}

TEST_CASE("frmChooseSort opens with its words") {
  Running machine(Mp3Layout);
  CHECK(wordsOf(machine.forms().layout.frmChooseSort.get()) ==
        Lines{"Choose Sort Type", "MP3 Layout Sorting",
              "You have MP3 layout sorting set to the No Sorting option.  For printing purposes, you will need to sort "
              "the current track listing in order to ensure the printing order is the same as your MP3 player playback "
              "order.  Choose a sort order below for printing.",
              "Sort current tracks by track name", "Sort current tracks by folder name", "&OK", "&Cancel"});
}

TEST_CASE("frmISO opens with its words and makes no image without a file") {
  Running machine(Mp3Layout);
  auto& slot = machine.forms().writing.frmISO;
  CHECK(wordsOf(slot.get()) == Lines{"Create MP3 CD ISO Image", "Create MP3 CD ISO Image",
                                     "Image Location, Name && Label", "Choose Location", "&Browse",
                                     "Volume Label:", "Image Creation Status", "", "Create &Image", "&Close", "&Help"});
  CHECK(enabledButtons(slot.get()) == Lines{"cmdCancel", "cmdHelp"});
  slot->txtImage.type("/tmp/x.iso");
  CHECK(slot->txtImage.Text == std::string());
  slot->txtLabel.type(std::string(32, 'x'));
  CHECK(slot->txtLabel.Text == std::string(31, 'x'));
  CHECK_FALSE(slot->cmdOK.Enabled);
  machine.mod().RecordConfirmed = true;
  checkHelpAndLeaving(machine, slot, 86, slot->cmdCancel);
  CHECK_FALSE(machine.mod().RecordConfirmed);
}

TEST_CASE("frmDiskInfo opens with its words, and closes no disc") {
  Running machine;
  auto& slot = machine.forms().writing.frmDiskInfo;
  CHECK(wordsOf(slot.get()) == Lines{"CD Information", "Inserted Disc Information", "&Close Last Incomplete Session",
                                     "C&lose Disc", "&OK", "&Help", ""});
  CHECK(enabledButtons(slot.get()) == Lines{"cmdOK", "cmdHelp"});
  CHECK_FALSE(slot->imgStatus.Visible);
  CHECK_FALSE(slot->Timer1.Enabled);
  CHECK(slot->Timer1.interval() == 2000);
  checkHelpAndLeaving(machine, slot, 76, slot->cmdOK);
}

TEST_CASE("frmErase opens with its words, the quick way chosen, and erases nothing") {
  Running machine;
  machine.engines.stage.disc->rewritable = true;
  auto& slot = machine.forms().writing.frmErase;
  CHECK(wordsOf(slot.get()) == Lines{"Erase CD", "Erase Rewritable Disc", "Erase Type", "Quick Erase Operation",
                                     "Full Erase Operation", "", "&OK", "&Cancel", "&Help"});
  CHECK(slot->optQuick.selected());
  CHECK(enabledButtons(slot.get()) == Lines{"cmdCancel", "cmdHelp"});
  CHECK(slot->Timer1.interval() == 2000);
  checkHelpAndLeaving(machine, slot, 82, slot->cmdCancel);
}

TEST_CASE("frmSearch opens with its words and the file types of the layout's kind") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Running machine(kind);
  auto& slot = machine.forms().search.frmSearch;
  CHECK(wordsOf(slot.get()) == Lines{"Search for Audio Files", "Search your Computer for Audio Files",
                                     "&Start Search Now", "Check All", "Clear All", "&Add Checked", "&Close", "&Help"});
  CHECK(columnsOf(slot->ListView1) == Lines{"Name", "Type", "Size", "Path"});
  Lines types;
  for (const ComboBox::Item& item : slot->Combo1.items()) types.push_back(item.text);
  CHECK(types == (kind == Mp3Layout ? Lines{"MP3 Files"} : Lines{"MP3 Files", "WAV Files", "All Audio Files"}));
  CHECK(slot->Combo1.Text() == "MP3 Files");
  CHECK(enabledButtons(slot.get()) == Lines{"cmdCancel", "cmdHelp"});
  checkHelpAndLeaving(machine, slot, 85, slot->cmdCancel);
}

TEST_CASE("frmReadStatus goes by itself, and says nothing of tracks it has not read") {
  Running machine;
  auto& slot = machine.forms().printing.frmReadStatus;
  CHECK(wordsOf(slot.get()) == Lines{"Reading Tracks", ""});
  slot->activated();
  CHECK_FALSE(slot.exists());
  CHECK(machine.engines.stage.take().empty());
}

TEST_CASE("frmPrintList opens with its words and prints no empty list") {
  Running machine;
  auto& slot = machine.forms().printing.frmPrintList;
  CHECK(wordsOf(slot.get()) ==
        Lines{"Print Current Layout Track Listing", "Print Current Layout Track Listing", "ID3 Tag Information",
              "&Edit Selected Track", "Print Properties", "Standard Print Formatting (8 1/2 x 11 Standard Page)",
              "Audio CD Print Formatting (Case Insert (Back Tray) Template)",
              "Print Title:", "Header Color:", "Listing Font:", "Size:", "&Print", "&Cancel", "&Help"});
  CHECK(columnsOf(slot->ListView1) == Lines{"#", "Artist", "Title"});
  Lines colours;
  for (const ComboBox::Item& item : slot->ImageCombo1.items()) colours.push_back(item.text);
  CHECK(colours == Lines{"Red", "Green", "Yellow", "Blue", "Magenta", "White", "Cyan"});
  CHECK(slot->ImageCombo1.Text() == "Blue");
  CHECK(slot->Combo2.Text() == "10");
  CHECK(slot->txtTitle.Text == std::string("Trackloom - Untitled Layout"));
  CHECK(slot->optAudio.selected());
  CHECK(slot->optStandard.Enabled);
  CHECK(enabledButtons(slot.get()) == Lines{"cmdCancel", "cmdHelp"});
  checkHelpAndLeaving(machine, slot, 88, slot->cmdCancel);
}

TEST_CASE("frmPrintList offers an MP3 layout no insert, and names the layout's file") {
  Running machine(Mp3Layout);
  machine.mod().LayoutFileName = "Summer mix.mixl";
  frmPrintList& form = machine.forms().printing.frmPrintList.get();
  CHECK_FALSE(form.optAudio.Enabled);
  CHECK(form.optStandard.selected());
  CHECK(form.txtTitle.Text == std::string("Trackloom - Summer mix"));
}

TEST_CASE("frmRipMain opens with its words and no drive to read") {
  Running machine;
  auto& slot = machine.forms().ripper.frmRipMain;
  CHECK(wordsOf(slot.get()) == Lines{"CD Ripper", "Trackloom CD Ripper for Ripping Audio Tracks", "Drive Selection",
                                     "Drive Choice", "Drive Speed", "&Read Drive", "Enable CDDB Online Database Lookup",
                                     "Contents of Selected Drive Disc", "Select &All", "Select &None",
                                     "&Extract Selected Tracks", "&Close", "&Help"});
  CHECK(columnsOf(slot->ListView2) == Lines{"Track Name", "Track Start", "Track End", "Track Length"});
  CHECK(slot->chkCDDB.Value);
  CHECK(slot->cboSpeeds.items().empty());
  CHECK(enabledButtons(slot.get()) == Lines{"cmdExit", "cmdHelp"});
  checkHelpAndLeaving(machine, slot, 90, slot->cmdExit);
}

TEST_CASE("frmAbout names program, version and licence") {
  Running machine;
  machine.desk.expectForm<frmAbout>("frmAbout", [](frmAbout& form) {
    CHECK(wordsOf(form) == Lines{"About Trackloom", "Trackloom", "Version 5.0",
                                 "Free software under the GNU General Public License, version 3 or later "
                                 "(GPL-3.0-or-later).",
                                 "&OK"});
    CHECK(form.Image1.Picture == std::string("About"));
    form.cmdOK.click();
  });
  machine.click("mnuHelpAbout");
  CHECK_FALSE(machine.session().frmImages.exists());
}

TEST_CASE("Every dialog copies its picture from frmImages when it loads, which is unloaded at once") {
  Running machine(Mp3Layout);
  ProgramForms& forms = machine.forms();
  const auto checkPicture = [&machine](auto& slot, const std::string& picture) {
    slot.unload();
    INFO(slot->name());
    CHECK(slot->Image1.Picture == picture);
    CHECK_FALSE(machine.session().frmImages.exists());
  };
  checkPicture(forms.shell.frmAbout, "About");
  checkPicture(forms.shell.frmDefaultOptions, "DefaultOptions");
  checkPicture(forms.layout.frmNewOption, "NewLayout");
  checkPicture(forms.layout.frmFiles, "Files");
  checkPicture(forms.layout.frmSave, "Save");
  checkPicture(forms.layout.frmOpenLayout, "OpenLayout");
  checkPicture(forms.layout.frmFolder, "Folder");
  checkPicture(forms.layout.frmChooseSort, "Sort");
  checkPicture(forms.writing.frmOptions, "Options");
  checkPicture(forms.writing.frmStatus, "Status");
  checkPicture(forms.writing.frmDone, "Done");
  checkPicture(forms.writing.frmError, "Error");
  checkPicture(forms.writing.frmISO, "ISO");
  checkPicture(forms.writing.frmDiskInfo, "DiskInfo");
  checkPicture(forms.writing.frmErase, "Erase");
  checkPicture(forms.search.frmSearch, "Search");
  checkPicture(forms.printing.frmReadStatus, "Tags");
  checkPicture(forms.printing.frmPrintList, "Print");
  checkPicture(forms.ripper.frmRipMain, "Ripper");
  checkPicture(forms.shell.frmNOCD, "NoDrive");
}

TEST_CASE("Each of these windows has one button for Esc") {
  Running machine(Mp3Layout);
  ProgramForms& forms = machine.forms();
  const std::vector<Form*> windows{
      &forms.layout.frmOpenLayout.get(), &forms.layout.frmFolder.get(),       &forms.layout.frmChooseSort.get(),
      &forms.writing.frmISO.get(),       &forms.writing.frmDiskInfo.get(),    &forms.writing.frmErase.get(),
      &forms.search.frmSearch.get(),     &forms.printing.frmPrintList.get(),  &forms.ripper.frmRipMain.get(),
      &forms.shell.frmAbout.get(),       &forms.shell.frmDefaultOptions.get()};
  for (const Form* form : windows) {
    INFO(form->name());
    int cancelling = 0;
    for (const Control* control : form->controls())
      if (const auto* button = dynamic_cast<const Button*>(control)) cancelling += button->Cancel ? 1 : 0;
    CHECK(cancelling == 1);
  }
}

}  // namespace trackloom
