#pragma once

#include "controls/ListItem.h"

namespace trackloom {

struct Session;

// The order of an audio layout by dragging and by keys: its rows are the tracks of the disc in order. On any other
// layout nothing happens, since its disc is alphabetical. Heights are those of ListView's drag. A move changes nothing
// but the listing: it makes no layout unsaved, and the queue follows at the next write.

/// A button went down on the listing: ends what a drag left behind, and begins one with the left button.
void pressOnListing(Session& session, MouseButton button);
/// The first hover names the row that is dragged, each further one the row under the pointer.
void dragOverListing(Session& session, double y);
void dropOnListing(Session& session, double y);
/// The keyboard's way: the selected row goes down by so many rows, or up by minus so many, as a drop takes it there.
/// Beyond the first and the last row nothing happens.
void moveSelectedRow(Session& session, int rows);

}  // namespace trackloom
