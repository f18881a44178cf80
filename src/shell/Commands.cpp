#include "shell/Commands.h"

#include <algorithm>
#include <utility>

#include "help/HelpLaunch.h"
#include "layout/LayoutOpening.h"
#include "layout/TrackRemoval.h"
#include "model/Capacity.h"
#include "model/CommandStates.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "shell/LayoutClosing.h"
#include "shell/ProgramForms.h"
#include "writing/DiscTools.h"
#include "writing/RecordFlow.h"

namespace trackloom {

namespace {

constexpr const char* WebPage = "https://trackloom.example/";
constexpr int ShowNormal = 1;
constexpr const char* ExitTool = "mnuFileExit";

bool hasTrackWithoutFolder(const ListView& listing) {
  for (int row = 1; row <= listing.Count(); ++row)
    if (listing.SubItem(row, FolderColumn) == NoFolder) return true;
  return false;
}

}  // namespace

/// What a command does when it comes inside of a batch that runs with the main window open.
enum class Commands::Inside {
  Runs,
  /// It uses the listing whole, and waits for the batch to end.
  WaitsForEnd,
  /// Its save question would cut a layout file to the rows read so far, and waits until all have been.
  WaitsForOpening
};

/// A row of the command table: the toolbar's and the menu's name for one command, each may be missing.
struct Commands::Row {
  const char* toolbarName;
  const char* menuName;
  void (Commands::*action)();
  Inside insideBatch = Inside::Runs;
};

const Commands::Row Commands::table[] = {
    {"New", "mnuFileNew", &Commands::newLayout, Inside::WaitsForOpening},
    {"AddFiles", "mnuActionsAdd", &Commands::addFiles},
    {"Delete", "mnuActionsDelete", &Commands::removeTrack},
    {nullptr, "mnuFileClose", &Commands::closeLayout, Inside::WaitsForOpening},
    {nullptr, ExitTool, &Commands::exit, Inside::WaitsForOpening},
    {"ShowAll", nullptr, &Commands::showAllTracks},
    {"ShowNoFolder", nullptr, &Commands::showTracksWithoutFolder},
    {"mainHelp", "mnuHelpContents", &Commands::help},
    {"Erase", "mnuToolsErase", &Commands::eraseDisc},
    {"Ripper", "mnuToolsRipper", &Commands::openRipper},
    {"Open", "mnuFileOpen", &Commands::openLayout, Inside::WaitsForOpening},
    {nullptr, "mnuFileWrite", &Commands::writeIsoImage, Inside::WaitsForEnd},
    {nullptr, "mnuFileSave", &Commands::save, Inside::WaitsForEnd},
    {nullptr, "mnuFileSaveAs", &Commands::saveAs, Inside::WaitsForEnd},
    {nullptr, "mnuToolsInformation", &Commands::showDiscInfo},
    {"Search", "mnuActionsSearch", &Commands::search},
    {nullptr, "mnuToolsEject", &Commands::ejectDisc},
    {nullptr, "mnuHelpAbout", &Commands::about},
    {nullptr, "mnuToolsOptions", &Commands::defaultOptions},
    {nullptr, "mnuHelpWeb", &Commands::OpenWebSite},
    {nullptr, "mnuActionsPlay", &Commands::PlaySelectedTrack},
    {"Print", "mnuFilePrint", &Commands::print, Inside::WaitsForEnd},
    {nullptr, "mnuActionsCreate", &Commands::createIsoImage, Inside::WaitsForEnd},
    {"Record", "mnuActionsRecord", &Commands::record, Inside::WaitsForEnd},
};

const Commands::Row* Commands::rowOf(const std::string& tool) {
  const auto bears = [&](const char* name) { return name != nullptr && tool == name; };
  for (const Row& row : table)
    if (bears(row.toolbarName) || bears(row.menuName)) return &row;
  return nullptr;
}

void Commands::dispatch(const std::string& tool) {
  const Row* row = rowOf(tool);
  if (row != nullptr && !keeps(*row, tool)) (this->*row->action)();
}

bool Commands::keepsExit() {
  return keeps(*rowOf(ExitTool), ExitTool);
}

bool Commands::mustWait(const Row& row) const {
  const RunningBatches& batches = session_.batches;
  if (row.insideBatch == Inside::WaitsForEnd) return batches.any();
  return row.insideBatch == Inside::WaitsForOpening && batches.openings > 0 && !session_.mod.LayoutSaved;
}

bool Commands::keeps(const Row& row, const std::string& tool) {
  if (!mustWait(row)) return false;
  const auto same = [&](const Kept& other) { return other.row == &row; };
  if (std::none_of(kept_.begin(), kept_.end(), same)) kept_.push_back({&row, tool, session_.batches.layoutsClosed});
  return true;
}

void Commands::runKept() {
  if (session_.batches.any()) return;
  for (const Kept& command : std::exchange(kept_, {}))
    if (stillMeant(command)) dispatch(command.tool);
}

bool Commands::stillMeant(const Kept& command) const {
  ListingWindow& window = session_.frmListing();
  const bool sameLayout = session_.mod.LayoutOpen && session_.batches.layoutsClosed == command.layout;
  return sameLayout && window.visible() && window.takesInput() && window.DockStudio1.tool(command.tool).Enabled;
}

template <class T>
void Commands::showModal(FormSlot<T>& form) {
  form->showModal(&session_.frmListing());
}

void Commands::resize() {
  ListingWindow& window = session_.frmListing();
  const ClientRect& area = window.DockStudio1.ClientArea();
  ListView& listing = window.ListView1;
  listing.Width = area.width;
  listing.Height = area.height;
  constexpr double Mp3Shares[] = {2.7, 3.3, 7, 7};
  constexpr double AudioShares[] = {2.2, 3.5, 6.5};
  const bool four = isMp3Layout(session_);
  const auto columns = static_cast<int>(listing.columns().size());
  // Between two layouts the kind is still that of the last one while the fourth column is gone.
  for (int column = 1; column <= columns && column <= (four ? 4 : 3); ++column)
    listing.SetColumnWidth(column, listing.Width / (four ? Mp3Shares : AudioShares)[column - 1]);
  window.Progress1.Width = window.DockStudio1.Width();
}

void Commands::newLayout() {
  closeQuestion(session_, forms_.layout);
  CloseLayout(session_);
  // Only the showing at start-up offers not to be shown again.
  forms_.layout.frmNewOption->chkNoShow.Visible = false;
  showModal(forms_.layout.frmNewOption);
  resize();
  UpdateCapacityDisplay(session_);
}

void Commands::addFiles() {
  showModal(forms_.layout.frmFiles);
  UpdateCapacityDisplay(session_);
}

void Commands::removeTrack() {
  RemoveTrack(session_);
  UpdateCapacityDisplay(session_);
  UpdateCommandStates(session_);
}

void Commands::closeLayout() {
  closeQuestion(session_, forms_.layout);
  CloseLayout(session_);
  session_.mod.LayoutSaved = true;
}

void Commands::exit() {
  session_.frmListing().unload();
}

void Commands::showAllTracks() {
  session_.mod.ShowNoFolderOnly = 0;
  showModal(forms_.layout.frmFolder);
  UpdateCapacityDisplay(session_);
}

void Commands::showTracksWithoutFolder() {
  if (!hasTrackWithoutFolder(session_.frmListing().ListView1)) {
    session_.ask({"Entries",
                  std::string("There are no tracks in your listing with a No Folder entry to display.") +
                      ParagraphBreak + "Select the Show All Entries option to list all items.",
                  BoxButtons::Ok, BoxIcon::Information});
    return;
  }
  session_.mod.ShowNoFolderOnly = 1;
  showModal(forms_.layout.frmFolder);
  UpdateCapacityDisplay(session_);
}

void Commands::help() {
  showHelpContents(session_);
}

void Commands::eraseDisc() {
  showModal(forms_.writing.frmErase);
}

void Commands::openRipper() {
  session_.frmListing().hide();
  forms_.ripper.frmRipMain->show();
}

void Commands::openLayout() {
  closeQuestion(session_, forms_.layout);
  CloseLayout(session_);
  showModal(forms_.layout.frmOpenLayout);
  if (session_.mod.LayoutFileName.empty()) return;
  session_.frmListing().ListView1.Enabled = true;
  if (!OpenLayout(session_, forms_.layout)) CloseLayout(session_);
  runKept();
}

void Commands::writeIsoImage() {
  WriteISOImage(session_, forms_.writing);
}

void Commands::save() {
  saveOrAskName(session_, forms_.layout);
}

void Commands::saveAs() {
  if (session_.mod.LayoutHasFile) forms_.layout.frmSave->suggest(layoutName(session_.mod.LayoutFileName));
  showModal(forms_.layout.frmSave);
}

void Commands::showDiscInfo() {
  ShowDiscInfo(session_, forms_.writing);
}

void Commands::search() {
  showModal(forms_.search.frmSearch);
  UpdateCapacityDisplay(session_);
}

void Commands::ejectDisc() {
  if (!session_.frmListing().CDR1->EjectDisc())
    session_.ask({.title = "Eject", .text = "Unable to Eject CD", .ofFailure = true});
}

void Commands::about() {
  showModal(forms_.shell.frmAbout);
}

void Commands::defaultOptions() {
  showModal(forms_.shell.frmDefaultOptions);
}

void Commands::OpenWebSite() {
  session_.ports.opener.open({"open", WebPage, "0", "0", ShowNormal});
}

void Commands::PlaySelectedTrack() {
  const ListView& listing = session_.frmListing().ListView1;
  if (listing.Count() == 0) return;
  skipOnError([&] {
    const HostPath track = sourcePath(listing, listing.SelectedRow());
    session_.ports.opener.open({"open", track.text, "0", "0", ShowNormal});
  });
}

void Commands::print() {
  Trackloom50Mod1& mod = session_.mod;
  if (isMp3Layout(session_) && mod.Options.SortMode == NoSorting) {
    mod.SortChoiceCancelled = false;
    showModal(forms_.layout.frmChooseSort);
    if (mod.SortChoiceCancelled) return;
  }
  showModal(forms_.printing.frmReadStatus);
  showModal(forms_.printing.frmPrintList);
}

void Commands::createIsoImage() {
  showModal(forms_.writing.frmISO);
}

void Commands::record() {
  PrepareRecord(session_, forms_.writing);
  if (session_.mod.RecordConfirmed) StartDiscWrite(session_, forms_.writing);
}

}  // namespace trackloom
