#pragma once

#include <string>

#include "engines/ground/EngineError.h"

namespace trackloom::engines {

/// Why a drive's device node could not be opened, `error` being the system's number: what the user can do where the
/// rights are missing, where its disc is mounted, and who uses it.
EngineError cannotOpenNode(const std::string& node, int error);

/// Who uses a drive that another one holds, and what its disc service said, where it said anything.
EngineError driveInUse(const std::string& node, const std::string& said);

/// The other processes of this user that have a file open, or work in a folder, at this path or below it: "bash (4711)
/// and vlc (4712)"; empty: none.
std::string usersOf(const std::string& path);

}  // namespace trackloom::engines
