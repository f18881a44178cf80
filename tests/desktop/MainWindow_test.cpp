#include <QApplication>
#include <QComboBox>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <QWheelEvent>
#include <catch2/catch.hpp>

#include "desktop/Meter.h"
#include "desktop/Trial.h"
#include "fakes/Machine.h"

namespace trackloom {

using trial::comesTrue;
using Lines = std::vector<std::string>;

namespace {

/// The program's main window on a real desk, its tool clicks written down instead of carried out.
struct MainWindow {
  MainWindow() {
    machine.startQuietly();
    form().DockStudio1.ToolClick = [this](const Tool& tool) { clicks.push_back(tool.Name()); };
    form().DockStudio1.MenuOpened = [this](const std::string& menu) { opened.push_back(menu); };
    desk.show(form());
    REQUIRE(QTest::qWaitForWindowActive(&window()));
  }

  ListingWindow& form() { return machine.window(); }
  QMainWindow& window() { return dynamic_cast<QMainWindow&>(*desk.window(form())); }
  QToolBar& bar(const char* name) { return *window().findChild<QToolBar*>(name); }
  QMenu& menu(int place) { return *window().menuBar()->actions().at(place)->menu(); }

  fakes::Machine machine;
  QtDesk desk;
  Lines clicks;
  Lines opened;
};

Lines texts(const QList<QAction*>& actions) {
  Lines found;
  for (const QAction* action : actions) found.push_back(action->text().toStdString());
  return found;
}

}  // namespace

TEST_CASE("The menus and tool bars are those of the design, in order") {
  MainWindow main;
  CHECK(texts(main.window().menuBar()->actions()) == Lines{"&File", "&Actions", "&Tools", "&Help"});
  CHECK(texts(main.menu(0).actions()) == Lines{"&New CD Layout...\tCtrl+N", "&Open CD Layout...\tCtrl+O",
                                               "&Save...\tCtrl+S", "Save &As...", "&Print Track Listing...\tCtrl+P",
                                               "&Write ISO Image...", "&Close CD Layout\tCtrl+W", "E&xit Trackloom"});
  CHECK(texts(main.bar("Tool Bar 1").actions()) == Lines{"New", "Open", "Add Audio Files", "Search", "CD Folder",
                                                         "Delete", "Record CD", "Print", "CD Ripper", "Help"});
  for (const QAction* action : main.bar("Tool Bar 1").actions()) CHECK_FALSE(action->icon().isNull());
}

TEST_CASE("The entries of the folder menu and of the drop-down are the same actions") {
  MainWindow main;
  const QList<QAction*> inMenu = main.menu(1).actions().at(4)->menu()->actions();
  QAction* dropDown = main.bar("Tool Bar 1").actions().at(4);
  CHECK(texts(inMenu) == Lines{"Show Only No Folder Entries", "Show All Entries"});
  CHECK(dropDown->menu()->actions() == inMenu);
  auto* button = qobject_cast<QToolButton*>(main.bar("Tool Bar 1").widgetForAction(dropDown));
  CHECK(button->popupMode() == QToolButton::InstantPopup);
}

TEST_CASE("A menu entry, a tool button and a shortcut each click their tool") {
  MainWindow main;
  main.menu(0).actions().at(0)->trigger();
  main.bar("Tool Bar 1").actions().at(0)->trigger();
  QTest::keyClick(&main.window(), Qt::Key_R, Qt::ControlModifier);
  CHECK(main.clicks == Lines{"mnuFileNew", "New"});
  main.form().DockStudio1.tool("mnuActionsRecord").Enabled = true;
  QTest::keyClick(&main.window(), Qt::Key_R, Qt::ControlModifier);
  QTest::keyClick(&main.window(), Qt::Key_F1);
  CHECK(main.clicks == Lines{"mnuFileNew", "New", "mnuActionsRecord", "mnuHelpContents"});
}

TEST_CASE("Keys that the design does not name do nothing, and a disabled tool keeps its key from the list") {
  MainWindow main;
  ListView& list = main.form().ListView1;
  list.Enabled = true;
  list.Add({});
  list.SetFocus();
  for (const Qt::Key key : {Qt::Key_Q, Qt::Key_A, Qt::Key_X}) QTest::keyClick(&main.window(), key, Qt::ControlModifier);
  CHECK(main.clicks.empty());
  CHECK(list.SelectedRow() == 0);
  CHECK(main.window().isVisible());
}

TEST_CASE("A menu tells that it opens before its entries are shown") {
  MainWindow main;
  main.form().DockStudio1.MenuOpened = [&](const std::string& menu) {
    CHECK(menu == "mnuTools");
    CHECK_FALSE(main.menu(2).isVisible());
    main.form().DockStudio1.tool("mnuToolsErase").Enabled = false;
  };
  emit main.menu(2).aboutToShow();
  CHECK_FALSE(main.menu(2).actions().at(2)->isEnabled());
}

TEST_CASE("The tools' states show: panels, meter, drives and disabled commands") {
  MainWindow main;
  main.form().panel3.Text = "Layout Time:  00:02:00";
  main.form().Progress1.Maximum = 1000;
  main.form().Progress1.Value = 250;
  main.form().Progress1.Text = "250 Blocks of 1,000 Blocks  (25% of CD Used) %v %p";
  const auto& meter = *main.window().findChild<QProgressBar*>();
  CHECK(meter.value() == 250);
  CHECK(meter.text() == "250 Blocks of 1,000 Blocks  (25% of CD Used) %v %p");
  const auto& drives = *main.window().findChild<QComboBox*>("cboMainDrive");
  CHECK(drives.count() == static_cast<int>(main.form().cboMainDrive.entries().size()));
  CHECK(drives.currentIndex() == 0);
  CHECK_FALSE(main.bar("Tool Bar 1").actions().at(6)->isEnabled());
}

TEST_CASE("A list that becomes ready takes the focus, so that keys no longer change the drive") {
  MainWindow main;
  REQUIRE(main.window().focusWidget()->objectName() == "cboMainDrive");
  main.form().ListView1.Enabled = true;
  CHECK(main.window().focusWidget()->objectName() == "ListView1");
}

TEST_CASE("The wheel over the drive list does not change the drive") {
  MainWindow main;
  DockStudio& dock = main.form().DockStudio1;
  dock.AddEntry(main.form().cboMainDrive, "Another drive", "1");
  main.form().ListView1.Enabled = true;
  auto& drives = *main.window().findChild<QComboBox*>("cboMainDrive");
  const QPointF place = drives.rect().center();
  QWheelEvent wheel(place, drives.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&drives, &wheel);
  CHECK(drives.currentIndex() == 0);
  CHECK(main.form().cboMainDrive.SelectedEntry() == 1);
  CHECK_FALSE(drives.hasFocus());
}

TEST_CASE("The area inside the bars is told in twips, and again when the window changes") {
  MainWindow main;
  main.window().resize(900, 600);
  const auto areaTold = [&] {
    const QRect area = main.window().centralWidget()->geometry();
    const ClientRect told{area.x() * 15.0, area.y() * 15.0, area.width() * 15.0, area.height() * 15.0};
    return main.form().DockStudio1.Width() == 900 * 15 && main.form().DockStudio1.ClientArea() == told;
  };
  CHECK(comesTrue(areaTold));
  CHECK(main.form().ListView1.Width == main.window().centralWidget()->width() * 15.0);
}

TEST_CASE("The bars' arrangement survives, and damage to it moves nothing") {
  std::string moved;
  {
    MainWindow main;
    main.window().addToolBar(Qt::BottomToolBarArea, &main.bar("Tool Bar 2"));
    main.form().DockStudio1.arrangementWanted();
    moved = main.form().DockStudio1.Arrangement;
  }
  MainWindow main;
  REQUIRE(main.window().toolBarArea(&main.bar("Tool Bar 2")) == Qt::TopToolBarArea);
  for (const std::string& damaged : {std::string("nonsense"), moved.substr(0, moved.size() / 2), moved + "AAAA"}) {
    main.form().DockStudio1.Arrangement = damaged;
    CHECK(main.window().toolBarArea(&main.bar("Tool Bar 2")) == Qt::TopToolBarArea);
  }
  main.form().DockStudio1.Arrangement = moved;
  CHECK(main.window().toolBarArea(&main.bar("Tool Bar 2")) == Qt::BottomToolBarArea);
}

TEST_CASE("Without theme colours the bars alone are plain grey, at once") {
  MainWindow main;
  const QColor before = main.bar("Tool Bar 1").palette().color(QPalette::Window);
  main.form().DockStudio1.UseThemeColours = 0;
  CHECK(main.bar("Tool Bar 1").palette().color(QPalette::Window) == QColor(0xD4, 0xD0, 0xC8));
  CHECK(main.window().menuBar()->palette().color(QPalette::Window) == QColor(0xD4, 0xD0, 0xC8));
  CHECK(main.window().palette().color(QPalette::Window) == QApplication::palette().color(QPalette::Window));
  main.form().DockStudio1.UseThemeColours = 1;
  CHECK(main.bar("Tool Bar 1").palette().color(QPalette::Window) == before);
}

}  // namespace trackloom
