#include <catch2/catch.hpp>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/ControlVisitor.h"
#include "controls/DockStudio.h"
#include "controls/FolderTreeview.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/StatusBar.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/Timer.h"
#include "controls/VScrollBar.h"
#include "fakes/ErrorNumber.h"
#include "fakes/ScriptedDesk.h"
#include "fakes/TempFolder.h"
#include "runtime/Files.h"

namespace trackloom {

namespace {

/// One control of each kind, none touched since it was designed.
struct Bench : Form {
  explicit Bench(FormHost& host) : Form(host, "Bench", "") {}
  Button button{*this, "button", "&Go"};
  CheckBox check{*this, "check", "&Tick"};
  ComboBox combo{*this, "combo"};
  DockStudio dock{*this,
                  "dock",
                  {{"Bar", BarKind::Tools, {"Go", "box"}}},
                  {{"Go", ToolKind::Command, "&Go", "", "", {}}, {"box", ToolKind::Combo, "", "", "", {}}}};
  FolderTreeview tree{*this, "tree"};
  Frame frame{*this, "frame", "Frame"};
  Label label{*this, "label", "Label"};
  ListView list{*this, "list", {{"a", "A"}}};
  OptionGroup group;
  OptionButton option{*this, group, "option", "One"};
  OptionButton other{*this, group, "other", "Two"};
  PictureBox picture{*this, "picture"};
  ProgressBarEx bar{*this, "bar"};
  StatusBar status{*this, "status"};
  TabStrip tabs{*this, "tabs", {"First", "Second"}};
  TextBox text{*this, "text"};
  Timer timer{*this, "timer", 100};
  VScrollBar scroll{*this, "scroll", 1, 20};
};

struct Desk {
  fakes::ScriptedDesk host;
  Bench form{host};
};

/// Counts what the control's watchers hear while it lives.
struct Watch {
  explicit Watch(Signal<>& changed) : connection(changed.connect([this] { ++count; })) {}
  int count = 0;
  Connection connection;
};

/// Writes down which visit each control pays.
struct Register final : ControlVisitor {
  std::string kinds;
  void visit(Button&) override { kinds += "Button "; }
  void visit(CheckBox&) override { kinds += "CheckBox "; }
  void visit(ComboBox&) override { kinds += "ComboBox "; }
  void visit(DockStudio&) override { kinds += "DockStudio "; }
  void visit(FolderTreeview&) override { kinds += "FolderTreeview "; }
  void visit(Frame&) override { kinds += "Frame "; }
  void visit(Label&) override { kinds += "Label "; }
  void visit(ListView&) override { kinds += "ListView "; }
  void visit(OptionButton&) override { kinds += "OptionButton "; }
  void visit(PictureBox&) override { kinds += "PictureBox "; }
  void visit(ProgressBarEx&) override { kinds += "ProgressBarEx "; }
  void visit(StatusBar&) override { kinds += "StatusBar "; }
  void visit(TabStrip&) override { kinds += "TabStrip "; }
  void visit(TextBox&) override { kinds += "TextBox "; }
  void visit(Timer&) override { kinds += "Timer "; }
  void visit(VScrollBar&) override { kinds += "VScrollBar "; }
};

}  // namespace

TEST_CASE("Each kind of control is visited as what it is, in the order of the form") {
  Desk desk;
  Register visitor;
  for (Control* control : desk.form.controls()) control->accept(visitor);
  CHECK(visitor.kinds ==
        "Button CheckBox ComboBox DockStudio FolderTreeview Frame Label ListView OptionButton OptionButton "
        "PictureBox ProgressBarEx StatusBar TabStrip TextBox Timer VScrollBar ");
}

TEST_CASE("A control that nobody has touched is enabled, visible and empty, a timer alone is designed disabled") {
  Desk desk;
  for (const Control* control : desk.form.controls()) {
    CHECK(control->Enabled == (control->name() != "timer"));
    CHECK(control->Visible == true);
  }
  CHECK_FALSE(desk.form.button.Default);
  CHECK_FALSE(desk.form.button.Cancel);
  CHECK_FALSE(desk.form.check.Value);
  CHECK_FALSE(desk.form.option.selected());
  CHECK(desk.form.combo.ListIndex() == -1);
  CHECK(desk.form.picture.Picture == std::string());
  CHECK(desk.form.bar.Value() == 0);
  CHECK(desk.form.bar.Max() == 100);
  CHECK(desk.form.status.count() == 1);
  CHECK(desk.form.tabs.SelectedTab == 1);
  CHECK(desk.form.text.Text == std::string());
  CHECK(desk.form.text.maxLength() == 0);
  CHECK_FALSE(desk.form.text.Locked);
  CHECK(desk.form.scroll.Value == 1);
}

TEST_CASE("A list that nobody has touched has no rows, no ticks, no selection and no order") {
  Desk desk;
  const ListView& list = desk.form.list;
  CHECK(list.Count() == 0);
  CHECK(list.SelectedRow() == 0);
  CHECK(list.CheckedCount() == 0);
  CHECK_FALSE(list.Sorted());
  CHECK(list.SortKey() == 0);
  CHECK_FALSE(list.style().checkBoxes);
  CHECK(list.Width == 0.0);
  CHECK(list.Height == 0.0);
  CHECK_FALSE(list.columns().front().rightAligned);
  const ListItem item;
  CHECK(item.SmallIcon == 1);
  CHECK(item.Tag == 0);
  CHECK_FALSE(item.Checked);
  CHECK(item.ForeColor == -2147483640);
}

TEST_CASE("Bars that nobody has touched take the platform's look and have no arrangement, area or width") {
  Desk desk;
  DockStudio& dock = desk.form.dock;
  CHECK(dock.UseThemeColours == 1);
  CHECK(dock.Arrangement == std::string());
  CHECK(dock.ClientArea() == ClientRect{0, 0, 0, 0});
  CHECK(dock.Width() == 0);
  const Tool& tool = dock.tool("Go");
  CHECK(tool.Enabled);
  CHECK(tool.Text == std::string());
  CHECK(tool.Value == 0);
  CHECK(tool.Maximum == 0);
  CHECK(tool.Width == 0.0);
  CHECK(tool.SelectedEntry() == 0);
}

TEST_CASE("A check box turns over before its click is raised, and only for a user who can reach it") {
  Desk desk;
  CheckBox& check = desk.form.check;
  std::string heard;
  check.Click = [&] { heard += check.Value ? "on " : "off "; };
  check.click();
  check.click();
  CHECK(heard == "on off ");
  check.Enabled = false;
  check.click();
  CHECK_FALSE(check.Value);
  CHECK(heard == "on off ");
}

TEST_CASE("An option button is selected before its click is raised, and only for a user who can reach it") {
  Desk desk;
  OptionButton& option = desk.form.option;
  std::string heard;
  option.Click = [&] { heard += option.selected() ? "selected " : "not yet "; };
  option.click();
  CHECK(heard == "selected ");
  desk.form.other.Visible = false;
  desk.form.other.click();
  CHECK_FALSE(desk.form.other.selected());
  CHECK(option.selected());
}

TEST_CASE("A combo box tells its watchers of each new row, choice and clearing") {
  Desk desk;
  ComboBox& combo = desk.form.combo;
  int rows = -1;
  const Connection watch = combo.changed.connect([&] { rows = static_cast<int>(combo.items().size()); });
  combo.AddItem("a");
  CHECK(rows == 1);
  combo.AddItem("b", 7);
  CHECK(combo.items() == std::vector<ComboBox::Item>{{"a", 0}, {"b", 7}});
  Watch counted(combo.changed);
  combo.SetListIndex(1);
  CHECK(counted.count == 1);
  combo.Clear();
  CHECK(rows == 0);
  CHECK(counted.count == 2);
  CHECK(combo.ListIndex() == -1);
}

TEST_CASE("A combo box without a choice has no text and no number, its first row is a choice like any other") {
  Desk desk;
  ComboBox& combo = desk.form.combo;
  combo.AddItem("a", 5);
  CHECK(combo.Text().empty());
  CHECK(combo.ItemData() == 0);
  combo.SetListIndex(0);
  CHECK(combo.Text() == "a");
  CHECK(combo.ItemData() == 5);
  combo.SetListIndex(1);
  CHECK(combo.ListIndex() == -1);
  combo.SetListIndex(0);
  combo.SetListIndex(-2);
  CHECK(combo.ListIndex() == -1);
}

TEST_CASE("A combo box's face shows the choice before the form hears of it, and a disabled one takes none") {
  Desk desk;
  ComboBox& combo = desk.form.combo;
  combo.AddItem("a");
  combo.AddItem("b");
  std::string heard;
  const Connection watch = combo.changed.connect([&] { heard += "shown "; });
  combo.Click = [&] { heard += "told " + combo.Text() + " "; };
  combo.choose(1);
  CHECK(heard == "shown told b ");
  combo.Enabled = false;
  combo.choose(0);
  CHECK(combo.ListIndex() == 1);
}

TEST_CASE("A status bar counts its panels from 1 and tells of each new text") {
  Desk desk;
  Watch watch(desk.form.status.changed);
  desk.form.status.SetPanelText(1, "3 Files");
  CHECK(desk.form.status.PanelText(1) == "3 Files");
  CHECK(watch.count == 1);
}

TEST_CASE("A tab is shown before its click is raised, and the one already showing takes none") {
  Desk desk;
  TabStrip& tabs = desk.form.tabs;
  std::string heard;
  tabs.Click = [&] { heard += std::to_string(tabs.SelectedTab) + " "; };
  tabs.choose(1);
  tabs.choose(2);
  tabs.choose(2);
  CHECK(heard == "2 ");
  tabs.Enabled = false;
  tabs.choose(1);
  CHECK(tabs.SelectedTab == 2);
}

TEST_CASE("A text box without a longest length takes any, before its change is raised") {
  Desk desk;
  TextBox& text = desk.form.text;
  std::string heard;
  text.Change = [&] { heard += text.Text.get() + "|"; };
  text.type("no limit");
  text.edit("no limit");
  text.edit("longer than any limit");
  CHECK(heard == "no limit|longer than any limit|");
}

TEST_CASE("A locked or disabled text box takes nothing from its user, and a disabled one no focus") {
  Desk desk;
  TextBox& text = desk.form.text;
  int focused = 0;
  text.GotFocus = [&] { ++focused; };
  text.focus();
  CHECK(focused == 1);
  text.Locked = true;
  text.edit("x");
  CHECK(text.Text == std::string());
  text.Locked = false;
  text.Enabled = false;
  text.edit("x");
  text.focus();
  CHECK(text.Text == std::string());
  CHECK(focused == 1);
}

TEST_CASE("The wishes for the focus and for the whole text selected reach whoever shows the box") {
  Desk desk;
  Watch focus(desk.form.text.focusRequested);
  Watch selection(desk.form.text.selectAllRequested);
  desk.form.text.SetFocus();
  CHECK(focus.count == 1);
  CHECK(selection.count == 0);
  desk.form.text.SelectAll();
  CHECK(selection.count == 1);
}

TEST_CASE("A scroll bar stays within its bounds and tells after it has moved") {
  Desk desk;
  VScrollBar& scroll = desk.form.scroll;
  std::string heard;
  scroll.Change = [&] { heard += std::to_string(scroll.Value) + " "; };
  scroll.scrollTo(0);
  scroll.scrollTo(2);
  scroll.scrollTo(2);
  scroll.scrollTo(21);
  CHECK(heard == "2 20 ");
  scroll.Enabled = false;
  scroll.scrollTo(5);
  CHECK(scroll.Value == 20);
}

TEST_CASE("A maximum below nothing is an empty bar, and a value keeps below the maximum that comes after it") {
  Desk desk;
  ProgressBarEx& bar = desk.form.bar;
  bar.SetMax(-5);
  CHECK(bar.Max() == 0);
  bar.SetMax(500);
  bar.SetValue(300);
  CHECK(bar.Value() == 300);
  bar.SetMax(200);
  CHECK(bar.Value() == 200);
}

TEST_CASE("A timer ticks again once its tick has returned") {
  Desk desk;
  int ticks = 0;
  desk.form.timer.Tick = [&] { ++ticks; };
  desk.form.timer.Enabled = true;
  desk.form.timer.tick();
  desk.form.timer.tick();
  CHECK(ticks == 2);
}

TEST_CASE("A folder tree takes folders with or without a separator at the end, and tells once it has moved") {
  Desk desk;
  fakes::TempFolder folder;
  FolderTreeview& tree = desk.form.tree;
  std::string heard;
  tree.FolderChanged = [&](const std::string& path) { heard += path + "=" + tree.SelectedFolder() + " "; };
  tree.SetSelectedFolder(folder.path() + "///");
  CHECK(tree.SelectedFolder() == folder.path());
  tree.SetSelectedFolder(folder.path());
  tree.choose("/");
  CHECK(heard == folder.path() + "=" + folder.path() + " /=/ ");
}

TEST_CASE("A folder tree begins with no folder selected, so that any is a change, the home folder too") {
  Desk desk;
  FolderTreeview& tree = desk.form.tree;
  CHECK(tree.SelectedFolder().empty());
  std::string heard;
  tree.FolderChanged = [&](const std::string& path) { heard += path; };
  tree.SetSelectedFolder(HomeFolder().text);
  CHECK(heard == HomeFolder().text);
}

TEST_CASE("A disabled folder tree refuses its user") {
  Desk desk;
  fakes::TempFolder folder;
  FolderTreeview& tree = desk.form.tree;
  tree.SetSelectedFolder(folder.path());
  tree.Enabled = false;
  tree.choose("/");
  CHECK(tree.SelectedFolder() == folder.path());
}

TEST_CASE("The bars tell of a chosen entry after it shows, and their watchers of each new one") {
  Desk desk;
  DockStudio& dock = desk.form.dock;
  Tool& box = dock.tool("box");
  std::string heard;
  const Connection watch = box.changed.connect(
      [&] { heard += std::to_string(box.entries().size()) + ":" + std::to_string(box.SelectedEntry()) + " "; });
  dock.AddEntry(box, "A", "0");
  dock.AddEntry(box, "B", "1");
  dock.ComboChanged = [&](Tool& tool, const ComboEntry& entry) { heard += tool.Name() + entry.Text + entry.Tag + " "; };
  dock.chooseEntry("box", 2);
  CHECK(heard == "1:0 2:0 2:2 boxB1 ");
  CHECK(fakes::errorNumberOf([&] { dock.SelectEntry(box, 0); }) == 9);
  CHECK(fakes::errorNumberOf([&] { dock.SelectEntry(box, 3); }) == 9);
}

TEST_CASE("Bars and tools that are disabled take nothing from the user") {
  Desk desk;
  DockStudio& dock = desk.form.dock;
  Tool& box = dock.tool("box");
  dock.AddEntry(box, "A", "0");
  int heard = 0;
  dock.ToolClick = [&](Tool&) { ++heard; };
  dock.MenuOpened = [&](const std::string&) { ++heard; };
  const auto tryAll = [&] {
    dock.click("box");
    dock.openMenu("box");
    dock.chooseEntry("box", 1);
  };
  box.Enabled = false;
  tryAll();
  box.Enabled = true;
  dock.Enabled = false;
  tryAll();
  CHECK(heard == 0);
  CHECK(box.SelectedEntry() == 0);
  dock.Enabled = true;
  tryAll();
  CHECK(heard == 2);
  CHECK(box.SelectedEntry() == 1);
}

TEST_CASE("Bars on which nobody listens can be used all the same") {
  Desk desk;
  DockStudio& dock = desk.form.dock;
  dock.AddEntry(dock.tool("box"), "A", "0");
  dock.click("Go");
  dock.openMenu("Go");
  dock.chooseEntry("box", 1);
  dock.reportArea({1, 2, 3, 4}, 5);
  desk.form.tree.choose("/");
  CHECK(dock.tool("box").SelectedEntry() == 1);
}

TEST_CASE("A new area or a new width is told once, after it can be read") {
  Desk desk;
  DockStudio& dock = desk.form.dock;
  std::string heard;
  dock.ClientAreaChanged = [&] {
    heard += std::to_string(static_cast<int>(dock.ClientArea().width)) + "/" +
             std::to_string(static_cast<int>(dock.Width())) + " ";
  };
  dock.reportArea({0, 0, 100, 50}, 200);
  dock.reportArea({0, 0, 100, 50}, 200);
  dock.reportArea({0, 0, 150, 50}, 200);
  dock.reportArea({0, 0, 150, 50}, 300);
  CHECK(heard == "100/200 150/200 150/300 ");
}

TEST_CASE("The bars know the tools that they have") {
  Desk desk;
  CHECK(desk.form.dock.hasTool("Go"));
  CHECK_FALSE(desk.form.dock.hasTool("go"));
  CHECK(desk.form.dock.bars().front().name == "Bar");
}

TEST_CASE("Choosing the row that is chosen already raises Click again, setting it does not") {
  Desk desk;
  ComboBox& combo = desk.form.combo;
  std::string heard;
  combo.Click = [&] { heard += std::to_string(combo.ListIndex()); };
  combo.AddItem("a");
  combo.AddItem("b");
  combo.choose(-1);
  combo.choose(1);
  combo.choose(1);
  combo.SetListIndex(1);
  combo.choose(0);
  CHECK(heard == "110");
  combo.Enabled = false;
  combo.choose(0);
  CHECK(heard == "110");
}

TEST_CASE("A tick that comes while its timer is held comes when the timer is released, once, if it is still enabled") {
  Desk desk;
  Timer& timer = desk.form.timer;
  int ticks = 0;
  timer.Tick = [&] { ++ticks; };
  timer.Enabled = true;
  timer.hold();
  timer.release();
  CHECK(ticks == 0);
  timer.hold();
  timer.tick();
  timer.tick();
  CHECK(ticks == 0);
  timer.release();
  CHECK(ticks == 1);
  timer.release();
  timer.tick();
  CHECK(ticks == 2);
  timer.hold();
  timer.tick();
  timer.Enabled = false;
  timer.release();
  CHECK(ticks == 2);
}

}  // namespace trackloom
