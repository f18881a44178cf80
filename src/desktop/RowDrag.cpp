#include "desktop/RowDrag.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <memory>

#include "desktop/EventTap.h"
#include "desktop/Face.h"
#include "desktop/Make.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

MouseButton buttonOf(Qt::MouseButton button) {
  if (button == Qt::LeftButton) return MouseButton::Left;
  return button == Qt::RightButton ? MouseButton::Right : MouseButton::Middle;
}

/// One list under the mouse.
struct RowDrag {
  QTreeView& view;
  ListView& list;
  Entry entry;
  QPoint pressedAt;
  /// The pointer has left the place where it was pressed far enough for more than a click.
  bool moved = false;

  double rowHeight() const;
  double heightOf(int y) const;
  void reportView() const;
  void press(const QMouseEvent& mouse);
  bool move(const QMouseEvent& mouse);
  bool release(const QMouseEvent& mouse);
  bool isOverList(const QMouseEvent& mouse) const;
  bool hear(QEvent& event);
  bool hearKey(const QKeyEvent& key);
  void scroll(int right, int down) const;
};

double RowDrag::rowHeight() const {
  return std::max(view.visualRect(view.model()->index(0, 0)).height(), 1);
}

/// The list's height for a place in the viewport, whose top is the first row's; above it is the head.
double RowDrag::heightOf(int y) const {
  const double rows = y < 0 ? static_cast<double>(y) / view.header()->height() : y / rowHeight();
  return ListView::DragRowHeight * std::max(1 + rows, 0.0);
}

void RowDrag::reportView() const {
  const QModelIndex first = view.indexAt(QPoint(0, 0));
  list.reportView(std::max(first.row(), 0) + 1, heightOf(view.viewport()->height()));
}

void RowDrag::press(const QMouseEvent& mouse) {
  pressedAt = mouse.pos();
  moved = false;
  reportView();
  list.press(buttonOf(mouse.button()));
}

/// True: the move belongs to a drag, and does not select rows.
bool RowDrag::move(const QMouseEvent& mouse) {
  if (!list.dragging()) return false;
  const QPoint way = mouse.pos() - pressedAt;
  if (!moved && way.manhattanLength() < QApplication::startDragDistance()) return true;
  reportView();
  // The row that was pressed is the one that is dragged, however far the pointer has come before it counts as moved.
  if (!std::exchange(moved, true)) list.dragOver(heightOf(pressedAt.y()));
  if (isOverList(mouse)) list.dragOver(heightOf(mouse.pos().y()));
  return true;
}

/// True: the release ends a drag. The view would take it for a click and select what lies under the pointer, or
/// nothing.
bool RowDrag::release(const QMouseEvent& mouse) {
  if (!list.dragging()) return false;
  reportView();
  if (isOverList(mouse))
    list.drop(heightOf(mouse.pos().y()));
  else
    list.endDragElsewhere();
  return moved;
}

bool RowDrag::isOverList(const QMouseEvent& mouse) const {
  return view.rect().contains(view.viewport()->mapTo(&view, mouse.pos()));
}

bool RowDrag::hear(QEvent& event) {
  bool kept = false;
  entry([&] {
    if (event.type() == QEvent::Resize) reportView();
    if (event.type() == QEvent::MouseButtonPress) press(static_cast<QMouseEvent&>(event));
    if (event.type() == QEvent::MouseMove) kept = move(static_cast<QMouseEvent&>(event));
    if (event.type() == QEvent::MouseButtonRelease) kept = release(static_cast<QMouseEvent&>(event));
  });
  return kept;
}

/// Alt with Up or Down moves the row as a drag over the next one would.
bool RowDrag::hearKey(const QKeyEvent& key) {
  const bool up = key.key() == Qt::Key_Up;
  if (key.modifiers().setFlag(Qt::KeypadModifier, false) != Qt::AltModifier || (!up && key.key() != Qt::Key_Down))
    return false;
  entry([&] { list.moveSelected(up ? -1 : 1); });
  return true;
}

void RowDrag::scroll(int right, int down) const {
  view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->value() + right);
  const auto rows = static_cast<int>(std::lround(down * TwipsPerPixel / ListView::DragRowHeight));
  view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() + rows);
}

}  // namespace

void tieRowDrag(Face& face, QTreeView& view, ListView& list) {
  view.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  const auto drag = std::make_shared<RowDrag>(RowDrag{view, list, face.entry(), {}});
  make<EventTap>(*view.viewport(), [drag](QEvent& event) { return drag->hear(event); });
  make<EventTap>(view, [drag](QEvent& event) {
    return event.type() == QEvent::KeyPress && drag->list.RowMoved && drag->hearKey(static_cast<QKeyEvent&>(event));
  });
  QObject::connect(view.verticalScrollBar(), &QScrollBar::valueChanged,
                   [drag] { drag->entry([&drag] { drag->reportView(); }); });
  face.keep(list.scrollRequested.connect([drag](int right, int down) { drag->scroll(right, down); }));
}

}  // namespace trackloom
