#pragma once

#include <vector>

#include "engines/disc/DiscText.h"
#include "engines/libburn/Library.h"

namespace trackloom::engines::libburn {

/// Gives a session that is written at once, and its tracks, the names of the disc (CD-TEXT, MMC-3 Annex J), in the
/// signs that its block has room for (ISO 8859-1).
void nameSession(burn::burn_session* session, const std::vector<OwnedTrack>& tracks, const DiscText& text);

}  // namespace trackloom::engines::libburn
