#pragma once

#include <string>

#include "runtime/Paths.h"

namespace trackloom {

struct Session;

/// The extension of layout files, with its dot.
inline constexpr const char* LayoutExtension = ".mixl";

/// The path of a layout file by its name without extension.
HostPath layoutFilePath(const Session& session, const std::string& name);

/// Writes the open layout to `path` as a whole, replacing what stands there. Throws RuntimeError, and the old file
/// stands.
void writeLayoutFile(Session& session, const HostPath& path);

/// Saves to the file that the layout has.
void SaveLayout(Session& session);

}  // namespace trackloom
