#pragma once

#include <string>
#include <vector>

namespace trackloom {

struct Session;

/// Adds files dropped on the listing, in their order; whatever is not named as MP3 or WAV is passed over.
void addDroppedFiles(Session& session, const std::vector<std::string>& paths);

}  // namespace trackloom
