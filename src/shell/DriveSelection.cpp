#include "shell/DriveSelection.h"

#include <algorithm>

#include "model/Session.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "shell/ShellForms.h"

namespace trackloom {

namespace {

constexpr const char* UnableToOpen = "Unable to Open Drive";

std::string entryText(CDWriterXP& writer, std::int16_t drive) {
  return Trim(writer.DriveVendor(drive)) + " " + Trim(writer.DriveProduct(drive)) + " (" + writer.DriveLetter(drive) +
         ":)";
}

void fillDriveList(Session& session, std::int16_t count) {
  ListingWindow& window = session.frmListing();
  for (std::int16_t drive = 0; drive < count; ++drive)
    skipOnError([&] {
      window.DockStudio1.AddEntry(window.cboMainDrive, entryText(*window.CDR1, drive), std::to_string(drive));
    });
}

/// Makes the entry at `position` the selected one and tells its text in panel2, or the failure instead.
void showSelection(Session& session, int position, bool opened) {
  ListingWindow& window = session.frmListing();
  skipOnError([&] { window.DockStudio1.SelectEntry(window.cboMainDrive, position); });
  if (!opened) {
    window.panel2.Text = UnableToOpen;
    return;
  }
  const auto& entries = window.cboMainDrive.entries();
  const auto index = static_cast<std::size_t>(position - 1);
  if (index < entries.size()) window.panel2.Text = entries[index].Text;
}

}  // namespace

void InitDrives(Session& session, ShellForms& forms) {
  Trackloom50Mod1& mod = session.mod;
  ListingWindow& window = session.frmListing();
  std::int16_t count = 0;
  skipOnError([&] { count = window.CDR1->DriveCount(); });
  if (count <= 0) {
    window.panel2.Text = "No Recording Drive Found";
    forms.frmNOCD->showModal(&window);
    return;
  }
  fillDriveList(session, count);
  mod.CurrentDrive = std::max<std::int16_t>(mod.Options.SavedDrive, 0);
  skipOnError([&] { mod.DriveOpen = window.CDR1->SelectDrive(mod.CurrentDrive); });
  if (!mod.DriveOpen) mod.CurrentDrive = 0;
  showSelection(session, mod.CurrentDrive + 1, mod.DriveOpen);
  bool guard = false;
  skipOnError([&] { guard = window.CDR1->HasWriteGuard(); });
  skipOnError([&] { window.CDR1->EnableWriteGuard(guard); });
}

void driveChosen(Session& session, const Tool& tool, const ComboEntry& entry) {
  ListingWindow& window = session.frmListing();
  if (window.Loading || &tool != &window.cboMainDrive || tool.entries().empty()) return;
  if (window.panel2.Text == entry.Text) return;
  window.panel2.Text = entry.Text;
  ChangeDrive(session, entry);
}

void ChangeDrive(Session& session, const ComboEntry& entry) {
  Trackloom50Mod1& mod = session.mod;
  ListingWindow& window = session.frmListing();
  const auto& entries = window.cboMainDrive.entries();
  const auto same = [&](const ComboEntry& other) { return other.Text == entry.Text; };
  const auto first = std::find_if(entries.begin(), entries.end(), same);
  if (first != entries.end()) mod.CurrentDrive = ToInt16(Val(first->Tag));
  mod.DriveOpen = window.CDR1->SelectDrive(mod.CurrentDrive);
  if (!mod.DriveOpen) window.panel2.Text = UnableToOpen;
}

}  // namespace trackloom
