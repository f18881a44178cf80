#pragma once

#include <QHelpEvent>
#include <QTreeView>

namespace trackloom {

/// Where the check box of a row is.
QRect boxOf(const QTreeView& view, const QModelIndex& index);

/// The colour of selected rows goes on to the right edge, as their heads do. For the beginning of a paint event of the
/// viewport.
void paintBesideRows(const QTreeView& view);

/// Shows the whole text of the cell under the pointer where the cell cannot; true: it does now.
bool tellCutText(const QTreeView& view, const QHelpEvent& event);

/// The design property "widestColumn" names the column, from 1 on, that takes what the others leave.
void stretchWidestColumn(const QTreeView& view);

}  // namespace trackloom
