#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "model/MainBars.h"

namespace trackloom {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// Lets the program hear a click on a tool of this name, whether or not a bar has it.
void dispatch(Machine& machine, const std::string& name) {
  ToolDesign design;
  design.name = name;
  Tool tool(design);
  machine.window().DockStudio1.ToolClick(tool);
}

/// A machine with a changed MP3 layout of one track that has a file, and no disc in the drive any more.
class Desk : public Machine {
 public:
  Desk() {
    folder.write("Trackloom.chm", "help");
    startQuietly();
    newLayout(Mp3Layout);
    addTrack("a.mp3", 1000);
    window().ListView1.SelectRow(1);
    mod().LayoutHasFile = true;
    mod().LayoutFileName = "mix.mixl";
    mod().Options.PromptSave = 0;
    engines.stage.disc.reset();
    engines.stage.take();
    desk.transcript.clear();
  }

  /// What the click brings about: windows and boxes as they come, then what has changed.
  Lines effectOf(const std::string& tool, const Lines& announced) {
    for (const std::string& line : announced) announce(line);
    const auto end = endOf([&] { dispatch(*this, tool); });
    if (end) return {"end " + std::to_string(*end)};
    Lines lines;
    for (const std::string& line : desk.transcript)
      if (line.rfind("unload", 0) != 0) lines.push_back(line);
    for (const MessageBox& box : desk.boxes) lines.push_back("box " + box.title);
    if (!mod().LayoutOpen) lines.push_back("closed");
    if (mod().LayoutSaved) lines.push_back("saved");
    for (const auto& call : help.calls) lines.push_back("help " + std::to_string(call.command));
    for (const auto& order : opener.orders) {
      const bool ours = order.file.rfind(folder / "", 0) == 0;
      lines.push_back("open " + (ours ? order.file.substr((folder / "").size()) : order.file));
    }
    for (const std::string& call : engines.stage.take())
      if (call == "CDR1.EjectDisc") lines.push_back("eject");
    return lines;
  }

 private:
  void announce(const std::string& line) {
    if (line.rfind("modal ", 0) == 0) desk.expectForm<Form>(line.substr(6), [](Form& form) { form.closeBox(); });
    if (line.rfind("box ", 0) == 0) desk.expectBox(line.substr(4), BoxAnswer::Cancel);
  }
};

struct TableRow {
  Lines names;
  Lines effect;
};

/// The command table: the toolbar's and the menu's name of each command, and what it shows and does on a Desk.
const std::vector<TableRow> commandTable{
    {{"New", "mnuFileNew"}, {"modal frmNewOption", "closed"}},
    {{"AddFiles", "mnuActionsAdd"}, {"modal frmFiles"}},
    {{"Delete", "mnuActionsDelete"}, {"box Remove Track"}},
    {{"mnuFileClose"}, {"closed", "saved"}},
    {{"mnuFileExit"}, {"end 0"}},
    {{"ShowAll"}, {"modal frmFolder"}},
    {{"ShowNoFolder"}, {"modal frmFolder"}},
    {{"mainHelp", "mnuHelpContents"}, {"help 1"}},
    {{"Erase", "mnuToolsErase"}, {"modal frmErase"}},
    {{"Ripper", "mnuToolsRipper"}, {"hide frmListing", "show frmRipMain"}},
    {{"Open", "mnuFileOpen"}, {"modal frmOpenLayout", "closed"}},
    {{"mnuFileWrite"}, {"box Media Not Loaded"}},
    {{"mnuFileSave"}, {"saved"}},
    {{"mnuFileSaveAs"}, {"modal frmSave"}},
    {{"mnuToolsInformation"}, {"box No CD"}},
    {{"Search", "mnuActionsSearch"}, {"modal frmSearch"}},
    {{"mnuToolsEject"}, {"eject"}},
    {{"mnuHelpAbout"}, {"modal frmAbout"}},
    {{"mnuToolsOptions"}, {"modal frmDefaultOptions"}},
    {{"mnuHelpWeb"}, {"open https://trackloom.example/"}},
    {{"mnuActionsPlay"}, {"open music/a.mp3"}},
    {{"Print", "mnuFilePrint"}, {"modal frmReadStatus", "modal frmPrintList"}},
    {{"mnuActionsCreate"}, {"modal frmISO"}},
    {{"Record", "mnuActionsRecord"}, {"box Media Not Loaded"}},
};

Lines statesOf(Machine& machine) {
  Lines states;
  for (const ToolDesign& design : mainTools())
    states.push_back(design.name + (machine.enabled(design.name) ? " on" : " off"));
  return states;
}

template <class T>
void cancel(Machine& machine, const std::string& name) {
  machine.desk.expectForm<T>(name, [](T& form) { form.cmdCancel.click(); });
}

}  // namespace

