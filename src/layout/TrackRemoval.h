#pragma once

namespace trackloom {

struct Session;

/// Takes the selected track out of the layout, after asking. A step that fails is skipped.
void RemoveTrack(Session& session);

}  // namespace trackloom
