#include "shell/Commands.h"

#include "help/HelpLaunch.h"
#include "layout/LayoutFile.h"
#include "layout/TrackRemoval.h"
#include "model/Capacity.h"
#include "model/CommandStates.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "shell/ProgramForms.h"
#include "writing/RecordFlow.h"

namespace trackloom {

namespace {

constexpr const char* WebPage = "https://trackloom.example/";
constexpr int ShowNormal = 1;

}  // namespace

/// A row of the command table: the toolbar's and the menu's name for one command, each may be missing.
struct Commands::Row {
  const char* toolbarName;
  const char* menuName;
  void (Commands::*action)();
};

const Commands::Row Commands::table[] = {
    {"New", "mnuFileNew", &Commands::newLayout},
    {"AddFiles", "mnuActionsAdd", &Commands::addFiles},
    {"Delete", "mnuActionsDelete", &Commands::removeTrack},
    {nullptr, "mnuFileClose", &Commands::closeLayout},
    {nullptr, "mnuFileExit", &Commands::exit},
    {"mainHelp", "mnuHelpContents", &Commands::help},
    {nullptr, "mnuFileSave", &Commands::saveOrAskName},
    {nullptr, "mnuFileSaveAs", &Commands::saveAs},
    {nullptr, "mnuToolsEject", &Commands::ejectDisc},
    {nullptr, "mnuHelpWeb", &Commands::OpenWebSite},
    {nullptr, "mnuActionsPlay", &Commands::PlaySelectedTrack},
    {"Record", "mnuActionsRecord", &Commands::record},
};

void Commands::dispatch(const std::string& tool) {
  const auto bears = [&](const char* name) { return name != nullptr && tool == name; };
  for (const Row& row : table) {
    if (!bears(row.toolbarName) && !bears(row.menuName)) continue;
    (this->*row.action)();
    return;
  }
}

void Commands::closeQuestion() {
  if (session_.mod.Options.PromptSave == 1) PromptSaveLayout();
}

void Commands::PromptSaveLayout() {
  const ListView& listing = session_.frmListing().ListView1;
  if (session_.mod.LayoutSaved || (listing.Count() == 0 && session_.mod.LayoutFileName.empty())) return;
  const BoxAnswer answer =
      session_.ask({"Save Layout", "Save the currently open layout?", BoxButtons::YesNo, BoxIcon::Question});
  if (answer == BoxAnswer::Yes) saveOrAskName();
}

void Commands::saveOrAskName() {
  if (session_.mod.LayoutHasFile)
    SaveLayout(session_);
  else
    forms_.layout.frmSave->showModal(&session_.frmListing());
}

void Commands::saveAs() {
  const std::string& file = session_.mod.LayoutFileName;
  if (session_.mod.LayoutHasFile) forms_.layout.frmSave->suggest(Left(file, Len(file) - Len(LayoutExtension)));
  forms_.layout.frmSave->showModal(&session_.frmListing());
}

void Commands::CloseLayout() {
  ListingWindow& window = session_.frmListing();
  window.ListView1.Clear();
  window.ListView1.Enabled = false;
  window.panel1.Text = "";
  window.panel3.Text = "";
  window.Progress1.Text = "";
  window.Progress1.Value = 0;
  window.CDR1->ClearAudioQueue();
  window.CDR1->ClearDataQueue();
  session_.mod.LayoutOpen = false;
  session_.mod.LayoutHasFile = false;
  session_.mod.LayoutFileName.clear();
  if (session_.mod.LayoutType == Mp3Layout && window.ListView1.columns().size() == 4) window.ListView1.RemoveColumn(4);
  UpdateCommandStates(session_);
}

void Commands::resize() {
  ListingWindow& window = session_.frmListing();
  const ClientRect& area = window.DockStudio1.ClientArea();
  ListView& listing = window.ListView1;
  listing.Width = area.width;
  listing.Height = area.height;
  constexpr double Mp3Shares[] = {2.7, 3.3, 7, 7};
  constexpr double AudioShares[] = {2.2, 3.5, 6.5};
  const bool four = session_.mod.LayoutType > AudioLayout;
  const auto columns = static_cast<int>(listing.columns().size());
  // Between two layouts the kind is still that of the last one while the fourth column is gone.
  for (int column = 1; column <= columns && column <= (four ? 4 : 3); ++column)
    listing.SetColumnWidth(column, listing.Width / (four ? Mp3Shares : AudioShares)[column - 1]);
  window.Progress1.Width = window.DockStudio1.Width();
}

void Commands::newLayout() {
  closeQuestion();
  CloseLayout();
  // Only the showing at start-up offers not to be shown again.
  forms_.layout.frmNewOption->chkNoShow.Visible = false;
  forms_.layout.frmNewOption->showModal(&session_.frmListing());
  resize();
  UpdateCapacityDisplay(session_);
}

void Commands::addFiles() {
  forms_.layout.frmFiles->showModal(&session_.frmListing());
  UpdateCapacityDisplay(session_);
}

void Commands::removeTrack() {
  RemoveTrack(session_);
  UpdateCapacityDisplay(session_);
  UpdateCommandStates(session_);
}

void Commands::closeLayout() {
  closeQuestion();
  CloseLayout();
  session_.mod.LayoutSaved = true;
  UpdateCapacityDisplay(session_);
}

void Commands::exit() {
  session_.frmListing().unload();
}

void Commands::help() {
  showHelpContents(session_);
}

void Commands::ejectDisc() {
  if (!session_.frmListing().CDR1->EjectDisc()) session_.ask({"Eject", "Unable to Eject CD"});
}

void Commands::PlaySelectedTrack() {
  const ListView& listing = session_.frmListing().ListView1;
  if (listing.Count() == 0) return;
  skipOnError([&] {
    const HostPath track = sourcePath(listing, listing.SelectedRow());
    session_.ports.opener.open({"open", track.text, "0", "0", ShowNormal});
  });
}

void Commands::OpenWebSite() {
  session_.ports.opener.open({"open", WebPage, "0", "0", ShowNormal});
}

void Commands::record() {
  PrepareRecord(session_, forms_.writing);
  if (session_.mod.RecordConfirmed) StartDiscWrite(session_, forms_.writing);
}

}  // namespace trackloom