TEST_CASE("Each of the 24 commands answers to its names and to no other command's") {
  CHECK(commandTable.size() == 24);
  for (const TableRow& row : commandTable) {
    for (const std::string& name : row.names) {
      INFO(name);
      Desk machine;
      CHECK(machine.effectOf(name, row.effect) == row.effect);
      CHECK(machine.desk.finished());
    }
  }
}

TEST_CASE("Names in no row do nothing, and case counts") {
  for (const char* name : {"CDFolder", "mnuActionsFolder", "mnuFile", "mnuActions", "mnuTools", "mnuHelp", "panel1",
                           "cboMainDrive", "new", "NEW", "mnufilenew", "MnuFileNew", "New ", "record", ""}) {
    INFO(name);
    Desk machine;
    CHECK(machine.effectOf(name, {}) == Lines());
  }
}

TEST_CASE("E009: Without a layout but with a disc the disc commands are on and the layout group is off") {
  Machine machine;
  machine.startQuietly();
  for (const char* tool : {"mnuToolsErase", "mnuToolsInformation", "mnuFileWrite"}) CHECK(machine.enabled(tool));
  for (const char* tool : {"AddFiles", "mnuActionsAdd", "Search", "mnuActionsSearch", "mnuFileClose", "mnuFileSave",
                           "mnuFileSaveAs", "Record", "mnuActionsRecord", "Delete", "mnuActionsDelete", "Print",
                           "mnuFilePrint", "mnuActionsPlay", "CDFolder", "mnuActionsFolder", "mnuActionsCreate"}) {
    INFO(tool);
    CHECK_FALSE(machine.enabled(tool));
  }
}

TEST_CASE(
    "E010: On an empty layout adding, searching and saving are on, while recording, printing and deleting are off") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Machine machine;
  machine.startQuietly();
  machine.newLayout(kind);
  for (const char* tool : {"AddFiles", "mnuActionsAdd", "Search", "mnuActionsSearch", "mnuFileSave"})
    CHECK(machine.enabled(tool));
  for (const char* tool :
       {"Record", "mnuActionsRecord", "Print", "mnuFilePrint", "Delete", "mnuActionsDelete", "mnuActionsCreate"})
    CHECK_FALSE(machine.enabled(tool));
  cancel<frmSave>(machine, "frmSave");
  machine.click("mnuFileSave");
  CHECK(machine.desk.finished());
}

TEST_CASE("E011: An audio layout with tracks makes no ISO image, an MP3 layout does") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  CHECK(machine.enabled("mnuActionsRecord"));
  CHECK_FALSE(machine.enabled("mnuActionsCreate"));

  machine.mod().Options.PromptSave = 0;
  machine.newLayout(Mp3Layout);
  machine.addTrack("a.mp3", 1000);
  CHECK(machine.enabled("mnuActionsCreate"));
}

