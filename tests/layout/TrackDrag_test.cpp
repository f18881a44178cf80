#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

constexpr Colour Red = 255;

/// A layout of tracks named by single letters, of which so many rows are seen.
class DragMachine : public LayoutMachine {
 public:
  explicit DragMachine(const std::string& letters, std::int16_t kind = AudioLayout, int seen = 10)
      : LayoutMachine(kind) {
    for (const char letter : letters) addTrack(std::string(1, letter) + ".mp3", 10);
    list().reportView(1, 245.0 * (1 + seen));
    scrolled_ = list().scrollRequested.connect([this](int right, int down) { scrolls.emplace_back(right, down); });
    mod().LayoutSaved = true;
    engines.stage.take();
  }

  std::vector<std::pair<int, int>> scrolls;

  ListView& list() { return window().ListView1; }
  std::string order() {
    std::string all;
    for (int row = 1; row <= list().Count(); ++row) all += list().Item(row).Text[0];
    return all;
  }
  static double middleOf(int row) { return 245.0 * row + 122.5; }
  void begin(int row) {
    list().press(MouseButton::Left);
    list().dragOver(middleOf(row));
  }
  void drag(int from, int to) {
    begin(from);
    list().dragOver(middleOf(to));
    list().drop(middleOf(to));
  }

 private:
  Connection scrolled_;
};

}  // namespace

TEST_CASE("A row dragged from the middle of one row to the middle of another lands where the heights say") {
  const std::vector<std::tuple<int, int, std::string>> moves{
      {1, 2, "ABCD"}, {1, 3, "BCAD"}, {1, 4, "BCDA"}, {2, 1, "BACD"}, {2, 3, "ACBD"}, {2, 4, "ACDB"},
      {3, 1, "CABD"}, {3, 2, "ACBD"}, {3, 4, "ABDC"}, {4, 1, "DABC"}, {4, 2, "ADBC"}, {4, 3, "ABDC"}};
  for (const auto& [from, to, order] : moves) {
    DragMachine machine("ABCD");
    machine.drag(from, to);
    CHECK(machine.order() == order);
  }
}

TEST_CASE("A move takes the row with its cells and selects it, and leaves queue, meter, tag and saved state alone") {
  DragMachine machine("ABCD");
  const std::string meter = machine.window().Progress1.Text;
  const std::vector<std::string> cells = machine.list().Item(1).SubItems;
  machine.drag(1, 4);
  CHECK(machine.list().Item(4).Text == "A.mp3");
  CHECK(machine.list().Item(4).SubItems == cells);
  CHECK(machine.list().Item(4).Tag == 0);
  CHECK(machine.list().Item(4).SmallIcon == 1);
  CHECK(machine.list().SelectedRow() == 4);
  CHECK(machine.mod().LayoutSaved);
  CHECK(machine.window().Progress1.Text == meter);
  CHECK(machine.engines.stage.take().empty());
}

TEST_CASE("E077: A row dragged onto itself changes nothing but the colour, which is reset") {
  DragMachine machine("ABCD");
  machine.begin(2);
  machine.list().dragOver(DragMachine::middleOf(3));
  CHECK(machine.list().Item(2).ForeColor == Red);
  machine.list().dragOver(DragMachine::middleOf(2));
  machine.list().drop(DragMachine::middleOf(2));
  CHECK(machine.order() == "ABCD");
  CHECK(machine.list().Item(2).ForeColor == WindowTextColour);
  CHECK(machine.window().DragRow == 0);
  CHECK(machine.window().HoverRow == 0);
}

TEST_CASE("E078: A drop below the last row places the row at the end") {
  DragMachine machine("ABCD");
  machine.begin(2);
  machine.list().dragOver(DragMachine::middleOf(9));
  machine.list().drop(DragMachine::middleOf(9));
  CHECK(machine.order() == "ACDB");
}

TEST_CASE("E079: On a listing that is scrolled down the target follows the first visible row") {
  DragMachine machine("ABCDEFGH", AudioLayout, 3);
  machine.list().reportView(5, 245.0 * 4);
  machine.begin(1);
  CHECK(machine.window().DragRow == 5);
  machine.list().dragOver(DragMachine::middleOf(3));
  CHECK(machine.window().HoverRow == 7);
  machine.list().drop(DragMachine::middleOf(3));
  CHECK(machine.order() == "ABCDFEGH");
}

TEST_CASE("Only the first hover takes the height of the head off, and it names the dragged row") {
  DragMachine machine("ABCD");
  machine.list().press(MouseButton::Left);
  CHECK(machine.window().DragRow == 0);
  machine.list().dragOver(245.0 * 2 + 44);
  CHECK(machine.window().DragRow == 1);
  machine.list().dragOver(245.0 * 2 + 44);
  CHECK(machine.window().HoverRow == 2);
  CHECK(machine.list().SelectedRow() == 2);
}

