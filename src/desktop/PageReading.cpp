#include <QAccessibleWidget>
#include <algorithm>
#include <memory>

#include "desktop/PageView.h"
#include "desktop/TextParts.h"

namespace trackloom {

namespace {

using Boundary = QAccessible::TextBoundaryType;

/// A page as screen readers read it: a document of text that nobody writes.
class PageReading final : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit PageReading(PageView& page) : QAccessibleWidget(&page, QAccessible::Document) {}

  void* interface_cast(QAccessible::InterfaceType type) override;
  QString text(QAccessible::Text kind) const override;
  QAccessible::State state() const override;

  void selection(int /*index*/, int* start, int* end) const override { *start = *end = 0; }
  int selectionCount() const override { return 0; }
  void addSelection(int /*start*/, int /*end*/) override {}
  void removeSelection(int /*index*/) override {}
  void setSelection(int /*index*/, int /*start*/, int /*end*/) override {}
  int cursorPosition() const override { return cursor_; }
  void setCursorPosition(int place) override { cursor_ = std::clamp(place, 0, characterCount()); }
  QString text(int start, int end) const override { return page().text().mid(start, end - start); }
  QString textBeforeOffset(int offset, Boundary boundary, int* start, int* end) const override;
  QString textAfterOffset(int offset, Boundary boundary, int* start, int* end) const override;
  QString textAtOffset(int offset, Boundary boundary, int* start, int* end) const override;
  int characterCount() const override { return static_cast<int>(page().text().size()); }
  QRect characterRect(int offset) const override;
  int offsetAtPoint(const QPoint& point) const override { return page().offsetAt(page().mapFromGlobal(point)); }
  void scrollToSubstring(int start, int /*end*/) override { setCursorPosition(start); }
  QString attributes(int /*offset*/, int* start, int* end) const override;

 private:
  PageView& page() const { return *static_cast<PageView*>(object()); }
  int placeMeant(int offset) const;
  QString tell(const TextPart& part, int* start, int* end) const;

  int cursor_ = 0;
};

void* PageReading::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QString PageReading::text(QAccessible::Text kind) const {
  return kind == QAccessible::Value ? page().text() : QAccessibleWidget::text(kind);
}

QAccessible::State PageReading::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.readOnly = true;
  state.multiLine = true;
  return state;
}

/// -1 stands for the end of the text, -2 for the cursor.
int PageReading::placeMeant(int offset) const {
  if (offset == -2) return std::min(cursor_, characterCount());
  return offset == -1 ? characterCount() : offset;
}

QString PageReading::tell(const TextPart& part, int* start, int* end) const {
  *start = part.start;
  *end = part.end;
  return text(part.start, part.end);
}

QString PageReading::textAtOffset(int offset, Boundary boundary, int* start, int* end) const {
  return tell(partAt(page().text(), placeMeant(offset), boundary), start, end);
}

QString PageReading::textBeforeOffset(int offset, Boundary boundary, int* start, int* end) const {
  const TextPart here = partAt(page().text(), placeMeant(offset), boundary);
  return tell(here.start == 0 ? TextPart() : partAt(page().text(), here.start - 1, boundary), start, end);
}

QString PageReading::textAfterOffset(int offset, Boundary boundary, int* start, int* end) const {
  const TextPart here = partAt(page().text(), placeMeant(offset), boundary);
  return tell(partAt(page().text(), here.end, boundary), start, end);
}

QRect PageReading::characterRect(int offset) const {
  return page().placeOf(offset).translated(page().mapToGlobal(QPoint()));
}

QString PageReading::attributes(int /*offset*/, int* start, int* end) const {
  *start = 0;
  *end = characterCount();
  return {};
}

QAccessibleInterface* readingOf(const QString& /*kind*/, QObject* object) {
  auto* page = dynamic_cast<PageView*>(object);
  return page == nullptr ? nullptr : std::make_unique<PageReading>(*page).release();
}

}  // namespace

void letPagesBeRead() {
  QAccessible::installFactory(readingOf);
}

}  // namespace trackloom
