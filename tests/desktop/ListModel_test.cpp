#include "desktop/ListModel.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTreeView>
#include <catch2/catch.hpp>

#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;

namespace {

ListItem row(const char* text) {
  ListItem item;
  item.Text = text;
  return item;
}

}  // namespace

TEST_CASE("A list shows rows and no tree, edits nothing, cuts texts in their middle and keeps its columns in order") {
  trial::Shown shown;
  const auto& view = shown.widget<QTreeView>("List1");
  CHECK_FALSE(view.rootIsDecorated());
  CHECK_FALSE(view.itemsExpandable());
  CHECK(view.uniformRowHeights());
  CHECK(view.allColumnsShowFocus());
  CHECK(view.editTriggers() == QAbstractItemView::NoEditTriggers);
  CHECK(view.selectionMode() == QAbstractItemView::SingleSelection);
  CHECK(view.textElideMode() == Qt::ElideMiddle);
  CHECK(view.acceptDrops());
  CHECK_FALSE(view.header()->sectionsMovable());
  CHECK(view.verticalScrollMode() == QAbstractItemView::ScrollPerItem);
}

TEST_CASE("A tree of folders has no head, edits nothing and has rows of one height") {
  trial::Shown shown;
  const auto& tree = shown.widget<QTreeView>("FT1");
  CHECK(tree.isHeaderHidden());
  CHECK(tree.uniformRowHeights());
  CHECK(tree.editTriggers() == QAbstractItemView::NoEditTriggers);
}

TEST_CASE("A list's model tells heads, alignments, ticks and flags column by column") {
  trial::Shown shown;
  shown.form->List1.Add({});
  QAbstractItemModel& model = *shown.widget<QTreeView>("List1").model();
  const QModelIndex name = model.index(0, 0);
  const QModelIndex second = model.index(0, 1);
  CHECK(model.headerData(0, Qt::Horizontal, Qt::DisplayRole) == "A");
  CHECK(model.headerData(1, Qt::Horizontal, Qt::DisplayRole) == "B");
  CHECK_FALSE(model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
  CHECK_FALSE(model.headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
  CHECK_FALSE(model.headerData(0, Qt::Horizontal, Qt::BackgroundRole).isValid());
  for (const auto& [column, side] : {std::pair(0, Qt::AlignLeft), std::pair(1, Qt::AlignRight)}) {
    const QVariant due = QVariant::fromValue(side | Qt::AlignVCenter);
    CHECK(model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole) == due);
    CHECK(model.index(0, column).data(Qt::TextAlignmentRole) == due);
  }
  CHECK(name.data(Qt::CheckStateRole) == static_cast<int>(Qt::Unchecked));
  CHECK_FALSE(second.data(Qt::CheckStateRole).isValid());
  CHECK_FALSE(second.data(Qt::DecorationRole).isValid());
  const Qt::ItemFlags plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  CHECK(model.flags(name) == (plain | Qt::ItemIsUserCheckable));
  CHECK(model.flags(second) == plain);
  CHECK(model.flags({}) == Qt::NoItemFlags);
  CHECK(model.rowCount(name) == 0);
  CHECK(model.columnCount(name) == 0);
  CHECK_FALSE(model.setData(name, "other", Qt::EditRole));
  CHECK_FALSE(model.setData(name, static_cast<int>(Qt::Checked), Qt::AccessibleTextRole));
  CHECK(model.setData(name, static_cast<int>(Qt::Checked), Qt::CheckStateRole));
  CHECK(shown.form->List1.Item(1).Checked);
}

TEST_CASE("A change of one row is told for that row, from its first column to its last") {
  trial::Shown shown;
  for (const char* text : {"a", "b"}) shown.form->List1.Add(row(text));
  QAbstractItemModel& model = *shown.widget<QTreeView>("List1").model();
  REQUIRE(comesTrue([&] { return model.rowCount() == 2; }));
  QSignalSpy told(&model, &QAbstractItemModel::dataChanged);
  shown.form->List1.SetForeColor(2, 255);
  REQUIRE(told.count() == 1);
  CHECK(told[0][0].toModelIndex() == model.index(1, 0));
  CHECK(told[0][1].toModelIndex() == model.index(1, 1));
}

TEST_CASE("Whatever is done to a list, its model tells the toolkit before and after") {
  trial::Shown shown;
  ListView& list = shown.form->List1;
  QAbstractItemModel& model = *shown.widget<QTreeView>("List1").model();
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  for (const char* text : {"d", "b", "c"}) list.Add(row(text));
  list.SetSorted(true);
  CHECK(model.rowCount() == 3);
  CHECK(model.index(0, 0).data() == "b");
  list.SetSorted(false);
  list.Insert(1, row("first"));
  list.Insert(5, row("last"));
  list.Remove(2);
  REQUIRE(comesTrue([&] { return model.rowCount() == list.Count(); }));
  list.AddColumn({"c", "C", 600});
  CHECK(model.columnCount() == 3);
  list.Remove(list.Count());
  list.Clear();
  CHECK(model.rowCount() == 0);
}

TEST_CASE("A list whose form has gone is empty, answers nothing and takes nothing") {
  auto shown = std::make_unique<trial::Shown>();
  shown->form->List1.Add(row("a"));
  auto& model = dynamic_cast<ListModel&>(*shown->widget<QTreeView>("List1").model());
  QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
  REQUIRE(model.rowCount() == 1);
  shown->form->unload();
  CHECK(resets.count() == 1);
  CHECK(model.rowCount() == 0);
  CHECK_FALSE(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).isValid());
  CHECK_FALSE(model.setData(model.index(0, 0), 2, Qt::CheckStateRole));
  CHECK(model.showsAllRows());
}

}  // namespace trackloom
