#include "desktop/FolderTie.h"

#include <QKeyEvent>

#include "desktop/EventTap.h"
#include "desktop/Face.h"
#include "desktop/FolderModel.h"
#include "desktop/Make.h"

namespace trackloom {

namespace {

/// Enter opens the folder, and does not go on to the default button of the form.
bool openByKey(QTreeView& tree, const QEvent& event) {
  if (event.type() != QEvent::KeyPress || !tree.currentIndex().isValid()) return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
  tree.expand(tree.currentIndex());
  return true;
}

}  // namespace

void tieFolders(Face& face, QTreeView& tree, FolderTreeview& folders) {
  auto& model = make<FolderModel>(tree);
  tree.setModel(&model);
  tree.setHeaderHidden(true);
  tree.setUniformRowHeights(true);
  tree.setEditTriggers(QAbstractItemView::NoEditTriggers);
  make<EventTap>(tree, [&tree](const QEvent& event) { return openByKey(tree, event); });
  // A tree that gets the focus makes its first folder the current one; only a selection is the user's choice.
  QObject::connect(tree.selectionModel(), &QItemSelectionModel::selectionChanged,
                   [&tree, &model, &folders, entry = face.entry()] {
                     const QModelIndexList selected = tree.selectionModel()->selectedIndexes();
                     if (!selected.isEmpty()) entry([&] { folders.choose(model.path(selected.front())); });
                   });
  const auto reveal = [&tree, &model, &folders] {
    if (folders.SelectedFolder().empty()) return;
    model.reveal(folders.SelectedFolder(), [&tree, &model](const QModelIndex& index) {
      const QModelIndexList selected = tree.selectionModel()->selectedIndexes();
      if (!selected.isEmpty() && model.path(selected.front()) == model.path(index)) return;
      tree.setCurrentIndex(index);
      tree.scrollTo(index, QAbstractItemView::PositionAtCenter);
    });
  };
  tree.expand(model.index(0, 0, {}));
  reveal();
  face.keep(folders.changed.connect(reveal));
}

}  // namespace trackloom
