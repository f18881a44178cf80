#include "desktop/FrontPanel.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QMenu>
#include <QProgressBar>
#include <set>

#include "desktop/AllForms.h"
#include "desktop/PanelTrial.h"
#include "desktop/QtMessageBoxes.h"
#include "desktop/ScreenReader.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comes;
using trial::disc;
using trial::Lines;
using trial::Panel;
using State = ShelfDisc::State;

TEST_CASE("The panel shows the disc in the tray and the discs on the shelf") {
  Panel panel;
  ShelfDisc songs = disc("Songs");
  songs.state = State::Open;
  songs.kind = AudioBlocks;
  songs.tracks = 3;
  songs.used = 75 * 750;
  songs.free = 75 * 60 * 60;
  songs.changed = QDateTime::currentSecsSinceEpoch() - 7300;
  panel.shelf().view.tray = {songs};
  panel.shelf().view.shelf = {songs, disc("a"), disc("z")};
  panel.show();
  CHECK(panel.window->windowTitle() == "Virtual Recorder");
  CHECK(panel.part<QLabel>("trayDisc").text() == "Songs");
  CHECK(panel.part<QLabel>("trayState").text() == "CD-R, 80 min: Open, 3 tracks");
  CHECK(panel.part<QLabel>("trayRoom").text() == "12:30 used, 60:00 free");
  CHECK(panel.part<QProgressBar>("trayUse").maximum() == 359849);
  CHECK(panel.part<QProgressBar>("trayUse").value() == 75 * 750);
  CHECK(panel.names() == Lines{"Songs", "a", "z"});
  const QTreeWidgetItem& row = *panel.list().topLevelItem(0);
  CHECK(row.text(1) == "CD-R, 80 min");
  CHECK(row.text(2) == "12:30");
  CHECK(row.text(3) == "2 h");
  CHECK(row.text(4) == "Open, 3 tracks");
}

TEST_CASE("The panel tells an empty tray, a jammed one, a damaged disc and a recorder that has gone") {
  Panel panel;
  ShelfDisc damaged = disc("<b>x</b>");
  damaged.state = State::Damaged;
  damaged.trouble = "disc.ini cannot be read";
  panel.shelf().view.tray = {damaged};
  panel.show();
  CHECK(panel.part<QLabel>("trayDisc").text() == "<b>x</b>");
  CHECK(panel.part<QLabel>("trayDisc").textFormat() == Qt::PlainText);
  CHECK(panel.part<QLabel>("trayState").text() == "Damaged: disc.ini cannot be read");
  CHECK(panel.part<QLabel>("trayRoom").text().isEmpty());
  const auto shows = [&](const char* words) {
    return comes([&] { return panel.part<QLabel>("trayDisc").text() == words; });
  };
  panel.shelf().change([&] { panel.shelf().view.tray.clear(); });
  CHECK(shows("No disc"));
  CHECK(panel.part<QLabel>("trayState").text().isEmpty());
  CHECK(panel.button("eject").isEnabled());
  panel.shelf().change([&] { panel.shelf().view.tray = {disc("a"), disc("b")}; });
  CHECK(shows("Several discs, which jam the tray"));
  panel.shelf().change([&] { panel.shelf().view = ShelfView(); });
  CHECK(shows("The recorder's folder is not there"));
  for (const char* button : {"eject", "insert", "rename", "remove", "addBlank", "showFiles"})
    CHECK_FALSE(panel.button(button).isEnabled());
  CHECK(panel.button("close").isEnabled());
}

