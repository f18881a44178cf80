#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "ports/Drives.h"

namespace trackloom {

struct SearchForms;
struct Session;

/// What the walk over the drives shares with its window.
struct SearchDrivesMod {
  /// Tested where a drive and where a folder begins.
  bool StopSearch = false;
  /// Rows that the present search has added.
  std::int32_t FilesFound = 0;
};

/// What one drive holds, whether or not it was wanted; the root is not counted among the folders.
struct DriveTotals {
  std::int64_t bytes = 0;
  std::int64_t files = 0;
  std::int64_t folders = 0;
};

/// Folders that are still to be read, each with its trailing separator; the first one is next.
using PendingFolders = std::deque<std::string>;

/// The roots of all drives, one text with a NUL behind each and one more at the end.
std::string GetDriveRoots(Session& session);
/// Cuts the first root off the list.
std::string NextRoot(std::string& list);
/// The type of the drive in words, of which only "Hard" is ever looked for.
std::string DriveTypeText(Session& session, const std::string& root);

/// Walks a drive breadth first, adds a row to the window for each file wanted, and lets window events run once for each
/// folder but the root.
DriveTotals SearchDrive(SearchForms& forms, std::string root);
/// Reads the first of the pending folders, and puts its own folders behind the last. A file that cannot be looked at
/// ends the folder.
void ScanFolder(SearchForms& forms, DriveWalk& walk, PendingFolders& pending, DriveTotals& totals);

/// The part before the first NUL; empty if there is none.
std::string StripAtNul(std::string_view text);

}  // namespace trackloom
