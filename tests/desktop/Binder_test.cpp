#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QWheelEvent>
#include <catch2/catch.hpp>
#include <set>

#include "controls/ImageList.h"
#include "desktop/Binder.h"
#include "desktop/EventTap.h"
#include "desktop/Make.h"
#include "desktop/Shown.h"
#include "desktop/Spinner.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;
using trial::Shown;
using Lines = std::vector<std::string>;

namespace {

Lines problemsOf(const std::string& design) {
  QtDesk desk;
  const auto form = std::make_shared<trial::TrialForm>(desk);
  std::vector<FaceDesign> designs;
  for (const FaceDesign& known : trial::trialDesigns())
    if (known.form == design) designs.push_back({"frmTrial", known.make});
  return bindingProblems(*form, designs);
}

/// One notch towards the user.
void turnWheel(QWidget& widget) {
  const QPointF place = widget.rect().center();
  QWheelEvent wheel(place, widget.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&widget, &wheel);
}

}  // namespace

TEST_CASE("A form whose design fits has no binding problems") {
  CHECK(problemsOf("frmTrial").empty());
}

TEST_CASE("A control without a widget, a widget without a control, a name twice and a wrong class are each named") {
  CHECK(problemsOf("frmTooFew") == Lines{"chkTick: no widget of this name"});
  CHECK(problemsOf("frmTooMany") == Lines{"txtStray: a widget without a control"});
  CHECK(problemsOf("frmTwice") == Lines{"cmdOK: more than one widget of this name"});
  CHECK(problemsOf("frmWrongClass") == Lines{"txtName: the widget is a QLabel, not a QLineEdit"});
}

TEST_CASE("A form without a design has a problem for each control that needs a widget") {
  QtDesk desk;
  const auto form = std::make_shared<trial::TrialForm>(desk);
  CHECK(bindingProblems(*form, {}).size() == form->controls().size() - 1);
}

TEST_CASE("A button shows its caption and state, and a click reaches its handler") {
  Shown shown;
  auto& button = shown.widget<QPushButton>("cmdOK");
  CHECK(button.text() == "&OK");
  CHECK_FALSE(button.autoDefault());
  button.click();
  CHECK(shown.form->heard == Lines{"cmdOK"});
  shown.form->cmdOK.Enabled = false;
  CHECK_FALSE(button.isEnabled());
  shown.form->cmdOK.Visible = false;
  CHECK_FALSE(button.isVisible());
  shown.form->cmdOK.Caption = "Other";
  CHECK(button.text() == "Other");
}

TEST_CASE("A check box ticks both ways") {
  Shown shown;
  auto& box = shown.widget<QCheckBox>("chkTick");
  box.click();
  CHECK(shown.form->chkTick.Value);
  shown.form->chkTick.Value = false;
  CHECK_FALSE(box.isChecked());
  CHECK(shown.form->heard == Lines{"chkTick"});
}

TEST_CASE("Option buttons exclude each other both ways") {
  Shown shown;
  shown.form->optFirst.select();
  CHECK(shown.widget<QRadioButton>("optFirst").isChecked());
  CHECK(shown.widget<QRadioButton>("optFirst").focusPolicy() == Qt::StrongFocus);
  CHECK(shown.widget<QRadioButton>("optSecond").focusPolicy() == Qt::ClickFocus);
  shown.widget<QRadioButton>("optSecond").click();
  CHECK(shown.form->optSecond.selected());
  CHECK_FALSE(shown.form->optFirst.selected());
  CHECK_FALSE(shown.widget<QRadioButton>("optFirst").isChecked());
  CHECK(shown.form->heard == Lines{"optSecond"});
}

TEST_CASE("A combo box shows its items and tells the user's choice once") {
  Shown shown;
  shown.form->cboPick.AddItem("Free Space & Time", 7);
  shown.form->cboPick.AddItem("b", 8);
  auto& combo = shown.widget<QComboBox>("cboPick");
  REQUIRE(combo.count() == 2);
  CHECK(combo.itemText(0) == "Free Space & Time");
  CHECK(combo.currentIndex() == -1);
  shown.form->cboPick.SetListIndex(0);
  CHECK(combo.currentIndex() == 0);
  QTest::keyClick(&combo, Qt::Key_Down);
  CHECK(shown.form->cboPick.ItemData() == 8);
  CHECK(shown.form->heard == Lines{"cboPick Free Space & Time", "cboPick b"});
  shown.form->cboPick.Clear();
  CHECK(combo.count() == 0);
}

