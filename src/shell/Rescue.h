#pragma once

#include <string>

namespace trackloom {

struct Session;

/// Saves a copy of the open layout if it has unsaved rows: among the layouts or, where those take no file, in the first
/// of the process's refuges that does. Gives its name among the layouts or its whole path, and nothing where nothing
/// was to be saved; a layout with a copy counts as saved. Throws RuntimeError, with the reason of the layouts, when no
/// place takes it.
std::string rescueLayout(Session& session);

/// Brings the copies that lie in the refuges among the layouts. One that cannot be brought stays where it is.
void bringRescuedHome(Session& session);

}  // namespace trackloom
