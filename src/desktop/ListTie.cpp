#include "desktop/ListTie.h"

#include <QDropEvent>
#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <memory>

#include "controls/ImageList.h"
#include "desktop/EventTap.h"
#include "desktop/Face.h"
#include "desktop/ListLook.h"
#include "desktop/ListModel.h"
#include "desktop/Make.h"
#include "desktop/RowDrag.h"
#include "desktop/Shown.h"
#include "desktop/TextEditing.h"

namespace trackloom {

namespace {

/// How often a list that is being filled shows what it has got: more often than the eye can follow is waste.
constexpr int RestMilliseconds = 30;

bool setsColumns(const ListChange& change) {
  return change.kind == ListChange::Kind::Reset || change.kind == ListChange::Kind::Columns ||
         change.kind == ListChange::Kind::Width;
}

/// What the parts of one tie share.
struct ListTie {
  QTreeView& view;
  ListView& list;
  ListModel& model;
  /// Runs after new rows have been shown; those that come meanwhile are shown together at its end.
  QTimer& rest;
  Entry entry;
  /// The view is being brought in line with the list, so what it tells is no deed of the user.
  bool mirroring = false;

  void announce(const ListChange& change);
  void mirror(const ListChange& change);
  void showNewRows();
  void showColumns();
  /// The column takes what the others leave, so its width is nobody's choice.
  bool stretches(int column) const;
  void showSelection();
  void showSelectedRow();
  void showSelectedRows();
  std::vector<int> rowsSelectedInView() const;
  void reportSelection();
  void reportSize() const;
  void toggle(const QModelIndex& index);
  bool toggleByKey(const QKeyEvent& key);
  void toggleByDoubleClick(const QMouseEvent& mouse);
  bool dragEvent(QEvent& event);
  bool hear(QEvent& event);
};

void ListTie::announce(const ListChange& change) {
  const QScopedValueRollback<bool> guard(mirroring, true);
  model.announce(change);
}

void ListTie::mirror(const ListChange& change) {
  const QScopedValueRollback<bool> guard(mirroring, true);
  model.mirror(change);
  if (change.kind == ListChange::Kind::RowChanged) return;
  if (setsColumns(change)) showColumns();
  if (!rest.isActive()) showNewRows();
  showSelection();
}

void ListTie::showNewRows() {
  if (model.showsAllRows()) return;
  const QScopedValueRollback<bool> guard(mirroring, true);
  model.grow();
  showSelection();
  rest.start(RestMilliseconds);
}

void ListTie::showColumns() {
  QHeaderView& heads = *view.header();
  for (int column = 0; column < model.columnCount(); ++column) {
    const double twips = list.columns()[static_cast<std::size_t>(column)].width;
    // In a large font a head can need more than the program thinks of.
    heads.resizeSection(column, std::max(static_cast<int>(twips / TwipsPerPixel), heads.sectionSizeHint(column)));
  }
}

bool ListTie::stretches(int column) const {
  const QHeaderView& heads = *view.header();
  return heads.sectionResizeMode(column) == QHeaderView::Stretch ||
         (heads.stretchLastSection() && column == heads.count() - 1);
}

void ListTie::showSelection() {
  list.style().multiSelect ? showSelectedRows() : showSelectedRow();
}

void ListTie::showSelectedRow() {
  QItemSelectionModel& selection = *view.selectionModel();
  const int row = list.SelectedRow() - 1;
  if (row >= model.rowCount()) return;
  if (row < 0) {
    if (selection.hasSelection()) selection.clear();
  } else if (!selection.isRowSelected(row)) {
    selection.setCurrentIndex(model.index(row, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
}

std::vector<int> ListTie::rowsSelectedInView() const {
  std::vector<int> rows;
  for (const QModelIndex& index : view.selectionModel()->selectedRows()) rows.push_back(index.row() + 1);
  std::sort(rows.begin(), rows.end());
  return rows;
}

void ListTie::showSelectedRows() {
  if (rowsSelectedInView() == list.SelectedRows()) return;
  QItemSelection wanted;
  for (const int row : list.SelectedRows()) {
    if (row > model.rowCount()) break;
    QModelIndex first = model.index(row - 1, 0);
    if (!wanted.isEmpty() && wanted.back().bottom() == row - 2) first = wanted.takeLast().topLeft();
    wanted.append(QItemSelectionRange(first, model.index(row - 1, 0)));
  }
  view.selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void ListTie::reportSelection() {
  if (mirroring) return;
  entry([this] { list.select(rowsSelectedInView()); });
}

void ListTie::reportSize() const {
  entry([this] {
    list.Width = view.width() * TwipsPerPixel;
    list.Height = view.height() * TwipsPerPixel;
  });
}

void ListTie::toggle(const QModelIndex& index) {
  const int row = index.row() + 1;
  entry([this, row] { list.check(row, !list.Item(row).Checked); });
}

bool ListTie::toggleByKey(const QKeyEvent& key) {
  const QModelIndex current = view.currentIndex();
  if (key.key() != Qt::Key_Space || !list.style().checkBoxes || !current.isValid()) return false;
  toggle(current);
  return true;
}

/// The box itself has taken both clicks already.
void ListTie::toggleByDoubleClick(const QMouseEvent& mouse) {
  const QModelIndex index = view.indexAt(mouse.pos());
  if (!list.style().checkBoxes || list.DblClick || !index.isValid()) return;
  if (!boxOf(view, index).contains(mouse.pos())) toggle(index);
}

std::vector<std::string> localFiles(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls())
    if (url.isLocalFile())
      paths.push_back(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString());
  return paths;
}

bool ListTie::dragEvent(QEvent& event) {
  const bool drop = event.type() == QEvent::Drop;
  if (!drop && event.type() != QEvent::DragEnter && event.type() != QEvent::DragMove) return false;
  auto& drag = static_cast<QDropEvent&>(event);
  std::vector<std::string> paths = localFiles(*drag.mimeData());
  const bool welcome = list.FilesDropped && !paths.empty();
  drag.setDropAction(Qt::CopyAction);
  drag.setAccepted(welcome);
  // The program that files come from waits until the drop is over, so the work begins after it.
  if (drop && welcome) entry.later([this, paths = std::move(paths)] { list.dropFiles(paths); });
  return true;
}

bool ListTie::hear(QEvent& event) {
  if (event.type() == QEvent::MouseButtonDblClick) toggleByDoubleClick(static_cast<QMouseEvent&>(event));
  if (event.type() == QEvent::Paint) paintBesideRows(view);
  if (event.type() == QEvent::ToolTip) return tellCutText(view, static_cast<QHelpEvent&>(event));
  return dragEvent(event);
}

void design(QTreeView& view, const ListStyle& style) {
  view.setRootIsDecorated(false);
  view.setItemsExpandable(false);
  view.setUniformRowHeights(true);
  view.setAllColumnsShowFocus(true);
  view.setEditTriggers(style.editable ? QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked
                                      : QAbstractItemView::NoEditTriggers);
  view.setSelectionMode(style.multiSelect ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
  view.setTextElideMode(Qt::ElideMiddle);
  view.setAcceptDrops(true);
  view.header()->setSectionsMovable(false);
}

void connectEvents(const std::shared_ptr<ListTie>& tie) {
  QTreeView& view = tie->view;
  tie->rest.setSingleShot(true);
  QObject::connect(&tie->rest, &QTimer::timeout, [tie] { tie->showNewRows(); });
  QObject::connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, [tie] {
    tie->view.viewport()->update();
    tie->reportSelection();
  });
  QObject::connect(&view, &QTreeView::doubleClicked, [tie](const QModelIndex& index) {
    const int row = index.row() + 1;
    tie->entry([&tie, row] { tie->list.doubleClick(row); });
  });
  QObject::connect(view.header(), &QHeaderView::sectionResized, [tie](int column, int /*before*/, int width) {
    if (!tie->mirroring && !tie->stretches(column))
      tie->entry([&] { tie->list.SetColumnWidth(column + 1, width * TwipsPerPixel); });
  });
  make<EventTap>(view, [tie](QEvent& event) {
    if (event.type() == QEvent::Resize) tie->reportSize();
    return event.type() == QEvent::KeyPress && tie->toggleByKey(static_cast<QKeyEvent&>(event));
  });
  make<EventTap>(*view.viewport(), [tie](QEvent& event) { return tie->hear(event); });
}

/// The list's own images; where it has none, the one that its design or the house has for rows.
QList<QIcon> rowIcons(const QTreeView& view, const ListView& list) {
  if (list.SmallIcons == nullptr) {
    const QVariant icon = view.property("rowIcon");
    return {rowIconNamed(icon.isValid() ? entered(icon.toString()) : "Note")};
  }
  QList<QIcon> icons;
  for (int number = 1; number <= list.SmallIcons->Count(); ++number)
    icons << rowIconNamed(list.SmallIcons->Picture(number));
  return icons;
}

}  // namespace

void tieList(Face& face, QTreeView& view, ListView& list) {
  auto& model = make<ListModel>(view, list, face.entry(), rowIcons(view, list));
  design(view, list.style());
  view.setModel(&model);
  if (list.style().editable) view.setItemDelegate(&make<TextEditing>(view));
  const auto tie = std::make_shared<ListTie>(ListTie{view, list, model, make<QTimer>(view), face.entry()});
  stretchWidestColumn(view);
  tie->showColumns();
  tie->showSelection();
  face.keep(list.listChanging.connect([tie](const ListChange& change) { tie->announce(change); }));
  face.keep(list.listChanged.connect([tie](const ListChange& change) { tie->mirror(change); }));
  face.atCut([tie] {
    tie->mirroring = true;
    tie->model.cut();
  });
  connectEvents(tie);
  tieRowDrag(face, view, list);
}

}  // namespace trackloom