TEST_CASE("Typing and pasting stop at the length of a text box, and the program's own text does not") {
  Shown shown;
  auto& line = shown.widget<QLineEdit>("txtName");
  QTest::keyClicks(&line, "abcdefg");
  CHECK(line.text() == "abcde");
  CHECK(shown.form->txtName.Text == std::string("abcde"));

  shown.form->txtName.Text = "longer than five";
  CHECK(line.text() == "longer than five");
  QTest::keyClick(&line, Qt::Key_End);
  QTest::keyClicks(&line, "x");
  CHECK(line.text() == "longer than five");
  QTest::keyClick(&line, Qt::Key_Backspace);
  CHECK(shown.form->txtName.Text == std::string("longer than fiv"));

  QTest::keyClick(&line, Qt::Key_Home);
  QTest::keyClick(&line, Qt::Key_Right);
  QTest::keyClicks(&line, "x");
  CHECK(line.text() == "longer than fiv");
  CHECK(line.cursorPosition() == 1);

  line.selectAll();
  QApplication::clipboard()->setText("pasted text");
  line.paste();
  CHECK(shown.form->txtName.Text == std::string("paste"));
}

TEST_CASE("A character of two units is never cut in half") {
  Shown shown;
  auto& line = shown.widget<QLineEdit>("txtName");
  QApplication::clipboard()->setText(QString::fromUtf8("abcd\xF0\x9D\x84\x9E"));
  line.paste();
  CHECK(shown.form->txtName.Text == std::string("abcd"));
}

TEST_CASE("A locked text box takes no typing") {
  Shown shown;
  shown.form->txtName.Locked = true;
  QTest::keyClicks(&shown.widget<QLineEdit>("txtName"), "a");
  CHECK(shown.form->txtName.Text.get().empty());
}

TEST_CASE("A text box that selects on focus has its text selected after a click, too") {
  Shown shown;
  shown.form->txtName.Text = "abc";
  shown.form->txtName.GotFocus = [&] { shown.form->txtName.SelectAll(); };
  auto& line = shown.widget<QLineEdit>("txtName");
  shown.widget<QPushButton>("cmdOK").setFocus();
  QTest::mouseClick(&line, Qt::LeftButton);
  CHECK(comesTrue([&] { return line.selectedText() == "abc"; }));
}

TEST_CASE("A label shows one ampersand for two and none for one") {
  Shown shown;
  CHECK(shown.widget<QLabel>("lblText").text() == "One & two three");
  shown.form->lblText.Caption = "<b>plain</b>";
  CHECK(shown.widget<QLabel>("lblText").textFormat() == Qt::PlainText);
}

TEST_CASE("Text that is no UTF-8 is read as Windows-1252") {
  Shown shown;
  shown.form->lblText.Caption = "caf\xE9";
  CHECK(shown.widget<QLabel>("lblText").text() == QString::fromUtf8("caf\xC3\xA9"));
}

TEST_CASE("A disabled frame disables what stands in it") {
  Shown shown;
  QWidget inside(&shown.widget<QGroupBox>("Frame1"));
  shown.form->Frame1.Enabled = false;
  CHECK_FALSE(inside.isEnabled());
}

TEST_CASE("A progress bar with a maximum of 0 is empty and at rest") {
  Shown shown;
  auto& bar = shown.widget<QProgressBar>("pbDone");
  shown.form->pbDone.SetMax(200);
  shown.form->pbDone.SetValue(50);
  CHECK(bar.maximum() == 200);
  CHECK(bar.value() == 50);
  shown.form->pbDone.SetMax(0);
  CHECK(bar.maximum() > bar.minimum());
  CHECK(bar.value() == 0);
}

TEST_CASE("Status panels, tabs and a scroll bar follow, and tell what the user does") {
  Shown shown;
  shown.form->StatusBar1.SetPanelText(2, "second");
  CHECK(shown.widget<QStatusBar>("StatusBar1").findChildren<QLabel*>().at(1)->text() == "second");

  auto& tabs = shown.widget<QTabBar>("TS1");
  REQUIRE(tabs.count() == 2);
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
  CHECK(shown.form->TS1.SelectedTab == 2);
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
  CHECK(shown.form->heard == Lines{"TS1"});

  QTest::keyClick(&shown.widget<QScrollBar>("VScroll1"), Qt::Key_Down);
  CHECK(shown.form->VScroll1.Value == 2);
}

TEST_CASE("The wheel over a combo box or a scroll bar without the focus changes nothing and brings no focus") {
  Shown shown;
  for (const char* text : {"one", "two", "three"}) shown.form->cboPick.AddItem(text);
  shown.form->cboPick.SetListIndex(1);
  REQUIRE(QTest::qWaitForWindowActive(shown.desk.window(*shown.form)));
  shown.form->txtName.SetFocus();
  auto& combo = shown.widget<QComboBox>("cboPick");
  auto& bar = shown.widget<QScrollBar>("VScroll1");
  for (QWidget* widget : std::initializer_list<QWidget*>{&combo, &bar}) turnWheel(*widget);
  CHECK(shown.form->cboPick.ListIndex() == 1);
  CHECK(shown.form->VScroll1.Value == 1);
  CHECK(shown.widget<QLineEdit>("txtName").hasFocus());
  combo.setFocus();
  turnWheel(combo);
  CHECK(shown.form->cboPick.ListIndex() == 2);
  bar.setFocus();
  turnWheel(bar);
  CHECK(shown.form->VScroll1.Value == 2);
}