TEST_CASE("A hover above the first row and one below the last stay within the rows") {
  DragMachine machine("ABCD");
  machine.begin(3);
  machine.list().dragOver(-1000);
  CHECK(machine.window().HoverRow == 1);
  machine.list().dragOver(100000);
  CHECK(machine.window().HoverRow == 4);
}

TEST_CASE("The listing scrolls up near its top and down near its end, and else stays") {
  DragMachine machine("ABCDEFGH", AudioLayout, 5);
  machine.begin(3);
  machine.scrolls.clear();
  machine.list().dragOver(314);
  CHECK(machine.scrolls == std::vector<std::pair<int, int>>{{0, -10}});
  machine.list().dragOver(315);
  machine.list().dragOver(245.0 * 5);
  CHECK(machine.scrolls.size() == 1);
  machine.list().dragOver(245.0 * 5 + 1);
  CHECK(machine.scrolls.back() == std::pair<int, int>{0, 10});
}

TEST_CASE("A drag that ends elsewhere leaves its row red until the next press") {
  DragMachine machine("ABCD");
  machine.begin(2);
  machine.list().dragOver(DragMachine::middleOf(3));
  machine.list().endDragElsewhere();
  CHECK(machine.window().DragRow == 2);
  CHECK(machine.list().Item(2).ForeColor == Red);
  machine.list().press(MouseButton::Right);
  CHECK(machine.window().DragRow == 0);
  CHECK(machine.list().Item(2).ForeColor == WindowTextColour);
  CHECK_FALSE(machine.list().dragging());
}

TEST_CASE("Rows that go while one is dragged end the move without an error") {
  DragMachine machine("AB");
  machine.begin(2);
  machine.list().dragOver(DragMachine::middleOf(1));
  machine.list().Remove(2);
  machine.list().drop(DragMachine::middleOf(1));
  CHECK(machine.order() == "A");
  CHECK(machine.window().DragRow == 0);
}

TEST_CASE("On an MP3 layout, and on an empty listing, no drag begins") {
  DragMachine mp3("ABCD", Mp3Layout);
  mp3.list().press(MouseButton::Left);
  CHECK_FALSE(mp3.list().dragging());
  CHECK(mp3.window().DragRow == 0);
  DragMachine empty("");
  empty.list().press(MouseButton::Left);
  CHECK_FALSE(empty.list().dragging());
}

TEST_CASE("A second drag begins anew where the first one ended") {
  DragMachine machine("ABCD");
  machine.drag(1, 4);
  machine.drag(1, 4);
  CHECK(machine.order() == "CDAB");
}

TEST_CASE(
    "Every row is red while it is dragged over another, the first and the last too, and red no more after the drop") {
  for (const auto& [from, to] : std::vector<std::pair<int, int>>{{1, 3}, {4, 2}, {2, 1}}) {
    DragMachine machine("ABCD");
    machine.begin(from);
    CHECK(machine.list().Item(from).ForeColor == WindowTextColour);
    machine.list().dragOver(DragMachine::middleOf(to));
    CHECK(machine.list().Item(from).ForeColor == Red);
    machine.list().drop(DragMachine::middleOf(to));
    for (int row = 1; row <= 4; ++row) CHECK(machine.list().Item(row).ForeColor == WindowTextColour);
  }
}

TEST_CASE("The height of the head is 45, and a row begins at each 245") {
  const auto draggedAt = [](double y) {
    DragMachine machine("ABCD");
    machine.list().press(MouseButton::Left);
    machine.list().dragOver(y);
    return machine.window().DragRow;
  };
  CHECK(draggedAt(45 + 245 * 2 - 1) == 1);
  CHECK(draggedAt(45 + 245 * 2) == 2);
  CHECK(draggedAt(45 + 245 * 3 - 1) == 2);
  CHECK(draggedAt(45 + 245 * 3) == 3);
}

TEST_CASE("A drop at the height of the rows that remain is in the last of them, one below it is behind all") {
  for (const auto& [y, order] :
       std::vector<std::pair<double, std::string>>{{245.0 * 3, "ABCD"}, {245.0 * 3 + 1, "BACD"}}) {
    DragMachine machine("ABCD");
    machine.begin(1);
    machine.list().dragOver(DragMachine::middleOf(2));
    machine.list().drop(y);
    CHECK(machine.order() == order);
  }
}

TEST_CASE("A drop far below the row that was hovered last moves the target by one") {
  DragMachine machine("ABCD");
  machine.begin(3);
  machine.list().dragOver(DragMachine::middleOf(2));
  machine.list().drop(DragMachine::middleOf(9));
  // The hovered row becomes the third, which is no longer above the dragged one.
  CHECK(machine.order() == "ACBD");
  CHECK(machine.list().SelectedRow() == 2);
}

