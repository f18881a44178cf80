#pragma once

#include <vector>

#include "engines/disc/KnownDrives.h"
#include "runtime/Paths.h"

namespace trackloom::engines::virtualrecorder {

/// The recorders that are folders beside the executable: "Virtual Recorder", then "Virtual Recorder 2", "Virtual
/// Recorder 3" and so on; the first number that is missing ends the list, but for those of the known ones that are
/// there.
RecorderList findVirtualRecorders(const HostPath& programFolder, const std::vector<KnownDrive>& known = {});

/// Lays out a recorder's folder: recorder.ini with all settings explained, an empty shelf, and a tray with a blank CD-R
/// of 80 minutes in it. What is there already stays as it is. Throws RuntimeError with words.
void createVirtualRecorder(const HostPath& folder);

}  // namespace trackloom::engines::virtualrecorder