TEST_CASE("E012: Yes at New's close question and then Cancel in frmSave loses the layout") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.desk.expectBox("Save Layout", BoxAnswer::Yes);
  cancel<frmSave>(machine, "frmSave");
  cancel<frmNewOption>(machine, "frmNewOption");
  machine.click("New");
  CHECK(machine.desk.finished());
  CHECK(machine.desk.lastBox().buttons == BoxButtons::YesNo);
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.cdr1().audioQueue.empty());
  CHECK(std::filesystem::is_empty(machine.folder / "Layouts"));
}

TEST_CASE("E013: Cancel in frmNewOption after New leaves no layout, and the old one is gone") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  machine.addTrack("a.mp3", 1000);
  machine.desk.expectBox("Save Layout", BoxAnswer::No);
  cancel<frmNewOption>(machine, "frmNewOption");
  machine.click("mnuFileNew");
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.mod().LayoutType == Mp3Layout);
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.window().ListView1.columns().size() == 3);
  CHECK_FALSE(machine.enabled("AddFiles"));
}

TEST_CASE("E014: ShowNoFolder where every row has a folder says so, and frmFolder stays closed") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  machine.addTrack("a.mp3", 10);
  machine.addTrack("b.mp3", 10);
  for (const int row : {1, 2}) machine.window().ListView1.SetSubItem(row, 3, "\\Rock");
  machine.desk.expectBox("Entries", BoxAnswer::Ok);
  machine.click("ShowNoFolder");
  CHECK(machine.desk.lastBox().text ==
        "There are no tracks in your listing with a No Folder entry to display.\r\n\r\nSelect the Show All Entries "
        "option to list all items.");
  CHECK(machine.desk.lastBox().buttons == BoxButtons::Ok);
  CHECK(machine.desk.lastBox().icon == BoxIcon::Information);
  CHECK_FALSE(machine.program().forms().layout.frmFolder.exists());
  CHECK(machine.mod().ShowNoFolderOnly == 0);

  machine.window().ListView1.SetSubItem(2, 3, "No Folder");
  cancel<frmFolder>(machine, "frmFolder");
  machine.click("ShowNoFolder");
  CHECK(machine.mod().ShowNoFolderOnly == 1);
  cancel<frmFolder>(machine, "frmFolder");
  machine.click("ShowAll");
  CHECK(machine.mod().ShowNoFolderOnly == 0);
}

TEST_CASE("E015: Save As on a layout that never had a file leaves txtName as the dialog set it") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.desk.expectForm<frmSave>("frmSave", [](frmSave& form) {
    CHECK(form.txtName.Text == std::string());
    CHECK_FALSE(form.cmdOK.Enabled);
    form.cmdCancel.click();
  });
  machine.click("mnuFileSaveAs");
  CHECK(machine.desk.finished());
}

TEST_CASE("E016: Print on an unsorted MP3 layout, cancelled in frmChooseSort, goes no further") {
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.SortMode = 2;
  machine.newLayout(Mp3Layout);
  machine.addTrack("b.mp3", 10);
  machine.addTrack("a.mp3", 10);
  machine.desk.transcript.clear();
  cancel<frmChooseSort>(machine, "frmChooseSort");
  machine.click("Print");
  CHECK(machine.desk.transcript == Lines{"modal frmChooseSort", "unload frmChooseSort"});
  CHECK(machine.mod().SortChoiceCancelled);
  CHECK(machine.window().ListView1.Item(1).Text == "b.mp3");
}

TEST_CASE("E017: A failing eject says so and changes nothing else") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.engines.stage.ejectFails = true;
  const Lines before = statesOf(machine);
  machine.engines.stage.take();
  machine.desk.expectBox("Eject", BoxAnswer::Ok);
  machine.click("mnuToolsEject");
  CHECK(machine.desk.lastBox().text == "Unable to Eject CD");
  CHECK(machine.desk.lastBox().ofFailure);
  CHECK(machine.desk.lastBox().buttons == BoxButtons::Ok);
  CHECK(machine.desk.lastBox().icon == BoxIcon::Exclamation);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.EjectDisc"});
  CHECK(statesOf(machine) == before);
  CHECK(machine.window().ListView1.Count() == 1);
}

