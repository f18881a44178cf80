#include "desktop/FolderTie.h"

#include "desktop/Face.h"
#include "desktop/FolderModel.h"
#include "desktop/Make.h"

namespace trackloom {

void tieFolders(Face& face, QTreeView& tree, FolderTreeview& folders) {
  auto& model = make<FolderModel>(tree);
  tree.setModel(&model);
  tree.setHeaderHidden(true);
  tree.setUniformRowHeights(true);
  tree.setEditTriggers(QAbstractItemView::NoEditTriggers);
  // A tree that gets the focus makes its first folder the current one; only a selection is the user's choice.
  QObject::connect(tree.selectionModel(), &QItemSelectionModel::selectionChanged,
                   [&tree, &model, &folders, entry = face.entry()] {
                     const QModelIndexList selected = tree.selectionModel()->selectedIndexes();
                     if (!selected.isEmpty()) entry([&] { folders.choose(model.path(selected.front())); });
                   });
  const auto reveal = [&tree, &model, &folders] {
    model.reveal(folders.SelectedFolder(), [&tree, &model](const QModelIndex& index) {
      const QModelIndexList selected = tree.selectionModel()->selectedIndexes();
      if (!selected.isEmpty() && model.path(selected.front()) == model.path(index)) return;
      tree.setCurrentIndex(index);
      tree.scrollTo(index, QAbstractItemView::PositionAtCenter);
    });
  };
  reveal();
  face.keep(folders.changed.connect(reveal));
}

}  // namespace trackloom
