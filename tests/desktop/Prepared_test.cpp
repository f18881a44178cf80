#include <QApplication>
#include <QMainWindow>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <catch2/catch.hpp>

#include "desktop/AllForms.h"
#include "desktop/LiveProgram.h"
#include "desktop/Trial.h"

namespace trackloom {

namespace {

/// The windows that came since `before` was looked at.
QWidgetList windowsSince(const QWidgetList& before) {
  QWidgetList windows = QApplication::topLevelWidgets();
  const auto known = std::remove_if(windows.begin(), windows.end(), [&](QWidget* w) { return before.contains(w); });
  windows.erase(known, windows.end());
  return windows;
}

/// A window system that never tells a window that it is the active one.
class NoActivation : public QObject {
 protected:
  bool eventFilter(QObject* /*window*/, QEvent* event) override { return event->type() == QEvent::WindowActivate; }
};

}  // namespace

TEST_CASE("The main window acts at once, whether the window system tells it that it is the active one or not") {
  const std::vector<FaceDesign> designs{
      {"frmTrial", []() -> std::unique_ptr<QWidget> { return std::make_unique<QMainWindow>(); }}};
  QtDesk desk(designs);
  const auto form = std::make_shared<trial::TrialForm>(desk);
  NoActivation filter;
  desk.prepare(*form);
  desk.window(*form)->installEventFilter(&filter);
  form->show();
  for (int turn = 1; turn <= 3; ++turn) QApplication::processEvents();
  CHECK(form->heard == std::vector<std::string>{"Activate"});
}

TEST_CASE("A window made ready ahead says nothing to its form before it shows") {
  QtDesk desk(trial::trialDesigns());
  const auto form = std::make_shared<trial::TrialForm>(desk);
  desk.prepare(*form);
  QWidget* const window = desk.window(*form);
  REQUIRE(window != nullptr);
  CHECK_FALSE(window->isVisible());
  trial::in<QPushButton>(*window, "cmdOK").click();
  CHECK(form->heard.empty());
  form->show();
  CHECK(desk.window(*form) == window);
  trial::in<QPushButton>(*window, "cmdOK").click();
  CHECK(form->heard == std::vector<std::string>{"cmdOK"});
}

TEST_CASE("The next form of a name gets the window that was made ready for it, and the one behind it another") {
  QtDesk desk(trial::trialDesigns());
  const QWidgetList before = QApplication::topLevelWidgets();
  desk.prepare("frmTrial");
  const QWidgetList ready = windowsSince(before);
  REQUIRE(ready.size() == 1);
  // To the window system, too, which takes its time over a new one.
  CHECK(ready.front()->internalWinId() != 0);
  const auto first = std::make_shared<trial::TrialForm>(desk);
  const auto second = std::make_shared<trial::TrialForm>(desk);
  first->show();
  second->show();
  CHECK(desk.window(*first) == ready.front());
  CHECK(desk.window(*second) != ready.front());
  CHECK(desk.window(*second)->findChild<QPushButton*>("cmdOK") != nullptr);
}

TEST_CASE("A dialog that was made ready ahead opens with room for all lines of its texts, as any other") {
  trial::AllForms forms;
  trial::AllForms others;
  const auto isNewOption = [](const auto& form) { return form->name() == "frmNewOption"; };
  Form& form = **std::find_if(forms.all.begin(), forms.all.end(), isNewOption);
  const trial::ShownForm any(**std::find_if(others.all.begin(), others.all.end(), isNewOption));
  QtDesk desk;
  desk.prepare("frmNewOption");
  QApplication::processEvents();
  desk.show(form);
  QWidget& window = *desk.window(form);
  CHECK(window.size() == any.window.size());
  CHECK(window.height() == window.layout()->totalHeightForWidth(window.width()));
  for (auto* option : window.findChildren<QRadioButton*>())
    CHECK(option->height() >= option->heightForWidth(option->width()));
}

TEST_CASE("A main window made ready behind the splash has not been loaded, and starts as any other") {
  trial::LiveProgram live;
  live.folder.write("NoShow.dat", "");
  live.desk.enter([&] { live.program.start(); });
  live.desk.prepare(live.form());
  QApplication::processEvents();
  CHECK(live.program.session().mod.AppFolder.empty());
  CHECK(live.form().DockStudio1.ClientArea().width == 0);
  CHECK_FALSE(live.window().isVisible());
  live.desk.enter([&] { live.program.forms().shell.frmOpen->Timer1.tick(); });
  CHECK(live.window().isVisible());
  CHECK(trial::comesTrue([&] { return live.form().DockStudio1.ClientArea().width > 0; }));
}

}  // namespace trackloom
