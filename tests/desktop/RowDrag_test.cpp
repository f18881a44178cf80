#include <QDialog>
#include <QHeaderView>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <catch2/catch.hpp>

#include "desktop/Make.h"
#include "desktop/Trial.h"

namespace trackloom {

using Lines = std::vector<std::string>;
using Rows = std::vector<int>;

namespace {

/// Two lists, one of which takes a set of rows and the other drags its rows; it notes the heights that it hears.
struct ListsForm : Form {
  explicit ListsForm(FormHost& host) : Form(host, "frmLists", "") {
    dragged.MouseDown = [this](MouseButton button) {
      if (button == MouseButton::Left) dragged.Drag();
    };
    dragged.DragOver = [this](double y) { over.push_back(y); };
    dragged.DragDrop = [this](double y) { dropped.push_back(y); };
    dragged.RowMoved = [this](int by) { moved.push_back(by); };
  }
  ListView chosen{*this, "chosen", {{"a", "A"}}, {.multiSelect = true}};
  ListView dragged{*this, "dragged", {{"a", "A"}}};
  std::vector<double> over, dropped;
  Rows moved;
};

std::unique_ptr<QWidget> listsDesign() {
  auto window = std::make_unique<QDialog>();
  auto& column = make<QVBoxLayout>(*window);
  for (const char* name : {"chosen", "dragged"}) {
    auto& view = make<QTreeView>(*window);
    view.setObjectName(name);
    view.setFixedSize(300, 150);
    column.addWidget(&view);
  }
  return window;
}

struct Lists {
  std::vector<FaceDesign> designs{{"frmLists", &listsDesign}};
  QtDesk desk{designs};
  std::shared_ptr<ListsForm> form = std::make_shared<ListsForm>(desk);
  QTreeView* chosen = nullptr;
  QTreeView* dragged = nullptr;

