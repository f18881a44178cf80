#pragma once

#include <QTreeView>

#include "controls/ListView.h"

namespace trackloom {

class Face;

/// Shows a list in a tree view of one level: rows, columns, selection, check boxes, double clicks and dropped files.
void tieList(Face& face, QTreeView& view, ListView& list);

}  // namespace trackloom