TEST_CASE("After a good eject the disc commands keep their state until the Tools menu opens") {
  Machine machine;
  machine.startQuietly();
  machine.click("mnuToolsEject");
  CHECK(machine.enabled("mnuToolsErase"));
  machine.window().DockStudio1.openMenu("mnuTools");
  CHECK_FALSE(machine.enabled("mnuToolsErase"));
}

TEST_CASE("A sort choice sorts the rows for printing, which stay so while the listing is unsorted again") {
  const bool byName = GENERATE(true, false);
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.SortMode = 2;
  machine.newLayout(Mp3Layout);
  machine.addTrack("b.mp3", 10);
  machine.addTrack("a.mp3", 10);
  machine.addTrack("c.mp3", 10);
  machine.window().ListView1.SetSubItem(1, 3, "\\Rock");
  machine.desk.expectForm<frmChooseSort>("frmChooseSort", [byName](frmChooseSort& form) {
    (byName ? form.optName : form.optFolder).click();
    form.cmdOK.click();
  });
  machine.desk.expectForm<frmReadStatus>("frmReadStatus", [](frmReadStatus& form) { form.activated(); });
  machine.desk.expectForm<frmPrintList>("frmPrintList", [&](frmPrintList& form) {
    CHECK(machine.window().ListView1.Sorted());
    CHECK(machine.window().ListView1.SortKey() == (byName ? 0 : 3));
    form.cmdCancel.click();
  });
  machine.click("Print");
  CHECK(machine.desk.finished());
  CHECK_FALSE(machine.window().ListView1.Sorted());
  Lines names;
  for (int row = 1; row <= 3; ++row) names.push_back(machine.window().ListView1.Item(row).Text);
  CHECK(names == (byName ? Lines{"a.mp3", "b.mp3", "c.mp3"} : Lines{"a.mp3", "c.mp3", "b.mp3"}));
}

TEST_CASE("The close box of frmChooseSort is no Cancel, and an earlier Cancel is forgotten") {
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.SortMode = 2;
  machine.newLayout(Mp3Layout);
  machine.addTrack("b.mp3", 10);
  cancel<frmChooseSort>(machine, "frmChooseSort");
  machine.click("Print");
  machine.desk.expectForm<frmChooseSort>("frmChooseSort", [](frmChooseSort& form) { form.closeBox(); });
  machine.desk.expectForm<frmReadStatus>("frmReadStatus", [](frmReadStatus& form) { form.activated(); });
  cancel<frmPrintList>(machine, "frmPrintList");
  machine.click("Print");
  CHECK(machine.desk.finished());
}

TEST_CASE("An audio layout and a sorted MP3 layout are printed without a sort choice") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Machine machine;
  machine.startQuietly();
  machine.mod().Options.SortMode = kind == AudioLayout ? 2 : 1;
  machine.newLayout(kind);
  machine.addTrack("a.mp3", 10);
  machine.desk.transcript.clear();
  machine.desk.expectForm<frmReadStatus>("frmReadStatus", [](frmReadStatus& form) { form.activated(); });
  cancel<frmPrintList>(machine, "frmPrintList");
  machine.click("mnuFilePrint");
  CHECK(machine.desk.transcript == Lines{"modal frmReadStatus", "repaint Label1", "unload frmReadStatus",
                                         "modal frmPrintList", "unload frmPrintList"});
}

TEST_CASE("Open closes the old layout before it shows the saved ones, and leaves LayoutSaved alone") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.desk.expectBox("Save Layout", BoxAnswer::No);
  machine.desk.expectForm<frmOpenLayout>("frmOpenLayout", [&](frmOpenLayout& form) {
    CHECK_FALSE(machine.mod().LayoutOpen);
    CHECK(machine.window().ListView1.Count() == 0);
    form.cmdCancel.click();
  });
  machine.click("Open");
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK_FALSE(machine.mod().LayoutSaved);
  CHECK_FALSE(machine.window().ListView1.Enabled);
  CHECK(machine.window().panel1.Text == std::string());
  CHECK(machine.window().panel2.Text == std::string("ACME Writer (D:)"));
}

