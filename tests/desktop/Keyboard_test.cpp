#include <QRadioButton>
#include <QTreeView>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// What the user hears of the widget or the row that the keys go to.
std::string focused(QWidget& window) {
  QWidget* widget = window.focusWidget();
  return widget == nullptr ? "" : widget->objectName().toStdString();
}

/// A key as the window system brings it: to whatever has the focus.
void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
  QTest::keyClick(window.focusWidget() == nullptr ? &window : window.focusWidget(), key, with);
}

// No REQUIRE in here: its exception would have to pass through the toolkit.

void tabTo(QWidget& window, const std::string& name) {
  for (int steps = 0; focused(window) != name && steps < 20; ++steps) press(window, Qt::Key_Tab);
  CHECK(focused(window) == name);
}

void pressUntil(QWidget& window, Qt::Key key, const std::function<bool()>& done) {
  for (int presses = 0; !done() && presses < 20; ++presses) {
    press(window, key);
    QTest::qWait(50);
  }
  CHECK(done());
}

/// The home folder of the process, another for as long as this lives.
class Home {
 public:
  explicit Home(const std::string& folder) { qputenv("HOME", QByteArray::fromStdString(folder)); }
  ~Home() { qputenv("HOME", before_); }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

 private:
  const QByteArray before_ = qgetenv("HOME");
};

void chooseAudio(QWidget& window) {
  tabTo(window, "optStandard");
  press(window, Qt::Key_Down);
  CHECK(trial::in<QRadioButton>(window, "optMP3").isChecked());
  press(window, Qt::Key_Up);
  CHECK(trial::in<QRadioButton>(window, "optStandard").isChecked());
  press(window, Qt::Key_O, Qt::AltModifier);
}

void addTwoFiles(trial::LiveProgram& live, QWidget& window) {
  frmFiles& form = live.program.forms().layout.frmFiles.get();
  tabTo(window, "FT1");
  pressUntil(window, Qt::Key_Right, [&] { return form.FT1.SelectedFolder() == live.folder / "music/evening"; });
  CHECK(form.ListView1.Count() == 3);
  press(window, Qt::Key_Tab);
  CHECK(focused(window) == "ListView1");
  press(window, Qt::Key_Space);
  press(window, Qt::Key_Down);
  press(window, Qt::Key_Space);
  CHECK(form.ListView1.CheckedCount() == 2);
  press(window, Qt::Key_A, Qt::AltModifier);
}

void chooseOptions(frmOptions& form, QWidget& window) {
  tabTo(window, "optCreateOnly");
  press(window, Qt::Key_Up);
  CHECK(form.optTestWrite.selected());
  press(window, Qt::Key_Down);
  CHECK(form.optCreateOnly.selected());
  tabTo(window, "VScroll1");
  press(window, Qt::Key_Up);
  CHECK(form.txtCopies.Text == std::string("2"));
  press(window, Qt::Key_Down);
  CHECK(form.txtCopies.Text == std::string("1"));
  tabTo(window, "TS1");
  press(window, Qt::Key_Right);
  CHECK(form.Pic1.Visible);
  press(window, Qt::Key_Return);
}

}  // namespace

TEST_CASE("A disc is composed and recorded with the keyboard alone") {
  trial::LiveProgram live;
  const Home home(live.folder / "music");
  for (const char* name : {"evening/a.mp3", "evening/b.mp3", "evening/c.mp3"}) live.makeTrack(name, 1000);
  live.user.at("Select Option", chooseAudio);
  live.user.at("Trackloom", [](QWidget& window) { press(window, Qt::Key_A, Qt::ControlModifier); });
  live.user.at("File Selection", [&](QWidget& window) { addTwoFiles(live, window); });
  live.user.at("Trackloom", [&](QWidget& window) {
    CHECK(live.form().ListView1.Count() == 2);
    press(window, Qt::Key_R, Qt::ControlModifier);
  });
  live.user.at("CD Creation Options",
               [&](QWidget& window) { chooseOptions(live.program.forms().writing.frmOptions.get(), window); });
  live.user.at("CD Creation Status", [&](QWidget& window) {
    CHECK(focused(window) == "cmdCancel");
    live.desk.enter([&] { live.cdr1().events.OnOperationComplete(); });
  });
  live.user.at("Record Operation", [](QWidget& window) { press(window, Qt::Key_C, Qt::AltModifier); });
  live.user.at("Trackloom", [](QWidget& window) { press(window, Qt::Key_W, Qt::ControlModifier); });
  live.user.atBox({"Save Layout", "Save the currently open layout?", BoxButtons::YesNo, BoxIcon::Question},
                  QMessageBox::No);
  live.start();
  live.user.finish();
  CHECK_FALSE(live.program.session().mod.LayoutOpen);
}

}  // namespace trackloom
