#pragma once

#include <QTreeView>

#include "controls/FolderTreeview.h"

namespace trackloom {

class Face;

/// Shows the folders of the machine in the tree, the control's folder opened up to and selected.
void tieFolders(Face& face, QTreeView& tree, FolderTreeview& folders);

}  // namespace trackloom
