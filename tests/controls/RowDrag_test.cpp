#include <catch2/catch.hpp>

#include "controls/Form.h"
#include "controls/ListView.h"
#include "fakes/ScriptedDesk.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// A list that begins a drag at each press of the left button, and notes what it hears.
struct DragForm : Form {
  explicit DragForm(FormHost& host) : Form(host, "DragForm", "") {
    list.Add({"a", {}});
    list.MouseDown = [this](MouseButton button) {
      heard.push_back("press " + std::to_string(static_cast<int>(button)));
      if (button == MouseButton::Left) list.Drag();
    };
    list.DragOver = [this](double y) { heard.push_back("over " + std::to_string(static_cast<int>(y))); };
    list.DragDrop = [this](double y) { heard.push_back("drop " + std::to_string(static_cast<int>(y))); };
  }
  ListView list{*this, "list", {{"a", "A"}}};
  Lines heard;
};

struct Desk {
  fakes::ScriptedDesk host;
  DragForm form{host};
  ListView& list = form.list;
  Lines& heard = form.heard;
};

}  // namespace

TEST_CASE("A drag goes from the press that began it over the list to its drop") {
  Desk desk;
  desk.list.dragOver(245);
  desk.list.press(MouseButton::Left);
  CHECK(desk.list.dragging());
  desk.list.dragOver(300);
  desk.list.dragOver(400);
  desk.list.drop(410);
  CHECK_FALSE(desk.list.dragging());
  desk.list.dragOver(500);
  desk.list.drop(500);
  CHECK(desk.heard == Lines{"press 0", "over 300", "over 400", "drop 410"});
}

TEST_CASE("A press that begins no drag is only a press") {
  Desk desk;
  desk.list.press(MouseButton::Right);
  desk.list.dragOver(300);
  desk.list.drop(300);
  CHECK(desk.heard == Lines{"press 2"});
}

TEST_CASE("A click, and a drag that ends elsewhere, drop nothing") {
  Desk desk;
  desk.list.press(MouseButton::Left);
  desk.list.drop(300);
  desk.list.press(MouseButton::Left);
  desk.list.dragOver(300);
  desk.list.endDragElsewhere();
  desk.list.drop(300);
  CHECK(desk.heard == Lines{"press 0", "press 0", "over 300"});
}

TEST_CASE("A disabled list hears neither press nor drag") {
  Desk desk;
  desk.list.press(MouseButton::Left);
  desk.list.dragOver(300);
  desk.list.Enabled = false;
  desk.list.dragOver(400);
  desk.list.drop(400);
  CHECK_FALSE(desk.list.dragging());
  desk.list.press(MouseButton::Left);
  CHECK(desk.heard == Lines{"press 0", "over 300"});
}

TEST_CASE("A list keeps what its face tells of the view, and passes on how far it is to scroll") {
  Desk desk;
  CHECK(desk.list.FirstVisibleRow() == 1);
  desk.list.reportView(7, 2450.5);
  CHECK(desk.list.FirstVisibleRow() == 7);
  CHECK(desk.list.DragHeight() == 2450.5);
  Lines asked;
  const Connection connection = desk.list.scrollRequested.connect(
      [&](int right, int down) { asked.push_back(std::to_string(right) + " " + std::to_string(down)); });
  desk.list.ScrollBy(0, -10);
  CHECK(asked == Lines{"0 -10"});
}

}  // namespace trackloom
