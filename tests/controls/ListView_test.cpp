#include "controls/ListView.h"

#include <algorithm>
#include <catch2/catch.hpp>

#include "controls/Form.h"
#include "fakes/ErrorNumber.h"
#include "fakes/ScriptedDesk.h"

namespace trackloom {

namespace {

struct ListForm : Form {
  explicit ListForm(FormHost& host) : Form(host, "ListForm", "") {}
  ListView list{*this, "list", {{"a", "A"}, {"b", "B"}}, {.checkBoxes = true}};
};

ListItem item(const std::string& text, const std::string& second = "") {
  ListItem made;
  made.Text = text;
  made.SubItems = {second};
  return made;
}

std::string order(const ListView& list) {
  std::string texts;
  for (int row = 1; row <= list.Count(); ++row) texts += list.Item(row).Text;
  return texts;
}

struct Desk {
  fakes::ScriptedDesk host;
  ListForm form{host};
  ListView& list = form.list;
};

}  // namespace

TEST_CASE("A sorted list takes a row behind its equals, ignoring case") {
  Desk desk;
  desk.list.SetSorted(true);
  for (const char* text : {"b", "C", "a", "B"}) desk.list.Add(item(text));
  CHECK(order(desk.list) == "abBC");
  desk.list.SetSorted(false);
  desk.list.Add(item("A"));
  CHECK(order(desk.list) == "abBCA");
}

TEST_CASE("Setting the key sorts at once, stably, and changing a cell moves nothing") {
  Desk desk;
  desk.list.Add(item("x", "2"));
  desk.list.Add(item("y", "1"));
  desk.list.Add(item("z", "2"));
  desk.list.SelectRow(1);
  desk.list.SetSortKey(1);
  CHECK(order(desk.list) == "xyz");
  desk.list.SetSorted(true);
  CHECK(order(desk.list) == "yxz");
  CHECK(desk.list.SelectedRow() == 2);
  desk.list.SetSubItem(1, 1, "9");
  CHECK(order(desk.list) == "yxz");
}

TEST_CASE("Rows and columns outside raise error 9") {
  Desk desk;
  desk.list.Add(item("x"));
  CHECK(fakes::errorNumberOf([&] { desk.list.Item(0); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.list.Item(2); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.list.Remove(2); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.list.SubItem(1, 2); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.list.SelectRow(2); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.list.RemoveColumn(3); }) == 9);
  CHECK(fakes::errorNumberOf([&] { desk.list.SubItem(1, 1); }) == 0);
}

TEST_CASE("Texts are found in any case, counted as long as a row bears them") {
  Desk desk;
  desk.list.Add(item("Song"));
  desk.list.Add(item("SONG"));
  CHECK(desk.list.HasText("song"));
  desk.list.Remove(1);
  CHECK(desk.list.HasText("song"));
  desk.list.Remove(1);
  CHECK_FALSE(desk.list.HasText("song"));
  desk.list.Add(item("Song"));
  desk.list.Clear();
  CHECK_FALSE(desk.list.HasText("song"));
}

TEST_CASE("The selection follows its row, and goes with it") {
  Desk desk;
  for (const char* text : {"a", "b", "c"}) desk.list.Add(item(text));
  desk.list.SelectRow(2);
  desk.list.Insert(1, item("0"));
  CHECK(desk.list.SelectedRow() == 3);
  desk.list.Remove(1);
  CHECK(desk.list.SelectedRow() == 2);
}

TEST_CASE("When the selected row goes, the next one is selected, or the last, or none") {
  Desk desk;
  for (const char* text : {"a", "b", "c"}) desk.list.Add(item(text));
  desk.list.SelectRow(2);
  desk.list.Remove(2);
  CHECK(desk.list.SelectedRow() == 2);
  desk.list.Remove(2);
  CHECK(desk.list.SelectedRow() == 1);
  desk.list.Remove(1);
  CHECK(desk.list.SelectedRow() == 0);
}

TEST_CASE("Only the user's tick raises the check event, and ticks are counted") {
  Desk desk;
  desk.list.Add(item("a"));
  desk.list.Add(item("b"));
  int heard = 0;
  desk.list.ItemCheck = [&](int row) { heard += row; };
  desk.list.SetChecked(1, true);
  CHECK(heard == 0);
  desk.list.check(2, true);
  CHECK(heard == 2);
  CHECK(desk.list.CheckedCount() == 2);
  desk.list.Remove(1);
  CHECK(desk.list.CheckedCount() == 1);
  desk.list.Enabled = false;
  desk.list.check(1, false);
  CHECK(desk.list.CheckedCount() == 1);
}

TEST_CASE("Whoever mirrors the rows hears of each change once, and of what moves rows or columns before it happens") {
  Desk desk;
  std::string heard;
  const auto hear = [&](const ListChange& change) {
    heard += "IRCSXLWK"[static_cast<int>(change.kind)] + std::to_string(change.row) + "/" +
             std::to_string(desk.list.Count()) + " ";
  };
  const Connection before = desk.list.listChanging.connect(hear);
  const Connection after = desk.list.listChanged.connect(hear);
  desk.list.Add(item("a"));
  desk.list.SelectRow(1);
  desk.list.SelectRow(1);
  desk.list.SetChecked(1, true);
  desk.list.SetChecked(1, true);
  desk.list.SetSorted(true);
  desk.list.SetColumnWidth(1, 600);
  desk.list.SetColumnWidth(1, 600);
  desk.list.AddColumn({"c", "C"});
  desk.list.Remove(1);
  desk.list.Clear();
  CHECK(heard == "I1/0 I1/1 K1/1 C1/1 S0/1 S0/1 W0/1 L0/1 L0/1 R1/1 R1/0 X0/0 X0/0 ");
}

namespace {

/// What stands in a row: text, cells, tick and colour, as a face would show it.
std::string shownRow(const ListView& list, int row) {
  std::string shown = list.Item(row).Text;
  for (int index = 1; index < static_cast<int>(list.columns().size()); ++index) shown += "|" + list.SubItem(row, index);
  return shown + (list.Item(row).Checked ? "+" : "") + "#" + std::to_string(list.Item(row).ForeColor);
}

std::vector<std::string> shownRows(const ListView& list) {
  std::vector<std::string> rows;
  for (int row = 1; row <= list.Count(); ++row) rows.push_back(shownRow(list, row));
  return rows;
}

/// Keeps a list's rows as a face does: it reads the list when it is told of a change, and only what the change names.
struct RowMirror {
  explicit RowMirror(ListView& mirrored)
      : list(mirrored), connection(list.listChanged.connect([this](const ListChange& change) { follow(change); })) {}

