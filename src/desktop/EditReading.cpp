#include "desktop/EditReading.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLineEdit>
#include <algorithm>
#include <memory>

#include "desktop/TextParts.h"

namespace trackloom {

namespace {

using Boundary = QAccessible::TextBoundaryType;

class EditReading final : public QAccessibleWidget,
                          public QAccessibleTextInterface,
                          public QAccessibleEditableTextInterface {
 public:
  explicit EditReading(QLineEdit& line) : QAccessibleWidget(&line, QAccessible::EditableText) {}

  void* interface_cast(QAccessible::InterfaceType type) override;
  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text kind, const QString& text) override;
  QAccessible::State state() const override;

  void selection(int index, int* start, int* end) const override;
  int selectionCount() const override { return line().hasSelectedText() ? 1 : 0; }
  void addSelection(int start, int end) override { setSelection(0, start, end); }
  void removeSelection(int /*index*/) override { line().deselect(); }
  void setSelection(int /*index*/, int start, int end) override { line().setSelection(start, end - start); }
  int cursorPosition() const override { return line().cursorPosition(); }
  void setCursorPosition(int place) override { line().setCursorPosition(place); }
  QString text(int start, int end) const override { return line().text().mid(start, end - start); }
  QString textBeforeOffset(int offset, Boundary boundary, int* start, int* end) const override;
  QString textAfterOffset(int offset, Boundary boundary, int* start, int* end) const override;
  QString textAtOffset(int offset, Boundary boundary, int* start, int* end) const override;
  int characterCount() const override { return static_cast<int>(line().text().size()); }
  QRect characterRect(int offset) const override;
  int offsetAtPoint(const QPoint& point) const override;
  /// The cursor is always in sight.
  void scrollToSubstring(int start, int /*end*/) override { setCursorPosition(start); }
  QString attributes(int offset, int* start, int* end) const override;

  void deleteText(int start, int end) override { replaceText(start, end, {}); }
  void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
  void replaceText(int start, int end, const QString& text) override;

 private:
  QLineEdit& line() const { return *static_cast<QLineEdit*>(object()); }
  QString tell(const TextPart& part, int* start, int* end) const;
};

void* EditReading::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  if (type == QAccessible::EditableTextInterface) return static_cast<QAccessibleEditableTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QString EditReading::text(QAccessible::Text kind) const {
  return kind == QAccessible::Value ? line().text() : QAccessibleWidget::text(kind);
}

void EditReading::setText(QAccessible::Text kind, const QString& text) {
  if (kind == QAccessible::Value) replaceText(0, characterCount(), text);
}

QAccessible::State EditReading::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.editable = !line().isReadOnly();
  state.readOnly = line().isReadOnly();
  state.selectableText = true;
  return state;
}

void EditReading::selection(int /*index*/, int* start, int* end) const {
  *start = std::max(line().selectionStart(), 0);
  *end = std::max(line().selectionEnd(), 0);
}

QString EditReading::tell(const TextPart& part, int* start, int* end) const {
  *start = part.start;
  *end = part.end;
  return text(part.start, part.end);
}

/// -1 stands for the end of the text, -2 for the cursor.
int placeMeant(int offset, const QLineEdit& line) {
  if (offset == -2) return line.cursorPosition();
  return offset == -1 ? static_cast<int>(line.text().size()) : offset;
}

QString EditReading::textAtOffset(int offset, Boundary boundary, int* start, int* end) const {
  return tell(partAt(line().text(), placeMeant(offset, line()), boundary), start, end);
}

QString EditReading::textBeforeOffset(int offset, Boundary boundary, int* start, int* end) const {
  const TextPart here = partAt(line().text(), placeMeant(offset, line()), boundary);
  return tell(here.start == 0 ? TextPart() : partAt(line().text(), here.start - 1, boundary), start, end);
}

QString EditReading::textAfterOffset(int offset, Boundary boundary, int* start, int* end) const {
  const TextPart here = partAt(line().text(), placeMeant(offset, line()), boundary);
  return tell(partAt(line().text(), here.end, boundary), start, end);
}

/// From where the cursor is drawn, which the text's own margins and scrolling lead to.
QRect EditReading::characterRect(int offset) const {
  const QFontMetrics letters(line().font());
  const QRect cursor = line().inputMethodQuery(Qt::ImCursorRectangle).toRect();
  const QString& text = line().text();
  const int from = letters.horizontalAdvance(text.left(line().cursorPosition()));
  const int left = cursor.center().x() + letters.horizontalAdvance(text.left(offset)) - from;
  const QRect place(left, cursor.top(), letters.horizontalAdvance(text.mid(offset, 1)), cursor.height());
  return place.translated(line().mapToGlobal(QPoint()));
}

int EditReading::offsetAtPoint(const QPoint& point) const {
  return line().cursorPositionAt(line().mapFromGlobal(point));
}

QString EditReading::attributes(int /*offset*/, int* start, int* end) const {
  *start = *end = 0;
  return {};
}

/// As the user would type it, so that the form hears of it.
void EditReading::replaceText(int start, int end, const QString& text) {
  if (line().isReadOnly() || !line().isEnabled() || (start == end && text.isEmpty())) return;
  line().setSelection(start, end - start);
  text.isEmpty() ? line().del() : line().insert(text);
}

QAccessibleInterface* readingOf(const QString& /*kind*/, QObject* object) {
  auto* line = qobject_cast<QLineEdit*>(object);
  return line == nullptr ? nullptr : std::make_unique<EditReading>(*line).release();
}

}  // namespace

void letEditsBeRead() {
  QAccessible::installFactory(readingOf);
}

}  // namespace trackloom
