#include "desktop/EditReading.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <catch2/catch.hpp>

#include "desktop/TextParts.h"

namespace trackloom {

namespace {

/// An edit box as a client finds it.
struct Read {
  explicit Read(const QString& content) : line(content), object(*QAccessible::queryAccessibleInterface(&line)) {}
  QAccessibleTextInterface& text() { return *object.textInterface(); }
  QAccessibleEditableTextInterface& editable() { return *object.editableTextInterface(); }

  QLineEdit line;
  QAccessibleInterface& object;
};

/// What stands at a place, and from where to where.
struct Found {
  QString text;
  int start = -9;
  int end = -9;
  bool operator==(const Found&) const = default;
};

using Ask = QString (QAccessibleTextInterface::*)(int, QAccessible::TextBoundaryType, int*, int*) const;

Found find(Read& read, Ask ask, int offset, QAccessible::TextBoundaryType boundary = QAccessible::WordBoundary) {
  Found found;
  found.text = (read.text().*ask)(offset, boundary, &found.start, &found.end);
  return found;
}

constexpr Ask At = &QAccessibleTextInterface::textAtOffset;
constexpr Ask Before = &QAccessibleTextInterface::textBeforeOffset;
constexpr Ask After = &QAccessibleTextInterface::textAfterOffset;

}  // namespace

TEST_CASE("A screen reader is answered at the end of every text") {
  for (const char* content : {"", "abc", "abc ", "a b", " ", "a & "}) {
    Read read(content);
    const int length = read.text().characterCount();
    for (const Ask ask : {At, Before, After})
      for (int boundary = QAccessible::CharBoundary; boundary <= QAccessible::NoBoundary; ++boundary)
        for (int offset = -2; offset <= length + 1; ++offset) {
          const Found found = find(read, ask, offset, static_cast<QAccessible::TextBoundaryType>(boundary));
          CHECK(found.text == read.line.text().mid(found.start, found.end - found.start));
        }
    CHECK(find(read, At, length) == Found{"", length, length});
  }
}

TEST_CASE("A screen reader finds the letter, the word and the line of an edit box at a place") {
  Read read("two words");
  CHECK(find(read, At, 1) == Found{"two", 0, 3});
  CHECK(find(read, At, 4) == Found{"words", 4, 9});
  CHECK(find(read, At, 8) == Found{"words", 4, 9});
  CHECK(find(read, Before, 4) == Found{" ", 3, 4});
  CHECK(find(read, Before, 1) == Found{"", 0, 0});
  CHECK(find(read, Before, 9) == Found{"words", 4, 9});
  CHECK(find(read, After, 1) == Found{" ", 3, 4});
  CHECK(find(read, After, 6) == Found{"", 9, 9});
  CHECK(find(read, At, 1, QAccessible::CharBoundary) == Found{"w", 1, 2});
  CHECK(find(read, At, 5, QAccessible::LineBoundary) == Found{"two words", 0, 9});
  read.line.setCursorPosition(5);
  CHECK(find(read, At, -2) == Found{"words", 4, 9});
  CHECK(find(read, At, -1) == Found{"", 9, 9});
}

TEST_CASE("An edit box tells its name, its text, its state, its cursor and its selection") {
  QWidget around;
  Read read("some text");
  read.line.setParent(&around);
  QLabel label("&Title:", &around);
  label.setBuddy(&read.line);
  CHECK(read.object.role() == QAccessible::EditableText);
  CHECK(read.object.text(QAccessible::Name) == "Title:");
  CHECK(read.object.text(QAccessible::Value) == "some text");
  CHECK(read.object.state().editable);
  CHECK(read.object.state().focusable);
  CHECK(read.text().cursorPosition() == 9);
  CHECK(read.text().selectionCount() == 0);
  read.text().setSelection(0, 5, 9);
  int start = 0;
  int end = 0;
  read.text().selection(0, &start, &end);
  CHECK(read.line.selectedText() == "text");
  CHECK(start == 5);
  CHECK(end == 9);
  read.text().removeSelection(0);
  CHECK(read.text().selectionCount() == 0);
  read.line.setReadOnly(true);
  CHECK(read.object.state().readOnly);
  CHECK_FALSE(read.object.state().editable);
}

TEST_CASE("A screen reader can write into an edit box, as if the user typed, unless it is locked") {
  Read read("some text");
  const QSignalSpy edits(&read.line, &QLineEdit::textEdited);
  read.editable().replaceText(0, 4, "any");
  CHECK(read.line.text() == "any text");
  read.editable().insertText(3, "one's");
  CHECK(read.line.text() == "anyone's text");
  read.editable().deleteText(6, 8);
  CHECK(read.line.text() == "anyone text");
  read.editable().deleteText(3, 3);
  CHECK(read.line.text() == "anyone text");
  CHECK(edits.count() == 3);
  read.object.setText(QAccessible::Value, "all new");
  CHECK(read.line.text() == "all new");
  read.line.setReadOnly(true);
  read.editable().replaceText(0, 3, "none");
  CHECK(read.line.text() == "all new");
}

TEST_CASE("The letters of an edit box stand one behind the other, and are found where they stand") {
  Read read("Ww");
  read.line.resize(200, 30);
  read.line.show();
  const QRect first = read.text().characterRect(0);
  const QRect second = read.text().characterRect(1);
  CHECK(second.left() >= first.right());
  CHECK(read.object.rect().contains(first));
  CHECK(read.object.rect().contains(second));
  CHECK(read.text().offsetAtPoint(first.topLeft() + QPoint(1, 5)) == 0);
  CHECK(read.text().offsetAtPoint(second.topLeft() + QPoint(1, 5)) == 1);
}

TEST_CASE("A screen reader selects, moves the cursor and asks for what no edit box has") {
  Read read("some text");
  int start = -9;
  int end = -9;
  read.text().selection(0, &start, &end);
  CHECK((start == 0 && end == 0));
  read.text().addSelection(0, 4);
  CHECK(read.line.selectedText() == "some");
  CHECK(read.text().selectionCount() == 1);
  read.text().selection(0, &start, &end);
  CHECK((start == 0 && end == 4));
  read.text().setCursorPosition(2);
  CHECK(read.line.cursorPosition() == 2);
  CHECK(read.text().text(5, 7) == "te");
  start = end = -9;
  CHECK(read.text().attributes(3, &start, &end).isEmpty());
  CHECK((start == 0 && end == 0));
  CHECK(read.object.interface_cast(QAccessible::TableInterface) == nullptr);
  CHECK(read.object.state().selectableText);
  const QSignalSpy edits(&read.line, &QLineEdit::textEdited);
  read.object.setText(QAccessible::Name, "no name of a box is its text");
  CHECK(read.line.text() == "some text");
  read.line.setEnabled(false);
  read.editable().replaceText(0, 4, "any");
  CHECK(read.line.text() == "some text");
  CHECK(edits.count() == 0);
}

TEST_CASE("The beginning of a part is brought into sight, with the cursor before it") {
  Read read(QString(200, 'n'));
  read.line.resize(120, 30);
  read.line.show();
  for (const int start : {0, 100}) {
    read.text().scrollToSubstring(start, start + 5);
    CHECK(read.line.cursorPosition() == start);
    read.line.grab();
    CHECK(read.object.rect().intersects(read.text().characterRect(start)));
  }
}

TEST_CASE("Only edit boxes are read as such") {
  QLabel label("text");
  QAccessibleInterface* object = QAccessible::queryAccessibleInterface(&label);
  REQUIRE(object != nullptr);
  CHECK(object->role() == QAccessible::StaticText);
}

TEST_CASE("A text's lines end behind their line ends, also where one is empty") {
  struct Line {
    const char* text;
    int place;
    int start;
    int end;
  };
  for (const Line& line : {Line{"\nabc", 0, 0, 1}, Line{"\nabc", 1, 1, 4}, Line{"a\nb", 0, 0, 2}, Line{"a\nb", 1, 0, 2},
                           Line{"a\nb", 2, 2, 3}, Line{"a\n\nb", 2, 2, 3}, Line{"abc", 2, 0, 3}}) {
    const TextPart part = partAt(line.text, line.place, QAccessible::LineBoundary);
    CHECK((part.start == line.start && part.end == line.end));
    CHECK(partAt(line.text, line.place, QAccessible::NoBoundary).start == 0);
  }
}

}  // namespace trackloom