TEST_CASE("The upper arrow of a spinner raises the number, the lower one lowers it, and both are easy to hit") {
  Spinner spinner;
  spinner.setRange(1, 20);
  spinner.setPageStep(1);
  spinner.resize(spinner.sizeHint());
  spinner.show();
  const QPoint upper(spinner.width() / 2, spinner.height() / 4);
  const QPoint lower(spinner.width() / 2, spinner.height() * 3 / 4);
  CHECK(spinner.width() >= 24);
  CHECK(spinner.height() >= 48);
  QTest::mouseClick(&spinner, Qt::LeftButton, {}, upper);
  QTest::mouseClick(&spinner, Qt::LeftButton, {}, upper);
  CHECK(spinner.value() == 3);
  QTest::mouseClick(&spinner, Qt::LeftButton, {}, lower);
  CHECK(spinner.value() == 2);
  QTest::mouseClick(&spinner, Qt::RightButton, {}, upper);
  CHECK(spinner.value() == 2);
  QTest::keyClick(&spinner, Qt::Key_Up);
  CHECK(spinner.value() == 3);
  QTest::keyClick(&spinner, Qt::Key_Down);
  CHECK(spinner.value() == 2);
  QTest::mousePress(&spinner, Qt::LeftButton, {}, upper);
  CHECK(comesTrue([&] { return spinner.value() > 4; }));
  QTest::mouseRelease(&spinner, Qt::LeftButton, {}, upper);
  const int released = spinner.value();
  QTest::qWait(200);
  CHECK(spinner.value() == released);
}

TEST_CASE("A spinner shows which arrow is pressed, and which one leads nowhere") {
  Spinner spinner;
  spinner.setRange(1, 20);
  spinner.resize(spinner.sizeHint());
  spinner.show();
  const QImage least = spinner.grab().toImage();
  spinner.setValue(10);
  const QImage middle = spinner.grab().toImage();
  spinner.setValue(20);
  const QImage most = spinner.grab().toImage();
  CHECK(least != middle);
  CHECK(most != middle);
  CHECK(least != most);
  spinner.setValue(10);
  QTest::mousePress(&spinner, Qt::LeftButton, {}, QPoint(10, 10));
  spinner.setValue(10);
  CHECK(spinner.grab().toImage() != middle);
}

TEST_CASE("A timer ticks while it is enabled, also behind a handler that waits") {
  Shown shown;
  int ticks = 0;
  shown.form->Timer1.Tick = [&] {
    ++ticks;
    QTest::qWait(10);
  };
  shown.form->Timer1.Enabled = true;
  REQUIRE(comesTrue([&] { return ticks == 2; }));
  shown.form->Timer1.Enabled = false;
  QTest::qWait(10);
  CHECK(ticks == 2);
}

TEST_CASE("No timer of a form may tick before its time") {
  Shown shown;
  shown.form->Timer1.Enabled = true;
  const auto* window = shown.desk.window(*shown.form);
  bool found = false;
  for (const QTimer* clock : window->findChildren<QTimer*>()) {
    if (clock->interval() != shown.form->Timer1.interval() || !clock->isActive()) continue;
    found = true;
    CHECK(clock->timerType() == Qt::PreciseTimer);
  }
  CHECK(found);
}

TEST_CASE("Painting a form at once paints every widget of it") {
  Shown shown;
  REQUIRE(comesTrue([&] { return shown.widget<QLabel>("lblText").isVisible(); }));
  QTest::qWait(20);
  std::set<std::string> painted;
  for (const char* name : {"lblText", "cmdOK", "pbDone"}) {
    auto& widget = shown.widget<QWidget>(name);
    make<EventTap>(widget, [&painted, name](QEvent& event) {
      if (event.type() == QEvent::Paint) painted.insert(name);
      return false;
    });
  }
  shown.form->Refresh();
  CHECK(painted == std::set<std::string>{"lblText", "cmdOK", "pbDone"});
}

TEST_CASE("An entry of a combo box has the picture whose number it bears, and without pictures or number none") {
  trial::Shown shown;
  ImageList images(*shown.form, "images", {"Disc", "Note"});
  auto& combo = shown.widget<QComboBox>("cboPick");
  const auto pictures = [&combo] {
    std::vector<bool> has;
    for (int entry = 0; entry < combo.count(); ++entry) has.push_back(!combo.itemIcon(entry).isNull());
    return has;
  };
  shown.form->cboPick.AddItem("none", 0, 0);
  CHECK(pictures() == std::vector<bool>{false});
  shown.form->cboPick.Images = &images;
  shown.form->cboPick.AddItem("note", 0, 2);
  CHECK(pictures() == std::vector<bool>{false, true});
  CHECK(combo.itemIcon(1).pixmap(16).toImage() == iconNamed("Note").pixmap(16).toImage());
}

}  // namespace trackloom
