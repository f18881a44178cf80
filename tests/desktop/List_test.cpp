#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>
#include <QTreeView>
#include <QUrl>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/ListLook.h"
#include "desktop/Shown.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;
using Lines = std::vector<std::string>;

namespace {

ListItem row(std::string text, std::string second = "") {
  ListItem item;
  item.Text = std::move(text);
  item.SubItems = {std::move(second)};
  return item;
}

QString cell(const QTreeView& view, int line, int column) {
  return view.model()->index(line, column).data().toString();
}

/// Adds rows, and waits until all of them are shown.
void fill(trial::Shown& shown, std::initializer_list<const char*> texts) {
  const auto& view = shown.widget<QTreeView>("List1");
  for (const char* text : texts) shown.form->List1.Add(row(text));
  REQUIRE(comesTrue([&] { return view.model()->rowCount() == shown.form->List1.Count(); }));
  shown.form->heard.clear();
}

/// Drags the data over the widget and drops it there; whether it was welcome.
bool drop(QWidget& target, const QMimeData& data) {
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&target, &enter);
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  if (enter.isAccepted()) QCoreApplication::sendEvent(&target, &drop);
  return enter.isAccepted() && drop.isAccepted();
}

}  // namespace

TEST_CASE("A list of ten thousand rows is mirrored row by row without a widget for any of them") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  for (int n = 0; n < 10000; ++n) shown.form->List1.Add(row("Track " + std::to_string(n), std::to_string(n)));
  CHECK(view.model()->rowCount() >= 1);
  REQUIRE(comesTrue([&] { return view.model()->rowCount() == 10000; }));
  CHECK(cell(view, 9999, 0) == "Track 9999");
  CHECK(cell(view, 1234, 1) == "1234");
  for (int n = 0; n < 5000; ++n) shown.form->List1.Remove(1);
  CHECK(view.model()->rowCount() == 5000);
  CHECK(cell(view, 0, 0) == "Track 5000");
  CHECK(view.viewport()->findChildren<QWidget*>().isEmpty());
  shown.form->List1.Clear();
  CHECK(view.model()->rowCount() == 0);
}

TEST_CASE("A sorted list shows new rows in their places and keeps its selection") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  fill(shown, {"b", "a"});
  shown.form->List1.SelectRow(1);
  shown.form->List1.SetSorted(true);
  shown.form->List1.Add(row("A2"));
  REQUIRE(comesTrue([&] { return view.model()->rowCount() == 3; }));
  CHECK(cell(view, 0, 0) == "a");
  CHECK(cell(view, 1, 0) == "A2");
  CHECK(view.selectionModel()->selectedRows().value(0).row() == 2);
  CHECK(shown.form->List1.SelectedRow() == 3);
}

TEST_CASE("Rows that come and go while others wait to be shown end up as they are in the list") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  for (const char* text : {"a", "b", "c", "d"}) shown.form->List1.Add(row(text));
  shown.form->List1.Remove(3);
  shown.form->List1.Insert(1, row("first"));
  shown.form->List1.Insert(4, row("between"));
  shown.form->List1.SetSubItem(5, 1, "last");
  shown.form->List1.SelectRow(5);
  REQUIRE(comesTrue([&] { return view.model()->rowCount() == 5; }));
  Lines texts;
  for (int line = 0; line < 5; ++line) texts.push_back(cell(view, line, 0).toStdString());
  CHECK(texts == Lines{"first", "a", "b", "between", "d"});
  CHECK(cell(view, 4, 1) == "last");
  CHECK(view.selectionModel()->selectedRows().value(0).row() == 4);
}

TEST_CASE("The user's selection reaches the list, and after a removal the next row has it, for keys too") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  fill(shown, {"a", "b", "c"});
  const QRect second = view.visualRect(view.model()->index(1, 1));
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, second.center());
  CHECK(shown.form->List1.SelectedRow() == 2);
  shown.form->List1.Remove(2);
  CHECK(view.selectionModel()->selectedRows().value(0).row() == 1);
  CHECK(view.currentIndex().row() == 1);
  shown.form->List1.Remove(2);
  CHECK(view.selectionModel()->selectedRows().value(0).row() == 0);
  QTest::keyClick(&view, Qt::Key_Up);
  CHECK(shown.form->List1.SelectedRow() == 1);
  shown.form->List1.Remove(1);
  CHECK_FALSE(view.selectionModel()->hasSelection());
}