TEST_CASE("A listing of one row can be dragged, and stays as it is") {
  DragMachine machine("A");
  machine.list().press(MouseButton::Left);
  CHECK(machine.list().dragging());
  machine.list().dragOver(DragMachine::middleOf(1));
  CHECK(machine.window().DragRow == 1);
  CHECK(machine.list().SelectedRow() == 1);
  machine.list().drop(DragMachine::middleOf(1));
  CHECK(machine.order() == "A");
  CHECK_FALSE(machine.list().dragging());
}

TEST_CASE("Only the left button begins a drag") {
  for (const MouseButton button : {MouseButton::Middle, MouseButton::Right}) {
    DragMachine machine("AB");
    machine.list().press(button);
    CHECK_FALSE(machine.list().dragging());
  }
}

TEST_CASE("The rows near the top scroll the listing at the first hover too, by the height without the head") {
  DragMachine machine("ABCDEFGH", AudioLayout, 5);
  machine.list().press(MouseButton::Left);
  machine.list().dragOver(315 + 44);
  CHECK(machine.scrolls == std::vector<std::pair<int, int>>{{0, -10}});
}

TEST_CASE("A row under the pointer that has gone ends the move without an error") {
  DragMachine machine("ABCD");
  machine.begin(1);
  machine.list().dragOver(DragMachine::middleOf(4));
  machine.list().Remove(4);
  machine.list().Remove(3);
  machine.list().drop(DragMachine::middleOf(4));
  CHECK(machine.order() == "AB");
  CHECK(machine.window().DragRow == 0);
  CHECK(machine.window().HoverRow == 0);
}

TEST_CASE("A layout that becomes an MP3 layout in the middle of a drag is neither hovered nor dropped on") {
  DragMachine machine("ABCD");
  machine.begin(2);
  machine.mod().LayoutType = Mp3Layout;
  machine.list().dragOver(DragMachine::middleOf(4));
  CHECK(machine.window().HoverRow == 2);
  machine.list().drop(DragMachine::middleOf(4));
  CHECK(machine.order() == "ABCD");
  CHECK(machine.window().DragRow == 2);
}

TEST_CASE("Keys move the selected row by one, keep it selected, and stop at both ends") {
  DragMachine machine("ABCD");
  machine.list().SelectRow(2);
  machine.list().moveSelected(1);
  CHECK(machine.order() == "ACBD");
  CHECK(machine.list().SelectedRow() == 3);
  machine.list().moveSelected(1);
  machine.list().moveSelected(1);
  CHECK(machine.order() == "ACDB");
  CHECK(machine.list().SelectedRow() == 4);
  for (int step = 1; step <= 4; ++step) machine.list().moveSelected(-1);
  CHECK(machine.order() == "BACD");
  CHECK(machine.list().SelectedRow() == 1);
}

TEST_CASE(
    "A move by keys leaves the same as a drop does: cells taken along, no tag, nothing unsaved, no queue touched") {
  DragMachine machine("ABCD");
  const std::vector<std::string> cells = machine.list().Item(4).SubItems;
  machine.list().SelectRow(4);
  machine.list().moveSelected(-1);
  CHECK(machine.list().Item(3).Text == "D.mp3");
  CHECK(machine.list().Item(3).SubItems == cells);
  CHECK(machine.list().Item(3).Tag == 0);
  CHECK(machine.list().Item(3).SmallIcon == 1);
  CHECK(machine.mod().LayoutSaved);
  CHECK(machine.engines.stage.take().empty());
}

TEST_CASE("Keys move nothing on an MP3 layout, without a selected row, and in the middle of a drag") {
  DragMachine mp3("ABCD", Mp3Layout);
  mp3.list().SelectRow(2);
  mp3.list().moveSelected(1);
  CHECK(mp3.order() == "ABCD");

  DragMachine machine("ABCD");
  machine.list().SelectRow(0);
  machine.list().moveSelected(1);
  CHECK(machine.order() == "ABCD");
  machine.begin(2);
  machine.list().moveSelected(1);
  CHECK(machine.order() == "ABCD");
}

TEST_CASE("A move by keys ends what a drag left behind") {
  DragMachine machine("ABCD");
  machine.begin(2);
  machine.list().dragOver(DragMachine::middleOf(3));
  machine.list().endDragElsewhere();
  machine.list().moveSelected(1);
  CHECK(machine.order() == "ABDC");
  CHECK(machine.window().DragRow == 0);
  for (int row = 1; row <= 4; ++row) CHECK(machine.list().Item(row).ForeColor == WindowTextColour);
}

}  // namespace trackloom
