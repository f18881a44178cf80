#pragma once

#include <string_view>

#include "runtime/Paths.h"

namespace trackloom {

/// Makes a file that only the user can read, under a name that nobody has yet; false: somebody has it. Returns when the
/// file is on the disk. Throws RuntimeError, and there is no file.
bool MakePrivateFile(const HostPath& path, std::string_view bytes);

/// Moves a file to a name that nobody has yet, on this disk or another, where only the user can read it; false:
/// somebody has the name. The file must be a regular one, the user's own, no link, and not in the making. Throws
/// RuntimeError, and it stays where it is.
bool MovePrivateFile(const HostPath& from, const HostPath& to);

}  // namespace trackloom
