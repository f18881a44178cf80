#pragma once

#include <QTreeView>

#include "controls/ListView.h"

namespace trackloom {

class Face;

/// Tells a list what is seen of it and what the mouse does over it, in the list's own heights; and scrolls it by whole
/// rows. No drag and drop of the platform takes part.
void tieRowDrag(Face& face, QTreeView& view, ListView& list);

}  // namespace trackloom