TEST_CASE("What somebody else does with the discs shows by itself, and the chosen disc stays chosen") {
  Panel panel;
  panel.show();
  panel.list().choose("b");
  panel.shelf().change([&] { panel.shelf().view.shelf = {disc("B"), disc("aa"), disc("b"), disc("d")}; });
  REQUIRE(comes([&] { return panel.names() == Lines{"B", "aa", "b", "d"}; }));
  CHECK(panel.list().chosen() == "b");
  panel.shelf().change([&] { panel.shelf().view.shelf = {disc("B"), disc("d")}; });
  REQUIRE(comes([&] { return panel.names() == Lines{"B", "d"}; }));
  CHECK(panel.list().chosen());
  panel.shelf().change([&] { panel.shelf().view.shelf.clear(); });
  REQUIRE(comes([&] { return panel.names().empty(); }));
  CHECK_FALSE(panel.list().chosen());
  CHECK_FALSE(panel.button("insert").isEnabled());
  CHECK(panel.button("eject").isEnabled());
  CHECK(panel.button("addBlank").isEnabled());
}

TEST_CASE("A panel that is closed looks no more, and looks at once when it opens again") {
  Panel panel;
  panel.show();
  panel.button("close").click();
  CHECK_FALSE(panel.window->isVisible());
  QTest::qWait(50);
  const int looks = panel.shelf().looks();
  QTest::qWait(2500);
  CHECK(panel.shelf().looks() == looks);
  panel.shelf().change([&] { panel.shelf().view.shelf = {disc("new")}; });
  panel.window->show();
  CHECK(comes([&] { return panel.names() == Lines{"new"}; }));
}

TEST_CASE("While an operation runs, eject and insert are off and say why, and the rest goes on") {
  Panel panel;
  panel.show();
  const auto busy = [&](bool is) { panel.shelf().change([&] { panel.shelf().view.busy = is; }); };
  busy(true);
  REQUIRE(comes([&] { return !panel.button("eject").isEnabled(); }));
  CHECK_FALSE(panel.button("insert").isEnabled());
  const std::string why = "An operation is running: the tray stays shut until it ends.";
  CHECK(panel.part<QLabel>("shut").isVisible());
  CHECK(panel.part<QLabel>("shut").text().toStdString() == why);
  for (const char* button : {"eject", "insert"}) {
    CHECK(panel.button(button).toolTip().toStdString() == why);
    CHECK(panel.button(button).accessibleDescription().toStdString() == why);
  }
  panel.list().setFocus();
  panel.press(Qt::Key_Return);
  for (const char* button : {"rename", "remove", "addBlank", "showFiles"}) CHECK(panel.button(button).isEnabled());
  panel.button("addBlank").menu()->actions().front()->trigger();
  REQUIRE(panel.does({"blank 0"}));
  busy(false);
  REQUIRE(comes([&] { return panel.button("eject").isEnabled(); }));
  CHECK(panel.button("insert").isEnabled());
  CHECK_FALSE(panel.part<QLabel>("shut").isVisible());
  CHECK(panel.button("eject").toolTip().isEmpty());
}

TEST_CASE("A folder that does not answer holds up neither the window nor its end") {
  auto panel = std::make_unique<Panel>(2);
  const auto slow = panel->shelves.front();
  slow->change([&] { slow->slow = true; });
  panel->window->show();
  REQUIRE(comes([&] { return slow->looks() == 1; }));
  CHECK(panel->part<QLabel>("trayDisc").text() == "Looking at the recorder...");
  CHECK_FALSE(panel->button("eject").isEnabled());
  QTest::qWait(2500);
  CHECK(slow->looks() == 1);
  auto& chooser = panel->part<QComboBox>("recorder");
  chooser.setCurrentIndex(1);
  emit chooser.activated(1);
  REQUIRE(comes([&] { return panel->names().size() == 3; }));
  slow->change([&] {
    slow->slow = false;
    slow->view.tray = {disc("late")};
  });
  QTest::qWait(50);
  CHECK(panel->part<QLabel>("trayDisc").text() == "Disc 0001");
  slow->change([&] { slow->slow = true; });
  emit chooser.activated(0);
  REQUIRE(comes([&] { return slow->looks() == 2; }));
  panel.reset();
  slow->change([&] { slow->slow = false; });
  QTest::qWait(50);
}