  explicit Lists(int rows = 40) {
    for (int n = 1; n <= rows; ++n) {
      form->chosen.Add({"row " + std::to_string(n), {}});
      form->dragged.Add({"row " + std::to_string(n), {}});
    }
    form->show();
    chosen = desk.window(*form)->findChild<QTreeView*>("chosen");
    dragged = desk.window(*form)->findChild<QTreeView*>("dragged");
    REQUIRE(trial::comesTrue([&] { return dragged->model()->rowCount() == rows && dragged->viewport()->isVisible(); }));
  }
  int rowHeight() const { return dragged->visualRect(dragged->model()->index(0, 0)).height(); }
  /// A place in the viewport so far down in the visible row that counts from 1.
  QPoint place(double visibleRow) const { return {20, static_cast<int>((visibleRow - 1) * rowHeight())}; }
  void press(QPoint place) const { QTest::mousePress(dragged->viewport(), Qt::LeftButton, {}, place); }
  void moveTo(QPoint place) const {
    QMouseEvent move(QEvent::MouseMove, QPointF(place), dragged->viewport()->mapToGlobal(QPointF(place)), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(dragged->viewport(), &move);
  }
  void release(QPoint place) const { QTest::mouseRelease(dragged->viewport(), Qt::LeftButton, {}, place); }
};

Rows rowsIn(const QTreeView& view) {
  Rows rows;
  for (const QModelIndex& index : view.selectionModel()->selectedRows()) rows.push_back(index.row() + 1);
  std::sort(rows.begin(), rows.end());
  return rows;
}

}  // namespace

TEST_CASE("A list of multiple selection shows its set, and tells the one that the user makes of it") {
  const Lists lists;
  lists.form->chosen.select({2, 3, 7});
  CHECK(rowsIn(*lists.chosen) == Rows{2, 3, 7});
  lists.form->chosen.SetSelected(3, false);
  CHECK(rowsIn(*lists.chosen) == Rows{2, 7});
  const auto centre = [&](int row) { return lists.chosen->visualRect(lists.chosen->model()->index(row, 0)).center(); };
  QTest::mouseClick(lists.chosen->viewport(), Qt::LeftButton, {}, centre(0));
  CHECK(lists.form->chosen.SelectedRows() == Rows{1});
  QTest::mouseClick(lists.chosen->viewport(), Qt::LeftButton, Qt::ControlModifier, centre(2));
  CHECK(lists.form->chosen.SelectedRows() == Rows{1, 3});
  QTest::mouseClick(lists.chosen->viewport(), Qt::LeftButton, Qt::ControlModifier, centre(0));
  CHECK(lists.form->chosen.SelectedRows() == Rows{3});
  QTest::keyClick(lists.chosen, Qt::Key_A, Qt::ControlModifier);
  CHECK(lists.form->chosen.SelectedRows().size() == 40);
}

TEST_CASE("A drag tells heights in rows of 245 twips, the pressed row first, whatever the font") {
  const int points = GENERATE(9, 30);
  const Lists lists;
  QFont font;
  font.setPointSize(points);
  lists.dragged->setFont(font);
  QCoreApplication::sendPostedEvents();
  const QPoint first = lists.place(1.5);
  const QPoint second = lists.place(2.5);
  lists.press(first);
  CHECK(lists.form->dragged.SelectedRow() == 1);
  lists.moveTo(first + QPoint(1, 0));
  CHECK(lists.form->over.empty());
  lists.moveTo(second);
  REQUIRE(lists.form->over.size() == 2);
  const double margin = 245.0 / lists.rowHeight();
  CHECK(lists.form->over[0] == Approx(245 * 1.5).margin(margin));
  CHECK(lists.form->over[1] == Approx(245 * 2.5).margin(margin));
  lists.release(second);
  REQUIRE(lists.form->dropped.size() == 1);
  CHECK(lists.form->dropped[0] == Approx(245 * 2.5).margin(margin));
  CHECK(lists.form->dragged.SelectedRow() == 1);
  const double viewHeight = lists.dragged->viewport()->height();
  CHECK(lists.form->dragged.DragHeight() == Approx(245 * (1 + viewHeight / lists.rowHeight())));
}

TEST_CASE("A drag over the head is less than one row high, and outside of the list it is neither hover nor drop") {
  const Lists lists;
  lists.press(lists.place(1.5));
  const int head = lists.dragged->header()->height();
  lists.moveTo(QPoint(20, -head / 2));
  REQUIRE(lists.form->over.size() == 2);
  CHECK(lists.form->over[1] == Approx(245 / 2.0).margin(245.0 / head));
  lists.moveTo(QPoint(20, -head - 50));
  CHECK(lists.form->over.size() == 2);
  lists.release(QPoint(20, -head - 50));
  CHECK(lists.form->dropped.empty());
  CHECK_FALSE(lists.form->dragged.dragging());
}

TEST_CASE("A click is no drag") {
  const Lists lists;
  lists.press(lists.place(3.5));
  lists.release(lists.place(3.5));
  CHECK(lists.form->over.empty());
  CHECK(lists.form->dropped.empty());
  CHECK(lists.form->dragged.SelectedRow() == 3);
}

TEST_CASE("Ten pixels scroll one row, and the list knows the first row that is seen") {
  const Lists lists;
  ListView& list = lists.form->dragged;
  CHECK(list.FirstVisibleRow() == 1);
  list.ScrollBy(0, -10);
  CHECK(list.FirstVisibleRow() == 1);
  list.ScrollBy(0, 10);
  CHECK(list.FirstVisibleRow() == 2);
  list.ScrollBy(0, 10);
  CHECK(list.FirstVisibleRow() == 3);
  list.ScrollBy(0, -10);
  CHECK(list.FirstVisibleRow() == 2);
  CHECK(lists.dragged->indexAt(QPoint(0, 0)).row() == 1);
  lists.dragged->verticalScrollBar()->setValue(10);
  CHECK(list.FirstVisibleRow() == 11);
  lists.press(lists.place(1.5));
  lists.moveTo(lists.place(4.5));
  CHECK(lists.form->over[0] == Approx(245 * 1.5).margin(245.0 / lists.rowHeight()));
}

TEST_CASE("Alt with Up and Down moves a row of a list whose rows are dragged, and without Alt they select") {
  const Lists lists;
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Left})
    QTest::keyClick(lists.dragged, key, Qt::AltModifier);
  QTest::keyClick(lists.dragged, Qt::Key_Down, Qt::AltModifier | Qt::KeypadModifier);
  CHECK(lists.form->moved == Rows{1, -1, 1});
  lists.form->dragged.SelectRow(1);
  QTest::keyClick(lists.dragged, Qt::Key_Down, Qt::AltModifier);
  CHECK(lists.form->dragged.SelectedRow() == 1);
  CHECK(lists.dragged->currentIndex().row() == 0);
  lists.form->moved.pop_back();
  QTest::keyClick(lists.dragged, Qt::Key_Down);
  CHECK(lists.form->dragged.SelectedRow() == 2);
  QTest::keyClick(lists.dragged, Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
  CHECK(lists.form->moved.size() == 3);
}

TEST_CASE("A drop below the last row leaves the selection that the drop makes") {
  const Lists lists(3);
  lists.form->dragged.DragDrop = [&](double) {
    lists.form->dragged.Remove(1);
    lists.form->dragged.Insert(3, {"moved", {}});
    lists.form->dragged.SelectRow(3);
  };
  // Of a row that is selected already, the view takes the release for the click.
  lists.form->dragged.SelectRow(1);
  lists.press(lists.place(1.5));
  lists.moveTo(lists.place(2.5));
  lists.release(lists.place(4.5));
  CHECK(lists.form->dragged.SelectedRows() == Rows{3});
  CHECK(rowsIn(*lists.dragged) == Rows{3});
  QTest::mouseClick(lists.dragged->viewport(), Qt::LeftButton, {}, lists.place(1.5));
  CHECK(rowsIn(*lists.dragged) == Rows{1});
}

TEST_CASE("A list is scrolled to both sides by as much as the program asks for") {
  const Lists lists;
  lists.dragged->header()->setStretchLastSection(false);
  lists.dragged->header()->resizeSection(0, 1000);
  QCoreApplication::processEvents();
  REQUIRE(lists.dragged->horizontalScrollBar()->maximum() > 20);
  lists.form->dragged.ScrollBy(12, 0);
  CHECK(lists.dragged->horizontalScrollBar()->value() == 12);
  CHECK(lists.dragged->verticalScrollBar()->value() == 0);
  lists.form->dragged.ScrollBy(-5, 49);
  CHECK(lists.dragged->horizontalScrollBar()->value() == 7);
  CHECK(lists.dragged->verticalScrollBar()->value() == 3);
}

}  // namespace trackloom
