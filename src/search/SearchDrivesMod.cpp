#include "search/SearchDrivesMod.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "model/Capacity.h"
#include "model/Session.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "search/SearchForms.h"

namespace trackloom {

namespace {

// The choices of the file types, in their order.
constexpr int Mp3Files = 0;
constexpr int WavFiles = 1;
constexpr int AllAudioFiles = 2;

bool isDirectory(const FindRecord& record) {
  return (record.attributes & FindRecord::DirectoryAttribute) != 0;
}

/// "MP3" or "WAV", empty for a file that is not wanted. Four bytes that read so are four characters.
std::string wantedType(std::string_view name, int choice) {
  const std::string extension = UCase(name.substr(name.size() - std::min<std::size_t>(name.size(), 4)));
  if (extension == ".MP3" && (choice == Mp3Files || choice == AllAudioFiles)) return "MP3";
  if (extension == ".WAV" && (choice == WavFiles || choice == AllAudioFiles)) return "WAV";
  return "";
}

/// Only the low 32 bits of a size are looked at, with the highest of them as its sign: files of 2 GiB up to 4 GiB are
/// as good as empty, larger ones may not be.
bool countsAsEmpty(std::int64_t size) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(size)) < 1;
}

void addRow(SearchForms& forms, const std::string& folder, const std::string& name, const std::string& type) {
  const auto bytes = static_cast<double>(FileLength(HostPath(folder + name)));
  ListItem row;
  row.Text = name;
  row.SubItems = {type, FormatSize(bytes, forms.session.ports.separators), folder};
  forms.frmSearch->ListView1.Add(std::move(row));
  ++forms.mod.FilesFound;
}

void scanEntries(SearchForms& forms, DriveWalk& walk, PendingFolders& pending, DriveTotals& totals) {
  const std::string folder = pending.front();
  const bool recycled = UCase(folder).find("RECYCLED") != std::string::npos;
  const int choice = forms.frmSearch->Combo1.ListIndex();
  for (const FindRecord& record : walk.entries(folder)) {
    const std::string name = StripAtNul(record.name);
    if (isDirectory(record)) {
      pending.push_back(EnsureTrailingSep(folder + name));
      continue;
    }
    totals.bytes += record.size;
    ++totals.files;
    if (recycled || countsAsEmpty(record.size)) continue;
    if (const std::string type = wantedType(name, choice); !type.empty()) addRow(forms, folder, name, type);
  }
}

}  // namespace

std::string GetDriveRoots(Session& session) {
  return Trim(session.ports.drives.LogicalDriveRoots());
}

std::string NextRoot(std::string& list) {
  std::string root = StripAtNul(list);
  list.erase(0, root.size() + 1);
  return root;
}

std::string DriveTypeText(Session& session, const std::string& root) {
  switch (session.ports.drives.DriveType(root)) {
    case 0:
      return "The drive type cannot be determined.";
    case 1:
      return "The root directory does not exist.";
    case 2:
      return root.starts_with('a') || root.starts_with('b') ? "Floppy" : "Removable";
    case 3:
      return "Hard";
    case 4:
      return "Network";
    case 5:
      return "CD-ROM";
    case 6:
      return "RAM";
    default:
      return "";
  }
}

DriveTotals SearchDrive(SearchForms& forms, std::string root) {
  DriveTotals totals;
  if (forms.mod.StopSearch) return totals;
  root = EnsureTrailingSep(std::move(root));
  const std::unique_ptr<DriveWalk> walk = forms.session.ports.drives.walk(root);
  PendingFolders pending{root};
  ScanFolder(forms, *walk, pending, totals);
  pending.pop_front();
  while (!pending.empty()) {
    ++totals.folders;
    ScanFolder(forms, *walk, pending, totals);
    pending.pop_front();
    forms.session.ports.pump.pumpEvents();
  }
  return totals;
}

void ScanFolder(SearchForms& forms, DriveWalk& walk, PendingFolders& pending, DriveTotals& totals) {
  if (forms.mod.StopSearch) return;
  skipOnError([&] { scanEntries(forms, walk, pending, totals); });
}

std::string StripAtNul(std::string_view text) {
  const auto end = text.find('\0');
  return std::string(end == std::string_view::npos ? std::string_view() : text.substr(0, end));
}

}  // namespace trackloom
