#include "desktop/ListLook.h"

#include <QHeaderView>
#include <QPainter>
#include <QToolTip>

namespace trackloom {

QRect boxOf(const QTreeView& view, const QModelIndex& index) {
  QStyleOptionViewItem option;
  option.initFrom(&view);
  option.rect = view.visualRect(index);
  option.features = QStyleOptionViewItem::HasCheckIndicator;
  return view.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &view);
}

void paintBesideRows(const QTreeView& view) {
  const QHeaderView& heads = *view.header();
  const int left = heads.length() - heads.offset();
  QWidget& viewport = *view.viewport();
  if (left >= viewport.width()) return;
  const auto group = !view.isEnabled()       ? QPalette::Disabled
                     : view.isActiveWindow() ? QPalette::Active
                                             : QPalette::Inactive;
  QPainter painter(&viewport);
  for (const QModelIndex& row : view.selectionModel()->selectedRows()) {
    const QRect place = view.visualRect(row);
    painter.fillRect(left, place.top(), viewport.width() - left, place.height(),
                     view.palette().brush(group, QPalette::Highlight));
  }
}

bool tellCutText(const QTreeView& view, const QHelpEvent& event) {
  const QModelIndex index = view.indexAt(event.pos());
  if (!index.isValid() || view.sizeHintForIndex(index).width() <= view.columnWidth(index.column())) return false;
  // A name that looks like markup is still a name.
  const QString text = "<p style='white-space:pre-wrap'>" + index.data().toString().toHtmlEscaped() + "</p>";
  QToolTip::showText(event.globalPos(), text, view.viewport(), view.visualRect(index));
  return true;
}

void stretchWidestColumn(const QTreeView& view) {
  const QVariant column = view.property("widestColumn");
  if (!column.isValid()) return;
  view.header()->setStretchLastSection(false);
  view.header()->setSectionResizeMode(column.toInt() - 1, QHeaderView::Stretch);
}

}  // namespace trackloom
