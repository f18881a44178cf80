#pragma once

#include "controls/ListItem.h"

namespace trackloom {

struct Session;

// The order of an audio layout by dragging: its rows are the tracks of the disc in order. On any other layout nothing
// happens, since its disc is alphabetical. Heights are those of ListView's drag. A move changes nothing but the
// listing: it makes no layout unsaved, and the queue follows at the next write.

/// A button went down on the listing: ends what a drag left behind, and begins one with the left button.
void pressOnListing(Session& session, MouseButton button);
/// The first hover names the row that is dragged, each further one the row under the pointer.
void dragOverListing(Session& session, double y);
void dropOnListing(Session& session, double y);

}  // namespace trackloom