TEST_CASE("What was selected before a list had a window is selected in it") {
  QtDesk desk{trial::trialDesigns()};
  const auto form = std::make_shared<trial::TrialForm>(desk);
  for (const char* text : {"a", "b", "c"}) form->List1.Add(row(text));
  form->List1.SelectRow(2);
  form->show();
  const auto* view = desk.window(*form)->findChild<QTreeView*>("List1");
  REQUIRE(view->selectionModel()->selectedRows().size() == 1);
  CHECK(view->selectionModel()->selectedRows().first().row() == 1);
}

TEST_CASE("Sorting keeps the place that the user has come to, and what is selected with it") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  for (int n = 0; n < 200; ++n) shown.form->List1.Add(row(std::to_string(999 - n)));
  shown.form->List1.SelectRow(150);
  REQUIRE(comesTrue([&] { return view.model()->rowCount() == 200; }));
  view.scrollTo(view.currentIndex());
  const int place = view.verticalScrollBar()->value();
  REQUIRE(place > 0);
  shown.form->List1.SetSorted(true);
  CHECK(view.currentIndex().row() == 50);
  CHECK(view.selectionModel()->selectedRows().value(0).row() == 50);
  CHECK(shown.form->List1.SelectedRow() == 51);
  CHECK(view.verticalScrollBar()->value() == place);
}

TEST_CASE("A double click tells the row") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  fill(shown, {"a", "b"});
  const QPoint place = view.visualRect(view.model()->index(1, 0)).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
  CHECK(shown.form->heard.back() == "double 2");
}

TEST_CASE("The space key and the box itself tick a row") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  fill(shown, {"a", "b"});
  shown.form->List1.SelectRow(2);
  QTest::keyClick(&view, Qt::Key_Space);
  CHECK(shown.form->List1.Item(2).Checked);
  CHECK(view.model()->index(1, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked);
  view.model()->setData(view.model()->index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
  CHECK(shown.form->List1.CheckedCount() == 0);
  CHECK(shown.form->heard == Lines{"check 2", "check 2"});
}

TEST_CASE("A click on a row's name selects it, the box ticks, and a double click on the name ticks too") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  shown.form->List1.DblClick = nullptr;
  fill(shown, {"a", "b"});
  const QPoint name = view.visualRect(view.model()->index(1, 0)).center();
  const QPoint box = boxOf(view, view.model()->index(1, 0)).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, name);
  CHECK(shown.form->List1.SelectedRow() == 2);
  CHECK(shown.form->List1.CheckedCount() == 0);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box);
  CHECK(shown.form->List1.Item(2).Checked);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, name);
  CHECK_FALSE(shown.form->List1.Item(2).Checked);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box);
  CHECK(shown.form->List1.Item(2).Checked);
  // Both clicks are the box's own, and there is no third.
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, box);
  CHECK(shown.form->List1.Item(2).Checked);
}

TEST_CASE("A double click that the program answers ticks nothing") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  fill(shown, {"a", "b"});
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(1, 0)).center());
  CHECK(shown.form->List1.CheckedCount() == 0);
}

TEST_CASE("The colour of the selected row reaches the right edge of the list, and follows the selection") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  view.resize(600, 200);
  fill(shown, {"a", "b"});
  const auto edgeOf = [&](int line) {
    const QRect place = view.visualRect(view.model()->index(line, 0));
    return view.viewport()->grab().toImage().pixelColor(view.viewport()->width() - 2, place.center().y());
  };
  const auto within = [&](int line) {
    const QRect place = view.visualRect(view.model()->index(line, 1));
    return view.viewport()->grab().toImage().pixelColor(place.left() + 2, place.top() + 2);
  };
  REQUIRE(view.header()->length() < view.viewport()->width());
  shown.form->List1.SelectRow(1);
  CHECK(edgeOf(0) == within(0));
  CHECK(edgeOf(1) == view.palette().color(QPalette::Base));
  shown.form->List1.SelectRow(2);
  CHECK(edgeOf(0) == view.palette().color(QPalette::Base));
  CHECK(edgeOf(1) == within(1));
}

TEST_CASE("A text that its cell cuts is told whole under the pointer, and one that fits is not") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  const std::string longName = std::string(60, 'n') + " <b> & co.mp3";
  fill(shown, {"short", longName.c_str()});
  shown.form->List1.SetColumnWidth(1, 3000);
  const auto toldAt = [&](int line) {
    QToolTip::hideText();
    const QPoint place = view.visualRect(view.model()->index(line, 0)).center();
    QHelpEvent help(QEvent::ToolTip, place, view.viewport()->mapToGlobal(place));
    QApplication::sendEvent(view.viewport(), &help);
    QTextDocument shownText;
    shownText.setHtml(QToolTip::text());
    return shownText.toPlainText().toStdString();
  };
  CHECK(toldAt(0).empty());
  CHECK(toldAt(1) == longName);
}

