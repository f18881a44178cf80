#include "shell/frmListing.h"

#include "layout/FileDrop.h"
#include "layout/TrackDrag.h"
#include "model/Capacity.h"
#include "model/CommandStates.h"
#include "model/DockState.h"
#include "model/Layout.h"
#include "model/OptionsFile.h"
#include "model/Session.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "shell/DriveSelection.h"
#include "shell/LayoutClosing.h"
#include "shell/ProgramForms.h"
#include "shell/Rescue.h"
#include "shell/UnhandledError.h"
#include "writing/RecordFlow.h"

namespace trackloom {

namespace {

/// Far beyond any dock state; what is longer is no dock state.
constexpr std::size_t LargestDockState = 1 << 21;

}  // namespace

frmListing::frmListing(Session& session, ProgramForms& forms, CDWriterEvents& writeEvents)
    : ListingWindow(session.host, session.ports, writeEvents),
      session_(session),
      forms_(forms),
      commands_(session, forms) {
  connectEvents();
}

void frmListing::connectEvents() {
  DockStudio1.ToolClick = [this](const Tool& tool) { commands_.dispatch(tool.Name()); };
  DockStudio1.ClientAreaChanged = [this] { commands_.resize(); };
  DockStudio1.ComboChanged = [this](const Tool& tool, const ComboEntry& entry) { driveChosen(session_, tool, entry); };
  DockStudio1.MenuOpened = [this](const std::string& menu) {
    if (menu == "mnuTools") UpdateCommandStates(session_);
  };
  ListView1.DblClick = [this] { commands_.PlaySelectedTrack(); };
  ListView1.MouseDown = [this](MouseButton button) { pressOnListing(session_, button); };
  ListView1.DragOver = [this](double y) { dragOverListing(session_, y); };
  ListView1.DragDrop = [this](double y) { dropOnListing(session_, y); };
  ListView1.RowMoved = [this](int rows) { moveSelectedRow(session_, rows); };
  ListView1.FilesDropped = [this](const std::vector<std::string>& paths) {
    addDroppedFiles(session_, paths);
    commands_.runKept();
  };
  Timer1.Tick = [this] {
    startRealWrite(session_);
    Timer1.Enabled = false;
  };
  Timer2.Tick = [this] { startNextCopy(session_, forms_.writing); };
}

void frmListing::Load() {
  if (session_.ports.process.isSecondInstance()) {
    ClosingDuplicate = true;
    unload();
    return;
  }
  setAppFolder();
  LoadDockLayout();
  EnsureLayoutsFolder();
  bringRescuedHome(session_);
  LoadOptions(session_);
  RestoreWindowPlacement();
  Loading = true;
  InitDrives(session_, forms_.shell);
  skipOnError([this] { UpdateCommandStates(session_); });
  if (!session_.mod.DriveOpen) forms_.shell.frmNOCD->showModal(this);
  stands_ = true;
}

void frmListing::setAppFolder() {
  skipOnError([this] { session_.mod.AppFolder = EnsureTrailingSep(Trim(session_.ports.process.executableFolder())); });
}

void frmListing::LoadDockLayout() {
  const HostPath file(session_.mod.AppFolder + "Trackloom.dsl");
  if (!FileExists(file)) return;
  skipOnError([&] {
    if (const auto state = DockState::decode(ReadStart(file, LargestDockState))) state->applyTo(DockStudio1);
  });
}

void frmListing::SaveDockLayout() {
  skipOnError(
      [this] { ReplaceFile(HostPath(session_.mod.AppFolder + "Trackloom.dsl"), DockState::of(DockStudio1).encode()); });
}

void frmListing::EnsureLayoutsFolder() {
  const HostPath folder(layoutsFolder(session_));
  if (!FolderExists(folder)) skipOnError([&] { MakeFolder(folder); });
}

void frmListing::RestoreWindowPlacement() {
  const OptionsRecord& options = session_.mod.Options;
  Placement place = placement;
  if (options.WinWidth != 0 || options.WinHeight != 0 || options.WinLeft != 0 || options.WinTop != 0)
    place = {WindowState::Normal, options.WinLeft, options.WinTop, options.WinWidth, options.WinHeight};
  else
    place.state = WindowState::Maximized;
  placement = place;
}

void frmListing::Activate() {
  if (!Loading) return;
  Loading = false;
  if (FileExists(HostPath(session_.mod.AppFolder + "NoShow.dat"))) return;
  forms_.layout.frmNewOption->showModal(this);
  if (!session_.mod.LayoutOpen) return;
  commands_.resize();
  UpdateCapacityDisplay(session_);
}

bool frmListing::QueryUnload(CloseReason) {
  if (commands_.keepsExit()) return false;
  if (session_.mod.Options.PromptSave != 1 || !needsSaving(session_)) return true;
  const BoxAnswer answer = askToSave(session_, BoxButtons::YesNoCancel);
  if (answer == BoxAnswer::Yes) saveBeforeClose();
  return answer != BoxAnswer::Cancel;
}

void frmListing::saveBeforeClose() {
  closing_ = true;
  try {
    saveOrAskName(session_, forms_.layout);
  } catch (const RuntimeError& error) {
    // Nothing stops the close, yet the user asked for the layout to be kept.
    tellFatalError(session_, error);
  }
}

void frmListing::Unload() {
  if (!ClosingDuplicate) store();
  session_.ports.process.end(0);
}

void frmListing::closeUnasked(int status) {
  if (stands_) store();
  session_.ports.process.end(status);
}

void frmListing::store() {
  storePlacement();
  session_.mod.Options.SavedDrive = session_.mod.CurrentDrive;
  skipOnError([this] { writeOptionsFile(session_); });
  blankStatus(*this);
  SaveDockLayout();
}

void frmListing::storePlacement() {
  OptionsRecord& options = session_.mod.Options;
  const Placement& place = placement;
  const bool normal = place.state == WindowState::Normal;
  const auto store = [normal](std::int16_t& field, std::int32_t twips) {
    skipOnError([&] { field = normal ? ToInt16(twips) : std::int16_t{0}; });
  };
  store(options.WinLeft, place.left);
  store(options.WinTop, place.top);
  store(options.WinWidth, place.width);
  store(options.WinHeight, place.height);
}

}  // namespace trackloom
