#include "desktop/ScreenPlace.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>
#include <catch2/catch.hpp>

#include "desktop/QtMessageBoxes.h"
#include "desktop/ScreenFit.h"
#include "desktop/Trial.h"

namespace trackloom {

namespace {

constexpr QRect Left(0, 0, 1000, 800);
constexpr QRect Right(1000, 200, 500, 400);
constexpr int Title = 20;

struct Row {
  const char* what;
  QRect frame;
  std::vector<QRect> screens;
  QPoint place;
};

const std::vector<Row> rows{
    {"inside", {10, 20, 300, 200}, {Left}, {10, 20}},
    {"over the left edge, a part of its title in sight", {-299, 20, 300, 200}, {Left}, {-299, 20}},
    {"just beyond the left edge", {-300, 20, 300, 200}, {Left}, {0, 20}},
    {"over the right edge, a part of its title in sight", {999, 20, 300, 200}, {Left}, {999, 20}},
    {"just beyond the right edge", {1000, 20, 300, 200}, {Left}, {700, 20}},
    {"its title half above the screen", {10, -10, 300, 200}, {Left}, {10, -10}},
    {"its title above the screen, the rest on it", {10, -20, 300, 200}, {Left}, {10, 0}},
    {"its title on the last line of the screen", {10, 799, 300, 200}, {Left}, {10, 799}},
    {"below the screen", {10, 800, 300, 200}, {Left}, {10, 600}},
    {"larger than the screen and beyond it", {5000, 5000, 1200, 900}, {Left}, {0, 0}},
    {"on the second screen", {1400, 250, 300, 200}, {Left, Right}, {1400, 250}},
    {"beside the second screen", {1600, 250, 300, 200}, {Left, Right}, {1200, 250}},
    {"beside the second screen, told in the other order", {1600, 250, 300, 200}, {Right, Left}, {1200, 250}},
    {"above the second screen", {1010, 100, 300, 200}, {Left, Right}, {1010, 200}},
    {"far below, nearer to the first", {100, 3000, 300, 200}, {Right, Left}, {100, 600}},
    {"left of all, on a screen with negative numbers", {-900, 10, 300, 200}, {{-1000, 0, 900, 800}, Left}, {-900, 10}},
    {"farther away than numbers of sixteen bits reach", {2000000000, 10, 300, 200}, {Left}, {700, 10}},
    {"no screen at all", {5000, 5000, 300, 200}, {}, {5000, 5000}},
};

}  // namespace

TEST_CASE("A window can be grasped: any part of its title on a screen will do, else it stands on the nearest one") {
  for (const Row& row : rows) {
    INFO(row.what);
    CHECK(graspablePlace(row.frame, Title, row.screens) == row.place);
  }
}

TEST_CASE("A dialog over a window at the screen's edge stands wholly on the screen") {
  trial::Shown shown;
  QWidget& window = *shown.desk.window(*shown.form);
  window.resize(200, 100);
  const QRect screen = window.screen()->availableGeometry();
  for (const QPoint& corner : {screen.topLeft(), screen.topRight(), screen.bottomLeft(), screen.bottomRight()}) {
    centreOver(window, QRect(corner - QPoint(50, 50), QSize(100, 100)));
    CHECK(screen.contains(window.geometry()));
  }
  centreOver(window, screen);
  CHECK((window.geometry().center() - screen.center()).manhattanLength() < 60);
}

TEST_CASE("A maximised window lies on all of its screen, whether the window system has seen to it or not") {
  QWidget window;
  window.setGeometry(10, 20, 300, 200);
  CHECK(placeOf(window) == window.frameGeometry());
  window.setWindowState(Qt::WindowMaximized);
  REQUIRE(window.frameGeometry().size() != window.screen()->availableGeometry().size());
  CHECK(placeOf(window) == window.screen()->availableGeometry());
}

TEST_CASE("A modal form and a box over a window that is being maximised stand in the middle of its screen") {
  QtDesk desk(trial::trialDesigns());
  const auto owner = std::make_shared<trial::TrialForm>(desk);
  const auto form = std::make_shared<trial::TrialForm>(desk);
  owner->show();
  QWidget& window = *desk.window(*owner);
  window.move(0, 0);
  window.overrideWindowState(Qt::WindowMaximized);
  const QPoint middle = window.screen()->availableGeometry().center();
  REQUIRE((window.frameGeometry().center() - middle).manhattanLength() > 60);
  QRect place;
  QTimer::singleShot(0, qApp, [&] {
    place = desk.window(*form)->frameGeometry();
    form->hide();
  });
  form->showModal(owner.get());
  CHECK((place.center() - middle).manhattanLength() < 60);
  QtMessageBoxes boxes(desk);
  QTimer::singleShot(0, qApp, [&] {
    place = QApplication::activeModalWidget()->frameGeometry();
    QApplication::activeModalWidget()->close();
  });
  boxes.show({"t", "x", BoxButtons::Ok, BoxIcon::Information});
  CHECK((place.center() - middle).manhattanLength() < 60);
}

TEST_CASE("A modal form and a box over a window that hangs off the screen are wholly in sight") {
  QtDesk desk(trial::trialDesigns());
  const auto owner = std::make_shared<trial::TrialForm>(desk);
  const auto form = std::make_shared<trial::TrialForm>(desk);
  owner->placement = Placement{WindowState::Normal, -3000, 0, 6000, 4500};
  owner->show();
  QRect place;
  QTimer::singleShot(0, qApp, [&] {
    place = desk.window(*form)->geometry();
    form->hide();
  });
  form->showModal(owner.get());
  CHECK(place.left() >= 0);
  QtMessageBoxes boxes(desk);
  QTimer::singleShot(0, qApp, [&] {
    place = QApplication::activeModalWidget()->geometry();
    QApplication::activeModalWidget()->close();
  });
  boxes.show({"t", std::string(80, 'x'), BoxButtons::Ok, BoxIcon::Information});
  CHECK(place.left() >= 0);
}

}  // namespace trackloom
