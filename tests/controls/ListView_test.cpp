#include "controls/ListView.h"

#include <catch2/catch.hpp>

#include "controls/Form.h"
#include "fakes/ErrorNumber.h"
#include "fakes/ScriptedDesk.h"

namespace trackloom {

namespace {

struct ListForm : Form {
  explicit ListForm(FormHost& host) : Form(host, "ListForm", "") {}
  ListView list{*this, "list", {{"a", "A"}, {"b", "B"}}, true};
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
  desk.list.Remove(2);
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

TEST_CASE("Whoever mirrors the rows hears each change once") {
  Desk desk;
  std::string heard;
  const Connection connection = desk.list.listChanged.connect([&](const ListChange& change) {
    heard += "IRCXKS"[static_cast<int>(change.kind)] + std::to_string(change.row) + " ";
  });
  desk.list.Add(item("a"));
  desk.list.SelectRow(1);
  desk.list.SelectRow(1);
  desk.list.SetChecked(1, true);
  desk.list.SetChecked(1, true);
  desk.list.Remove(1);
  desk.list.Clear();
  CHECK(heard == "I1 S1 C1 R1 X0 ");
}

}  // namespace trackloom