TEST_CASE("A closed layout takes its file with it, so the next one asks for a name") {
  Desk machine;
  machine.engines.stage.disc = fakes::FakeDisc{};
  machine.newLayout(AudioLayout);
  CHECK(machine.mod().LayoutFileName.empty());
  cancel<frmSave>(machine, "frmSave");
  machine.click("mnuFileSave");
  CHECK(machine.desk.finished());
}

TEST_CASE("The ripper takes the main window's place until it is closed") {
  Machine machine;
  machine.startQuietly();
  machine.desk.transcript.clear();
  machine.click("mnuToolsRipper");
  CHECK_FALSE(machine.window().visible());
  machine.program().forms().ripper.frmRipMain->cmdExit.click();
  CHECK(machine.window().visible());
  CHECK(machine.desk.transcript == Lines{"hide frmListing", "show frmRipMain", "show frmListing", "unload frmRipMain"});
}

TEST_CASE("With a disc in the drive its information is shown, and a closed one takes no image") {
  Machine machine;
  machine.startQuietly();
  machine.desk.expectForm<frmDiskInfo>("frmDiskInfo", [](frmDiskInfo& form) { form.cmdOK.click(); });
  machine.click("mnuToolsInformation");
  machine.desk.expectFile(std::nullopt);
  machine.click("mnuFileWrite");
  CHECK(machine.desk.boxes.empty());

  machine.engines.stage.disc->status = DiscClosed;
  machine.desk.expectBox("Closed Disc", BoxAnswer::Ok);
  machine.click("mnuFileWrite");
  CHECK(machine.desk.lastBox().text ==
        "The inserted disc in the selected drive is closed for further writing.  This disc cannot be used.\r\n\r\n"
        "Please insert a new disc and choose the Record ISO option again when ready.");
  machine.engines.stage.disc.reset();
  machine.desk.expectBox("Media Not Loaded", BoxAnswer::Ok);
  machine.click("mnuFileWrite");
  CHECK(machine.desk.lastBox().text ==
        "Please insert a CDR or CDRW disc into the chosen drive and select the Record ISO option again when ready.");
  machine.desk.expectBox("No CD", BoxAnswer::Ok);
  machine.click("mnuToolsInformation");
  CHECK(machine.desk.lastBox().text == "There is no CD in the selected CD drive.");
  CHECK(machine.desk.lastBox().icon == BoxIcon::Exclamation);
}

TEST_CASE("The meter follows the removal of a track at once") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 1000);
  machine.addTrack("b.mp3", 500);
  machine.window().ListView1.SelectRow(1);
  machine.desk.expectBox("Remove Track", BoxAnswer::Ok);
  machine.click("Delete");
  CHECK(machine.window().Progress1.Value == 650);
  CHECK(machine.window().Progress1.Text == std::string("650 Blocks of 359,849 Blocks  (0% of CD Used)"));
  CHECK(machine.window().panel3.Text == std::string("Layout Time:  00:08:50 - Disc Time:  79:57:74 "));
}

TEST_CASE("A track and the web page are opened by the desktop's own program, with nothing for it but their names") {
  Machine machine;
  machine.startQuietly();
  machine.newLayout(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.window().ListView1.SelectRow(1);
  machine.click("mnuActionsPlay");
  machine.click("mnuHelpWeb");
  REQUIRE(machine.opener.orders.size() == 2);
  CHECK(machine.opener.orders[0].file == machine.folder / "music/a.mp3");
  for (const ShellOrder& order : machine.opener.orders) {
    CHECK(order.verb == "open");
    CHECK(order.parameters == "0");
    CHECK(order.folder == "0");
    CHECK(order.showCommand == 1);
  }
}

}  // namespace trackloom
