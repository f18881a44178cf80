#pragma once

#include <cstdint>
#include <string>

#include "model/Trackloom50Mod1.h"
#include "runtime/Paths.h"

namespace trackloom {

struct Session;

/// A kind of layout: what `LayoutType` holds for it, its word in a layout file, and what panel1 says of it.
struct LayoutKind {
  std::int16_t type;
  const char* fileWord;
  const char* panelText;
};
inline constexpr LayoutKind AudioKind{AudioLayout, "Audio", "Standard Audio CD (JOLIET)"};
inline constexpr LayoutKind Mp3Kind{Mp3Layout, "MP3", "MP3 Data CD (JOLIET)"};

// Before the first layout neither holds: what is counted in blocks then counts as data, what is offered as audio.
bool isAudioLayout(const Session& session);
bool isMp3Layout(const Session& session);

/// Makes the layout that is being opened one of this kind, and tells it in panel1.
void setLayoutKind(Session& session, const LayoutKind& kind);
const LayoutKind& layoutKind(const Session& session);

/// What the option `SortMode` says of an MP3 layout's listing; below 0 is as 0, above 2 as 2.
enum SortModes : std::int16_t { SortByTrackName = 0, SortByDiscFolder = 1, NoSorting = 2 };

/// Gives the listing of an MP3 layout the order of the user's option; an audio layout is never sorted.
void ApplyListingSort(Session& session);

/// Gives an MP3 layout its fourth column, if the listing has exactly three.
void addFolderColumn(Session& session);
/// Takes it away again, if it is there.
void removeFolderColumn(Session& session);

/// The layout has changes, and is more than an empty listing that never had a name.
bool needsSaving(Session& session);

/// The folder of the layout files, with its trailing separator.
std::string layoutsFolder(const Session& session);
/// The file name of a layout, and the name that a file name gives it: they differ by the extension.
std::string layoutFileName(const std::string& name);
std::string layoutName(const std::string& fileName);
HostPath layoutFilePath(const Session& session, const std::string& fileName);

}  // namespace trackloom
