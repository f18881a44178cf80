#include "desktop/ScreenFit.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QStyle>
#include <algorithm>
#include <memory>

#include "desktop/Make.h"
#include "desktop/ScreenPlace.h"

namespace trackloom {

namespace {

/// A list that has given way shows its head and about two rows.
constexpr QSize SmallestList(120, 80);
/// On a screen of less than 640 by 360 a dialog would show next to nothing but its bars.
constexpr QSize SmallestRoom(636, 300);

/// The size that the contents need within this width.
QSize neededSize(const QLayout& layout, int width) {
  const QSize least = layout.totalMinimumSize();
  const int wide = std::max(least.width(), width);
  return {least.width(), layout.hasHeightForWidth() ? layout.totalMinimumHeightForWidth(wide) : least.height()};
}

bool fits(const QWidget& dialog, const QSize& most) {
  const QSize needed = neededSize(*dialog.layout(), std::min(dialog.width(), most.width()));
  return needed.width() <= most.width() && needed.height() <= most.height();
}

void shrinkLists(QWidget& dialog) {
  for (auto* list : dialog.findChildren<QAbstractItemView*>())
    list->setMinimumSize(list->minimumSize().boundedTo(SmallestList));
}

bool holdsButtons(const QLayoutItem& item) {
  QLayout* row = const_cast<QLayoutItem&>(item).layout();
  if (row == nullptr) return false;
  for (int place = 0; place < row->count(); ++place)
    if (qobject_cast<QPushButton*>(row->itemAt(place)->widget()) != nullptr) return true;
  return false;
}

bool staysInSight(QLayoutItem& item) {
  return holdsButtons(item) || qobject_cast<QStatusBar*>(item.widget()) != nullptr;
}

/// How many rows from the top may scroll.
int scrollingRows(const QBoxLayout& rows) {
  int count = rows.count();
  while (count > 0 && staysInSight(*rows.itemAt(count - 1))) --count;
  return count;
}

bool scrolls(const QBoxLayout& rows) {
  return qobject_cast<QScrollArea*>(rows.itemAt(0)->widget()) != nullptr;
}

/// Moves the first row to the end of `to`, with its widgets and its share of the room.
void moveFirstRow(QBoxLayout& rows, QBoxLayout& to) {
  const int stretch = rows.stretch(0);
  std::unique_ptr<QLayoutItem> row(rows.takeAt(0));
  if (row->widget() != nullptr) row->widget()->setParent(to.parentWidget());
  if (row->layout() != nullptr)
    to.addLayout(row.release()->layout());
  else
    to.addItem(row.release());
  to.setStretch(to.count() - 1, stretch);
}

/// An area that leaves it to `followFocus` where it scrolls to.
class RowsArea final : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

 protected:
  bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }
};

/// Of what is larger than the area, the beginning.
void bringIntoSight(QScrollArea& area, const QWidget& widget) {
  const QPoint start = widget.mapTo(area.widget(), QPoint());
  area.ensureVisible(start.x() + widget.width(), start.y() + widget.height(), 0, 0);
  area.ensureVisible(start.x(), start.y(), 0, 0);
}

/// Whatever takes the focus comes into sight, also by an access key or from among the buttons.
void followFocus(QScrollArea& area) {
  QObject::connect(qApp, &QApplication::focusChanged, &area, [&area](QWidget* /*before*/, QWidget* now) {
    if (now != nullptr && area.widget()->isAncestorOf(now)) bringIntoSight(area, *now);
  });
}

/// The area is of the dialog before anything moves into it: the order of the Tab key stays as it is within one window.
QScrollArea& addScrollArea(QWidget& dialog) {
  auto& area = make<RowsArea>(dialog);
  area.setFrameShape(QFrame::NoFrame);
  area.setWidgetResizable(true);
  area.setFocusPolicy(Qt::NoFocus);
  // A bar that comes and goes would change the width, and with it the height that decides whether it comes.
  area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  area.setWidget(&make<QWidget>(area));
  return area;
}

void letUpperRowsScroll(QWidget& dialog, QBoxLayout& rows) {
  QWidget* focused = dialog.focusWidget();
  QScrollArea& area = addScrollArea(dialog);
  QWidget& contents = *area.widget();
  // What moves into a widget that is hidden shows with it, and what was hidden stays so.
  contents.hide();
  auto& moved = make<QVBoxLayout>(contents);
  moved.setContentsMargins(0, 0, rows.spacing(), 0);
  moved.setSpacing(rows.spacing());
  for (int count = scrollingRows(rows); count > 0; --count) moveFirstRow(rows, moved);
  rows.insertWidget(0, &area, 1);
  contents.show();
  followFocus(area);
  if (focused != nullptr) focused->setFocus(Qt::OtherFocusReason);
}

/// Whether there are rows that do not scroll yet, but may.
bool canScroll(const QBoxLayout* rows) {
  return rows != nullptr && scrollingRows(*rows) > 0 && !scrolls(*rows);
}

}  // namespace

QSize frameOf(const QWidget& window) {
  if (window.windowFlags().testFlag(Qt::FramelessWindowHint)) return {0, 0};
  const QStyle& style = *window.style();
  const int frame = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &window);
  const int title = style.pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
  return {2 * frame, 2 * frame + title};
}

QSize roomFor(const QWidget& dialog) {
  return (dialog.screen()->availableSize() - frameOf(dialog)).expandedTo(SmallestRoom);
}

QRect placeOf(const QWidget& window) {
  return window.isMaximized() ? window.screen()->availableGeometry() : window.frameGeometry();
}

void centreOver(QWidget& dialog, const QRect& around) {
  QRect frame(QPoint(), dialog.size() + frameOf(dialog));
  frame.moveCenter(around.center());
  dialog.move(placeWithin(frame, dialog.screen()->availableGeometry()));
}

void giveWay(QWidget& window, const QSize& most) {
  window.setMinimumSize(window.minimumSize().boundedTo(most));
}

void fitInto(QWidget& dialog, const QSize& most) {
  const auto ends = [&] { return dialog.size().boundedTo(most) == dialog.size() && fits(dialog, most); };
  if (ends()) return;
  dialog.setMinimumSize(0, 0);
  if (!fits(dialog, most)) shrinkLists(dialog);
  auto* rows = qobject_cast<QBoxLayout*>(dialog.layout());
  if (!fits(dialog, most) && canScroll(rows)) letUpperRowsScroll(dialog, *rows);
  dialog.setMinimumSize(neededSize(*dialog.layout(), most.width()).boundedTo(most));
  dialog.resize(dialog.size().boundedTo(most));
}

}  // namespace trackloom
