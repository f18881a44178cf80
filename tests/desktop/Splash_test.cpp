#include <QApplication>
#include <algorithm>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"

namespace trackloom {

namespace {

bool splashShows() {
  const auto windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
    return window->isVisible() && window->windowFlags().testFlag(Qt::SplashScreen);
  });
}

}  // namespace

TEST_CASE("Nothing of the splash stands behind the words that no CD writer was found") {
  trial::LiveProgram live;
  live.engines.stage.drives.clear();
  live.desk.enter([&] { live.program.start(); });
  REQUIRE(splashShows());
  live.folder.write("NoShow.dat", "");
  bool told = false;
  const auto answer = [&](QWidget& window) {
    told = true;
    CHECK_FALSE(splashShows());
    trial::in<QPushButton>(window, "cmdOK").click();
    // The end of the process, which a real one does not outlive.
    CHECK(live.ended == 0);
    live.program.forms().shell.frmNOCD->hide();
  };
  live.user.at("No CD Writer Found", answer);
  live.desk.enter([&] { live.program.forms().shell.frmOpen->Timer1.tick(); });
  live.user.finish();
  CHECK(told);
}

}  // namespace trackloom