  void follow(const ListChange& change) {
    const auto at = rows.begin() + (std::max(change.row - 1, 0));
    switch (change.kind) {
      case ListChange::Kind::Inserted:
        rows.insert(at, shownRow(list, change.row));
        break;
      case ListChange::Kind::Removed:
        rows.erase(at);
        break;
      case ListChange::Kind::RowChanged:
        *at = shownRow(list, change.row);
        break;
      case ListChange::Kind::Selection:
        break;
      default:
        rows = shownRows(list);
        columns = list.columns().size();
        widest = list.columns().front().width;
    }
    selected = list.SelectedRow();
    ticks = list.CheckedCount();
  }
  bool agrees() const {
    return rows == shownRows(list) && selected == list.SelectedRow() && ticks == list.CheckedCount();
  }

  ListView& list;
  std::vector<std::string> rows;
  std::size_t columns = 0;
  double widest = 0;
  int selected = 0;
  int ticks = 0;
  Connection connection;
};

}  // namespace

TEST_CASE("Whoever mirrors the rows can read each change when it is told") {
  Desk desk;
  RowMirror mirror(desk.list);
  const auto holds = [&](auto change) {
    change();
    return mirror.agrees();
  };
  CHECK(holds([&] { desk.list.Add(item("b", "2")); }));
  CHECK(holds([&] { desk.list.Insert(1, item("c", "1")); }));
  CHECK(holds([&] { desk.list.SetSubItem(2, 1, "9"); }));
  CHECK(mirror.rows.back() == "b|9#-2147483640");
  CHECK(holds([&] { desk.list.SetForeColor(1, 255); }));
  CHECK(mirror.rows.front() == "c|1#255");
  CHECK(holds([&] { desk.list.SetChecked(1, true); }));
  CHECK(holds([&] { desk.list.SelectRow(2); }));
  CHECK(holds([&] { desk.list.SetSorted(true); }));
  CHECK(mirror.selected == 1);
  CHECK(holds([&] { desk.list.SetSortKey(1); }));
  CHECK(mirror.selected == 2);
  CHECK(holds([&] { desk.list.Add(item("a", "5")); }));
  CHECK(holds([&] { desk.list.Remove(1); }));
  CHECK(holds([&] { desk.list.Clear(); }));
  CHECK(mirror.rows.empty());
}

TEST_CASE("Whoever mirrors the columns hears of each change of them, and of no width that is the same to half a twip") {
  Desk desk;
  RowMirror mirror(desk.list);
  desk.list.AddColumn({"c", "C"});
  CHECK(mirror.columns == 3);
  desk.list.SetColumnWidth(1, 2000);
  CHECK(mirror.widest == 2000);
  desk.list.SetColumnWidth(1, 2000.4);
  CHECK(mirror.widest == 2000);
  CHECK(desk.list.columns()[0].width == 2000);
  desk.list.SetColumnWidth(1, 2000.5);
  CHECK(mirror.widest == 2000.5);
  desk.list.SetColumnWidth(1, 2001);
  CHECK(mirror.widest == 2001);
  desk.list.RemoveColumn(2);
  CHECK(mirror.columns == 2);
  CHECK(desk.list.columns()[1].key == "c");
}

TEST_CASE("The last column and row are inside, those before the first and behind the last are not") {
  Desk desk;
  desk.list.Add(item("x", "cell"));
  const auto number = [&](auto call) { return fakes::errorNumberOf([&] { call(desk.list); }); };
  CHECK(number([](ListView& list) { list.RemoveColumn(0); }) == 9);
  CHECK(number([](ListView& list) { list.SetColumnWidth(0, 1); }) == 9);
  CHECK(number([](ListView& list) { list.SetColumnWidth(3, 1); }) == 9);
  CHECK(number([](ListView& list) { list.SubItem(1, 0); }) == 9);
  CHECK(number([](ListView& list) { list.SetSubItem(1, 0, "x"); }) == 9);
  CHECK(number([](ListView& list) { list.SetSubItem(1, 2, "x"); }) == 9);
  CHECK(number([](ListView& list) { list.Insert(0, {}); }) == 9);
  CHECK(number([](ListView& list) { list.Insert(3, {}); }) == 9);
  CHECK(number([](ListView& list) { list.SelectRow(-1); }) == 9);
  desk.list.SetColumnWidth(2, 77);
  CHECK(desk.list.columns()[1].width == 77);
  desk.list.Insert(2, item("y"));
  desk.list.SelectRow(2);
  desk.list.SelectRow(0);
  CHECK(desk.list.SelectedRow() == 0);
  desk.list.RemoveColumn(1);
  desk.list.RemoveColumn(1);
  CHECK(desk.list.columns().empty());
}

TEST_CASE("A cell that was never set reads empty and can be set, whatever cells there are") {
  Desk desk;
  desk.list.AddColumn({"c", "C"});
  desk.list.Add({});
  CHECK(desk.list.SubItem(1, 1).empty());
  desk.list.SetSubItem(1, 2, "third");
  desk.list.SetSubItem(1, 1, "second");
  desk.list.SetSubItem(1, 1, "again");
  CHECK(desk.list.SubItem(1, 1) == "again");
  CHECK(desk.list.SubItem(1, 2) == "third");
}

TEST_CASE("Adding tells the row that was taken, and a row without the key's cell stands first") {
  Desk desk;
  CHECK(desk.list.Add(item("b", "1")) == 1);
  CHECK(desk.list.Add(item("a", "1")) == 2);
  desk.list.SetSortKey(1);
  desk.list.SetSorted(true);
  CHECK(desk.list.Add(item("c", "0")) == 1);
  ListItem bare;
  bare.Text = "d";
  CHECK(desk.list.Add(bare) == 1);
  CHECK(desk.list.Add(item("e", "1")) == 5);
  desk.list.SetSortKey(0);
  CHECK(order(desk.list) == "abcde");
  desk.list.SetSortKey(-1);
  CHECK(desk.list.Add(item("bb")) == 3);
}

TEST_CASE("A row put in by its place while the list is sorted keeps that place and its key") {
  Desk desk;
  desk.list.SetSorted(true);
  desk.list.Add(item("a"));
  desk.list.Add(item("c"));
  desk.list.Insert(1, item("b"));
  CHECK(order(desk.list) == "bac");
  CHECK(desk.list.Add(item("z")) == 4);
  desk.list.SetSortKey(0);
  CHECK(order(desk.list) == "abcz");
}

TEST_CASE("Sorting a list without a selection selects nothing") {
  Desk desk;
  desk.list.Add(item("b"));
  desk.list.Add(item("a"));
  desk.list.SetSorted(true);
  CHECK(desk.list.SelectedRow() == 0);
}

TEST_CASE("A selection before the changed row stays, and one on the place of a new row moves on") {
  Desk desk;
  for (const char* text : {"a", "b", "c"}) desk.list.Add(item(text));
  desk.list.SelectRow(1);
  desk.list.Insert(2, item("x"));
  CHECK(desk.list.SelectedRow() == 1);
  desk.list.Remove(2);
  CHECK(desk.list.SelectedRow() == 1);
  desk.list.Insert(1, item("y"));
  CHECK(desk.list.SelectedRow() == 2);
  desk.list.Clear();
  CHECK(desk.list.SelectedRow() == 0);
}

TEST_CASE("Ticks are counted as they come, go, and come with their rows") {
  Desk desk;
  ListItem ticked = item("a");
  ticked.Checked = true;
  desk.list.Add(ticked);
  desk.list.Add(item("b"));
  CHECK(desk.list.CheckedCount() == 1);
  desk.list.SetChecked(1, false);
  CHECK(desk.list.CheckedCount() == 0);
  desk.list.SetChecked(1, true);
  desk.list.Remove(2);
  CHECK(desk.list.CheckedCount() == 1);
  desk.list.Clear();
  CHECK(desk.list.CheckedCount() == 0);
}

TEST_CASE("A tick stands before it is told, and ticking what is ticked tells nothing") {
  Desk desk;
  desk.list.Add(item("a"));
  desk.list.check(1, true);
  std::string heard;
  desk.list.ItemCheck = [&](int row) { heard += desk.list.Item(row).Checked ? "on " : "off "; };
  desk.list.check(1, true);
  desk.list.check(1, false);
  CHECK(heard == "off ");
}

TEST_CASE("A user changes the text of a row in its place, where the list lets texts be changed") {
  Desk desk;
  ListView list(desk.form, "names", {{"a", "A"}, {"b", "B"}}, {.editable = true});
  for (const char* text : {"one", "two"}) list.Add(item(text, "x"));
  list.SetSorted(true);
  std::vector<int> told;
  const Connection connection = list.listChanged.connect([&](const ListChange& change) {
    CHECK(change.kind == ListChange::Kind::RowChanged);
    told.push_back(change.row);
  });
  list.edit(1, "Zero");
  CHECK(list.Item(1).Text == "Zero");
  CHECK(list.SubItem(1, 1) == "x");
  CHECK(list.HasText("zero"));
  CHECK_FALSE(list.HasText("one"));
  list.edit(2, "zero");
  list.edit(1, "one");
  CHECK(list.HasText("ZERO"));
  CHECK(told == std::vector{1, 2, 1});
  CHECK(fakes::errorNumberOf([&] { list.edit(3, "x"); }) == RuntimeError::SubscriptOutOfRange);
  for (Property<bool>* state : {&list.Enabled, &list.Visible}) {
    *state = false;
    list.edit(1, "x");
    CHECK(list.Item(1).Text == "one");
    *state = true;
  }
  desk.list.Add(item("one"));
  desk.list.edit(1, "two");
  CHECK(desk.list.Item(1).Text == "one");
}

TEST_CASE("A list without boxes takes no tick from its user") {
  fakes::ScriptedDesk host;
  struct Plain : Form {
    explicit Plain(FormHost& formHost) : Form(formHost, "Plain", "") {}
    ListView list{*this, "list", {{"a", "A"}}};
  } form(host);
  form.list.Add(item("a"));
  form.list.check(1, true);
  CHECK(form.list.CheckedCount() == 0);
}

TEST_CASE("A double click selects its row before it is told, and only for a user who can reach the list") {
  Desk desk;
  desk.list.Add(item("a"));
  desk.list.Add(item("b"));
  std::string heard;
  desk.list.DblClick = [&] { heard += std::to_string(desk.list.SelectedRow()) + " "; };
  desk.list.doubleClick(2);
  desk.list.Enabled = false;
  desk.list.doubleClick(1);
  CHECK(heard == "2 ");
  CHECK(desk.list.SelectedRow() == 2);
}

TEST_CASE(
    "Dropped files reach a list that is enabled, an empty drop none, and a list that does not listen stays as it is") {
  Desk desk;
  desk.list.dropFiles({"/a"});
  std::string heard;
  desk.list.FilesDropped = [&](const std::vector<std::string>& paths) { heard += std::to_string(paths.size()) + " "; };
  desk.list.dropFiles({});
  desk.list.dropFiles({"/a", "/b"});
  desk.list.Enabled = false;
  desk.list.dropFiles({"/c"});
  CHECK(heard == "2 ");
}

}  // namespace trackloom
