#pragma once

#include <string>
#include <utility>

#include "controls/ListItem.h"
#include "controls/ListView.h"
#include "runtime/Paths.h"

namespace trackloom {

/// The word that stands in the fourth column for the root of the disc.
inline constexpr const char* NoFolder = "No Folder";

/// The cells of a track row: its Text, and its sub-items by their numbers.
enum TrackColumn : int { NameColumn = 0, LocationColumn = 1, TimeColumn = 2, FolderColumn = 3 };

/// Splits a path behind its last separator. The folder's length is that of the trimmed path less that of the name;
/// without a separator both parts are empty.
struct PathParts {
  std::string folder;
  std::string name;
  bool hasFolder = false;
};
PathParts splitPathText(const std::string& path);

/// The name of a track on the disc: at most 64 characters, a longer one cut to 60 and ".mp3".
std::string DiscName(const std::string& name);

/// The disc path of a name in a folder of the disc, where NoFolder is the root.
DiscPath DiscPathOf(const std::string& discFolder, const std::string& nameOnDisc);

/// The full source path of a row.
HostPath sourcePath(const ListView& listing, int row);

}  // namespace trackloom