TEST_CASE("The panel tells what the engine knows about its last failure") {
  Panel panel;
  panel.show();
  auto& line = panel.part<QTextEdit>("lastWord");
  CHECK_FALSE(line.isVisible());
  panel.lastWord = "/home/u/a.mp3: No such file or directory";
  CHECK(comes([&] { return line.isVisible(); }));
  CHECK(line.toPlainText() == "Last failure: /home/u/a.mp3: No such file or directory");
  panel.lastWord.clear();
  CHECK(comes([&] { return !line.isVisible(); }));
}

TEST_CASE("The panel takes clicks and keys while a form of the program is modal, and while a box stands") {
  QtDesk desk(trial::trialDesigns());
  const auto form = std::make_shared<trial::TrialForm>(desk);
  form->show();
  Panel panel;
  panel.show();
  const auto work = [&] {
    const QWidget& eject = panel.button("eject");
    QTest::mouseClick(panel.window->windowHandle(), Qt::LeftButton, {},
                      eject.mapTo(&*panel.window, eject.rect().center()));
    CHECK(panel.rests());
    panel.list().setFocus();
    QTest::keyClick(panel.window->windowHandle(), Qt::Key_Return);
    CHECK(panel.rests());
  };
  const auto modal = std::make_shared<trial::TrialForm>(desk);
  QTimer::singleShot(0, qApp, [&] {
    work();
    modal->hide();
  });
  modal->showModal(form.get());
  CHECK(panel.shelf().done() == Lines{"eject", "insert a"});
  QTimer::singleShot(0, qApp, [&] {
    work();
    QApplication::activeModalWidget()->close();
  });
  QtMessageBoxes(desk).show({"t", "x", BoxButtons::Ok, BoxIcon::Information});
  CHECK(panel.shelf().done() == Lines{"eject", "insert a", "eject", "insert a"});
}

TEST_CASE(
    "A screen reader finds a name for all that has the focus in the panel, and keys lead through it as it is read") {
  const trial::ScreenReader reader;
  Panel panel(2);
  panel.lastWord = "x";
  panel.show();
  panel.button("remove").click();
  panel.shelf().refusal = "no";
  std::set<QKeySequence> keys;
  for (const QPushButton* button : panel.window->findChildren<QPushButton*>()) {
    CAPTURE(button->text().toStdString());
    CHECK(keys.insert(QKeySequence::mnemonic(button->text())).second);
    CHECK_FALSE(QKeySequence::mnemonic(button->text()).isEmpty());
  }
  CHECK(keys.insert(QKeySequence("Alt+S")).second);
  Lines chain;
  for (QWidget* widget : trial::tabChain(*panel.window)) {
    chain.push_back(widget->objectName().toStdString());
    CHECK_FALSE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty());
  }
  CHECK(chain == Lines{"recorder", "eject", "shelf", "insert", "rename", "remove", "addBlank", "removeForGood", "keep",
                       "lastWord", "showFiles", "close"});
}

TEST_CASE("A deed that ends while a look is under way is followed by a look of its own") {
  Panel panel;
  panel.show();
  panel.shelf().change([&] { panel.shelf().slow = true; });
  const int before = panel.shelf().looks();
  REQUIRE(comes([&] { return panel.shelf().looks() == before + 1; }));
  panel.button("eject").click();
  REQUIRE(panel.does({"eject"}));
  panel.shelf().change([&] {
    panel.shelf().slow = false;
    panel.shelf().view.shelf = {disc("new")};
  });
  CHECK(comes([&] { return panel.names() == Lines{"new"}; }));
}

TEST_CASE("Add Blank offers the three kinds of blank disc, each under a key of its own") {
  Panel panel;
  panel.show();
  Lines captions;
  for (const QAction* action : panel.button("addBlank").menu()->actions())
    captions.push_back(action->text().toStdString());
  CHECK(captions == Lines{"CD-R, &74 min", "CD-R, &80 min", "CD-R&W, 80 min"});
}

}  // namespace trackloom
