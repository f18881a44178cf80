#include "desktop/PanelDoor.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>

#include "desktop/LiveProgram.h"
#include "desktop/PanelTrial.h"
#include "desktop/PanelWords.h"
#include "desktop/ScreenFit.h"
#include "desktop/ScreenPlace.h"

namespace trackloom {

using trial::comes;
using trial::disc;
using trial::FakeShelf;
using State = ShelfDisc::State;

TEST_CASE("The words for discs") {
  ShelfDisc it = disc("a");
  CHECK(mediumText(it) == "CD-R, 80 min");
  CHECK(stateText(it) == "Blank");
  CHECK(contentText(it).isEmpty());
  CHECK(roomText(it) == "79:57 or 703 MB free");
  it.rewritable = true;
  it.size = 332849;
  it.state = State::Closed;
  it.kind = DataBlocks;
  it.tracks = 1;
  it.used = 51200;
  it.free = 0;
  CHECK(mediumText(it) == "CD-RW, 74 min");
  CHECK(stateText(it) == "Closed, 1 track");
  CHECK(contentText(it) == "100 MB");
  CHECK(roomText(it) == "100 MB used, 0 bytes free");
  it.state = State::AtWork;
  CHECK(stateText(it) == "At work");
  it.state = State::Spoilt;
  CHECK(stateText(it) == "Spoilt");
  it.kind = AudioBlocks;
  it.used = 75 * 61;
  CHECK(contentText(it) == "1:01");
  it.state = State::Damaged;
  CHECK(stateText(it) == "Damaged");
  CHECK(mediumText(it).isEmpty());
}

TEST_CASE("The age of a disc, by clocks that may disagree") {
  static constexpr std::int64_t Day = 86400;
  const auto [seconds, words] =
      GENERATE(Catch::Generators::table<std::int64_t, const char*>({{-5000, "just now"},
                                                                    {0, "just now"},
                                                                    {59, "just now"},
                                                                    {60, "1 min"},
                                                                    {3599, "59 min"},
                                                                    {3600, "1 h"},
                                                                    {Day - 1, "23 h"},
                                                                    {Day, "1 day"},
                                                                    {2629745, "30 days"},
                                                                    {2629746, "1 month"},
                                                                    {31556951, "11 months"},
                                                                    {31556952, "1 year"},
                                                                    {3000 * Day, "8 years"}}));
  CHECK(ageText(1000000000, 1000000000 + seconds) == words);
}

TEST_CASE("The panel's button stands beside the status bar while a recorder is there, and opens the panel") {
  const auto shelf = std::make_shared<FakeShelf>();
  const auto other = std::make_shared<FakeShelf>("Virtual Recorder 2");
  fakes::FakeOpener opener;
  trial::LiveProgram live;
  shelf->view.present = other->view.present = false;
  PanelDoor door({shelf, other}, opener, [] { return std::string(); });
  live.desk.setExtras([&](const std::string& form, QWidget& window) {
    if (form == "frmListing") door.standIn(window);
  });
  live.startQuietly();
  auto& button = trial::in<QToolButton>(live.window(), "frontPanel");
  CHECK(button.parentWidget()->objectName() == "StatusBar1");
  CHECK_FALSE(button.accessibleName().isEmpty());
  CHECK((button.focusPolicy() & Qt::TabFocus) != 0);
  REQUIRE(comes([&] { return shelf->looks() > 1; }));
  CHECK_FALSE(button.isVisible());
  other->change([&] { other->view.present = true; });
  REQUIRE(comes([&] { return button.isVisible(); }));
  button.click();
  const auto panel = [&]() -> QWidget* {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == "FrontPanel" && window->isVisible()) return window;
    return nullptr;
  };
  REQUIRE(panel() != nullptr);
  CHECK(comes([&] { return QApplication::activeWindow() == panel(); }));
  CHECK_FALSE(live.desk.family().owns(panel()));
  // In the right half of the window, as far as the screen goes.
  const QRect before = live.window().frameGeometry();
  const QRect half(QPoint(before.center().x(), before.top()), before.bottomRight());
  const QSize frame = frameOf(*panel());
  QRect due(QPoint(), panel()->size() + frame);
  due.moveCenter(half.center());
  CHECK(panel()->pos() == placeWithin(due, panel()->screen()->availableGeometry()));
  live.window().activateWindow();
  REQUIRE(comes([&] { return QApplication::activeWindow() == &live.window(); }));
  button.click();
  CHECK(comes([&] { return QApplication::activeWindow() == panel(); }));
  panel()->close();
  CHECK(panel() == nullptr);
  button.click();
  REQUIRE(panel() != nullptr);
  panel()->showMinimized();
  button.click();
  CHECK_FALSE(panel()->isMinimized());
  CHECK_FALSE(panel()->isMaximized());
  live.desk.enter([&] { live.form().hide(); });
  CHECK(panel() != nullptr);
  other->change([&] { other->view.present = false; });
  live.desk.enter([&] { live.form().show(); });
  CHECK(comes([&] { return !button.isVisible(); }));
}

TEST_CASE("Without a recorder there is no button, and in other windows neither") {
  fakes::FakeOpener opener;
  PanelDoor nothing({}, opener, [] { return std::string(); });
  QMainWindow window;
  window.addToolBar("x")->setObjectName("StatusBar1");
  nothing.standIn(window);
  CHECK(window.findChild<QToolButton*>("frontPanel") == nullptr);
  PanelDoor door({std::make_shared<FakeShelf>()}, opener, [] { return std::string(); });
  QWidget dialog;
  door.standIn(dialog);
  CHECK(dialog.findChild<QToolButton*>("frontPanel") == nullptr);
}

}  // namespace trackloom
