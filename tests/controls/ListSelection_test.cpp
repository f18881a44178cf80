#include <catch2/catch.hpp>

#include "controls/Form.h"
#include "controls/ListView.h"
#include "fakes/ErrorNumber.h"
#include "fakes/ScriptedDesk.h"

namespace trackloom {

using Rows = std::vector<int>;

namespace {

struct TwoLists : Form {
  explicit TwoLists(FormHost& host) : Form(host, "TwoLists", "") {
    for (const char* text : {"b", "d", "a", "c"}) {
      single.Add({text, {}});
      multi.Add({text, {}});
    }
    changes = multi.listChanged.connect([this](const ListChange& change) {
      if (change.kind == ListChange::Kind::Selection) heard.push_back(change.row);
    });
  }
  ListView single{*this, "single", {{"a", "A"}}};
  ListView multi{*this, "multi", {{"a", "A"}}, {.multiSelect = true}};
  Connection changes;
  Rows heard;
};

struct Desk {
  fakes::ScriptedDesk host;
  TwoLists form{host};
  ListView& single = form.single;
  ListView& multi = form.multi;
};

}  // namespace

TEST_CASE("A list of single selection keeps one row at most, whoever selects") {
  Desk desk;
  desk.single.select({3, 2});
  CHECK(desk.single.SelectedRows() == Rows{2});
  desk.single.SetSelected(4, true);
  CHECK(desk.single.SelectedRows() == Rows{4});
  CHECK(desk.single.Selected(4));
  CHECK_FALSE(desk.single.Selected(2));
  desk.single.SetSelected(2, false);
  CHECK(desk.single.SelectedRow() == 4);
  desk.single.SetSelected(4, false);
  CHECK(desk.single.SelectedRow() == 0);
  desk.single.SelectRow(1);
  desk.single.select({});
  CHECK(desk.single.SelectedRows().empty());
}

TEST_CASE("A list of multiple selection keeps a set of rows, and tells each change of it once") {
  Desk desk;
  desk.multi.select({4, 2});
  CHECK(desk.multi.SelectedRows() == Rows{2, 4});
  CHECK(desk.multi.SelectedRow() == 2);
  desk.multi.select({2, 4});
  desk.multi.SetSelected(1, true);
  CHECK(desk.multi.SelectedRows() == Rows{1, 2, 4});
  desk.multi.SetSelected(2, false);
  CHECK(desk.multi.SelectedRows() == Rows{1, 4});
  desk.multi.SelectRow(3);
  CHECK(desk.multi.SelectedRows() == Rows{3});
  CHECK(desk.form.heard == Rows{2, 1, 1, 3});
}

TEST_CASE("A set of selected rows follows its rows through sorting, removal and clearing") {
  Desk desk;
  desk.multi.select({1, 2});
  desk.multi.SetSorted(true);
  CHECK(desk.multi.SelectedRows() == Rows{2, 4});
  desk.multi.Remove(2);
  CHECK(desk.multi.SelectedRows() == Rows{3});
  desk.multi.Insert(1, {"0", {}});
  CHECK(desk.multi.SelectedRows() == Rows{4});
  desk.multi.Clear();
  CHECK(desk.multi.SelectedRows().empty());
}

TEST_CASE("Selecting a row outside raises error 9, and the user selects nothing in a disabled list") {
  Desk desk;
  CHECK(fakes::errorNumberOf([&] { desk.multi.SetSelected(5, true); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.multi.Selected(0); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.multi.select({1, 5}); }) == 9);
  CHECK(desk.multi.SelectedRows().empty());
  desk.multi.Enabled = false;
  desk.multi.select({1});
  CHECK(desk.multi.SelectedRows().empty());
}

TEST_CASE("The last row that goes takes the selection with it, selected or not") {
  Desk desk;
  for (ListView* list : {&desk.single, &desk.multi}) {
    list->SelectRow(4);
    for (int left = 4; left > 0; --left) {
      CHECK(list->SelectedRows() == Rows{left});
      list->Remove(left);
    }
    CHECK(list->Count() == 0);
    CHECK(list->SelectedRows().empty());
    list->Add({"new", {}});
    CHECK(list->SelectedRows().empty());
  }
}

}  // namespace trackloom
