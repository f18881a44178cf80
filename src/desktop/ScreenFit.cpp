#include "desktop/ScreenFit.h"

#include <QAbstractItemView>
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

void letUpperRowsScroll(QWidget& dialog, QBoxLayout& rows) {
  auto& area = make<QScrollArea>(dialog);
  auto contents = std::make_unique<QWidget>();
  auto& moved = make<QVBoxLayout>(*contents);
  moved.setContentsMargins(0, 0, area.verticalScrollBar()->sizeHint().width(), 0);
  moved.setSpacing(rows.spacing());
  for (int count = scrollingRows(rows); count > 0; --count) moved.addItem(rows.takeAt(0));
  area.setFrameShape(QFrame::NoFrame);
  area.setWidgetResizable(true);
  area.setFocusPolicy(Qt::NoFocus);
  area.setWidget(contents.release());
  rows.insertWidget(0, &area, 1);
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

void centreOver(QWidget& dialog, const QRect& around) {
  QRect frame(QPoint(), dialog.size() + frameOf(dialog));
  frame.moveCenter(around.center());
  dialog.move(placeWithin(frame, dialog.screen()->availableGeometry()));
}

void fitInto(QWidget& dialog, const QSize& most) {
  const auto ends = [&] { return dialog.size().boundedTo(most) == dialog.size() && fits(dialog, most); };
  if (ends()) return;
  dialog.setMinimumSize(0, 0);
  if (!fits(dialog, most)) shrinkLists(dialog);
  auto* rows = qobject_cast<QBoxLayout*>(dialog.layout());
  if (!fits(dialog, most) && rows != nullptr && scrollingRows(*rows) > 0) letUpperRowsScroll(dialog, *rows);
  dialog.setMinimumSize(neededSize(*dialog.layout(), most.width()).boundedTo(most));
  dialog.resize(dialog.size().boundedTo(most));
}

}  // namespace trackloom
