#pragma once

#include <string>

#include "runtime/Paths.h"

namespace trackloom {

struct Session;

/// The open layout as its file tells it.
std::string layoutText(Session& session);

/// Writes the open layout to `path` as a whole, replacing what stands there. Throws RuntimeError, and the old file
/// stands.
void writeLayoutFile(Session& session, const HostPath& path);

/// Saves to the file that the layout has.
void SaveLayout(Session& session);

}  // namespace trackloom