TEST_CASE("What is told of a cut text goes when the pointer comes to a text that fits") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  fill(shown, {"short", std::string(60, 'n').c_str()});
  shown.form->List1.SetColumnWidth(1, 3000);
  const auto point = [&](int line) {
    const QPoint place = view.visualRect(view.model()->index(line, 0)).center();
    QHelpEvent help(QEvent::ToolTip, place, view.viewport()->mapToGlobal(place));
    QApplication::sendEvent(view.viewport(), &help);
  };
  point(1);
  CHECK(QToolTip::isVisible());
  point(0);
  CHECK(comesTrue([] { return !QToolTip::isVisible(); }));
}

TEST_CASE("Columns come, go and take their width in whole pixels, and the user's width comes back in twips") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  CHECK(view.header()->sectionSize(0) == 100);
  shown.form->List1.SetColumnWidth(1, 1529);
  CHECK(view.header()->sectionSize(0) == 101);
  CHECK(shown.form->List1.columns()[0].width == 1529);
  view.header()->resizeSection(1, 77);
  CHECK(shown.form->List1.columns()[1].width == 77 * 15);
  shown.form->List1.AddColumn({"c", "C", 600});
  CHECK(view.header()->sectionSize(2) == 40);
  CHECK(view.header()->sectionSize(1) == 77);
  shown.form->List1.RemoveColumn(3);
  CHECK(view.model()->columnCount() == 2);
}

TEST_CASE("A click on a column's head sorts nothing, since a row's place ties it to its track") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  fill(shown, {"b", "c", "a"});
  for (int column = 0; column < view.header()->count(); ++column) {
    const QPoint head(view.header()->sectionViewportPosition(column) + 20, view.header()->height() / 2);
    QTest::mouseClick(view.header()->viewport(), Qt::LeftButton, Qt::NoModifier, head);
    QTest::mouseDClick(view.header()->viewport(), Qt::LeftButton, Qt::NoModifier, head);
  }
  CHECK_FALSE(view.header()->isSortIndicatorShown());
  CHECK(cell(view, 0, 0) == "b");
  CHECK(cell(view, 2, 0) == "a");
  CHECK(shown.form->List1.Item(1).Text == "b");
  CHECK(shown.form->heard.empty());
}

TEST_CASE("A list tells its size in twips") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  CHECK(shown.form->List1.Width == view.width() * 15.0);
  CHECK(shown.form->List1.Height == view.height() * 15.0);
}

TEST_CASE("A red row is red, and lighter on a dark background, while a plain row takes the palette's text") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  shown.form->List1.Add(row("a"));
  CHECK_FALSE(view.model()->index(0, 0).data(Qt::ForegroundRole).isValid());
  shown.form->List1.SetForeColor(1, 255);
  CHECK(view.model()->index(0, 0).data(Qt::ForegroundRole).value<QColor>() == QColor(255, 0, 0));
  const QColor onDark = shownColour(255, QPalette(QColor(40, 40, 40)));
  CHECK(onDark.hslHue() == 0);
  CHECK(onDark.lightness() > 150);
}

TEST_CASE("Dropped files arrive in their order with their bytes, and other things are not welcome") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  Lines dropped;
  QMimeData files;
  files.setUrls({QUrl::fromEncoded("file:///music/b%20%25%FF.mp3"), QUrl("http://example.org/c.mp3"),
                 QUrl::fromLocalFile("/music/a.wav")});
  CHECK_FALSE(drop(*view.viewport(), files));

  shown.form->List1.FilesDropped = [&](const Lines& paths) { dropped = paths; };
  CHECK(drop(*view.viewport(), files));
  CHECK(comesTrue([&] { return dropped == Lines{"/music/b %\xFF.mp3", "/music/a.wav"}; }));

  QMimeData text;
  text.setText("/music/a.wav");
  CHECK_FALSE(drop(*view.viewport(), text));
}

TEST_CASE("The box of a row stands where its list begins, also from right to left") {
  trial::Shown shown;
  auto& view = shown.widget<QTreeView>("List1");
  shown.form->List1.Add(row("a"));
  const QModelIndex first = view.model()->index(0, 0);
  CHECK(boxOf(view, first).center().x() < view.visualRect(first).center().x());
  view.setLayoutDirection(Qt::RightToLeft);
  CHECK(boxOf(view, first).center().x() > view.visualRect(first).center().x());
}

}  // namespace trackloom
