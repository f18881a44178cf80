#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <catch2/catch.hpp>
#include <set>

#include "desktop/AllForms.h"
#include "desktop/QtMessageBoxes.h"
#include "desktop/ScreenReader.h"
#include "desktop/Trial.h"
#include "writing/frmISO.h"
#include "writing/frmStatus.h"

namespace trackloom {

using trial::comesTrue;
using Lines = std::vector<std::string>;

namespace {

constexpr const char* HeardProperty = "heardByEar";

/// A screen reader that writes down what it is told: which object, and what of it.
class Ear {
 public:
  Ear() {
    heard();
    QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
      const QObject* object = event->object();
      if (object == nullptr) return;
      const QString line = object->objectName() + " " + QString::number(event->type(), 16);
      qApp->setProperty(HeardProperty, qApp->property(HeardProperty).toStringList() << line);
    });
  }

  /// How often this was told of the object since the last time that anything was asked.
  int count(const char* object, QAccessible::Event type) const {
    const QString line = QString(object) + " " + QString::number(type, 16);
    return static_cast<int>(qApp->property(HeardProperty).toStringList().count(line));
  }
  static void heard() { qApp->setProperty(HeardProperty, QStringList()); }

 private:
  trial::ScreenReader listening_;
};

template <class WantedForm>
WantedForm& formOf(const trial::AllForms& forms) {
  for (const auto& form : forms.all)
    if (auto* wanted = dynamic_cast<WantedForm*>(form.get())) return *wanted;
  FAIL("no such form");
  throw std::logic_error("unreachable");
}

}  // namespace

TEST_CASE("A screen reader hears each new operation of a recording once") {
  const trial::AllForms forms;
  auto& status = formOf<frmStatus>(forms);
  const trial::ShownForm shown(status);
  const Ear ear;
  frmStatus::say(status.lblOperation, "Writing Track #1...");
  status.lblOperation.Enabled = false;
  status.lblOperation.Enabled = true;
  frmStatus::say(status.lblOperation, "Writing Track #1...");
  frmStatus::say(status.lblDevice, "50%");
  CHECK(ear.count("lblOperation", QAccessible::ObjectShow) == 1);
  CHECK(ear.count("lblOperation", QAccessible::NameChanged) == 1);
  CHECK(ear.count("lblDevice", QAccessible::ObjectShow) == 0);
  frmStatus::say(status.lblOperation, "Closing Track #1...");
  CHECK(ear.count("lblOperation", QAccessible::ObjectShow) == 2);
  frmStatus::say(status.lblOperation, "Writing Track #1...");
  frmStatus::say(status.lblOperation, "");
  CHECK(ear.count("lblOperation", QAccessible::ObjectShow) == 3);
  CHECK(shown.window.findChild<QLabel*>("lblOperation")->text().isEmpty());
}

// A screen reader says aloud what notifications say when they come into sight, and no other label.
TEST_CASE("What a window has to tell is a notification to screen readers, by the very words that are shown") {
  const trial::AllForms forms;
  const std::set<std::string> notices{"frmStatus lblOperation", "frmDone lblTypeInfo", "frmError lblError",
                                      "frmReading Label1"};
  std::set<std::string> found;
  for (const auto& form : forms.all) {
    const trial::ShownForm shown(*form);
    for (QWidget* widget : shown.window.findChildren<QWidget*>()) {
      const QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(widget);
      if (heard == nullptr || heard->role() != QAccessible::Notification) continue;
      found.insert(form->name() + " " + widget->objectName().toStdString());
      if (const auto* label = qobject_cast<QLabel*>(widget)) CHECK(heard->text(QAccessible::Name) == label->text());
    }
  }
  CHECK(found == notices);
}

TEST_CASE("A screen reader hears of progress every ten percent, and the bar shows every step") {
  const trial::AllForms forms;
  auto& status = formOf<frmStatus>(forms);
  const trial::ShownForm shown(status);
  for (const char* name : {"pbOverall", "pbTrack", "pbCache"}) {
    CAPTURE(name);
    auto& bar = *shown.window.findChild<QProgressBar*>(name);
    auto& control = name == std::string("pbOverall") ? status.pbOverall
                    : name == std::string("pbTrack") ? status.pbTrack
                                                     : status.pbCache;
    control.SetValue(0);
    control.SetMax(359849);
    const Ear ear;
    std::set<std::string> texts;
    for (int step = 0; step < 359849; step += 1000) {
      control.SetValue(step);
      texts.insert(bar.text().toStdString());
    }
    CHECK(ear.count(name, QAccessible::ValueChanged) == 9);
    CHECK(texts.size() == 100);
    control.SetValue(180000);
    const QImage half = bar.grab().toImage();
    control.SetValue(210000);
    CHECK(bar.grab().toImage() != half);
    Ear::heard();
    control.SetValue(359849);
    CHECK(bar.text() == "100%");
    CHECK(bar.value() == 359849);
    control.SetValue(0);
    CHECK(bar.value() == 0);
    CHECK(ear.count(name, QAccessible::ValueChanged) == 2);
  }
}

TEST_CASE("The making of an image is heard every ten percent too") {
  const trial::AllForms forms;
  auto& image = formOf<frmISO>(forms);
  const trial::ShownForm shown(image);
  image.pbCache.SetValue(0);
  image.pbCache.SetMax(7);
  const Ear ear;
  for (int step = 1; step <= 7; ++step) image.pbCache.SetValue(step);
  CHECK(ear.count("pbCache", QAccessible::ValueChanged) == 7);
  CHECK(shown.window.findChild<QProgressBar*>("pbCache")->value() == 7);
}

namespace {

/// A recording's window and the one that is shown at its end; who asked for attention.
struct TwoWindows {
  TwoWindows() {
    desk.setAttention([this](QWidget& window) { called.push_back(&window); });
    work->show();
    desk.window(*work)->setProperty("ownEntry", true);
    after->show();
  }
  QtDesk desk{trial::trialDesigns()};
  std::shared_ptr<trial::TrialForm> after = std::make_shared<trial::TrialForm>(desk);
  std::shared_ptr<trial::TrialForm> work = std::make_shared<trial::TrialForm>(desk);
  std::vector<QWidget*> called;

  /// The user works in a window of another program.
  void leave() {
    QApplication::setActiveWindow(nullptr);
    REQUIRE(QApplication::activeWindow() == nullptr);
  }
};

}  // namespace

TEST_CASE("At the end of a recording the window that then stands asks for attention, where the user works elsewhere") {
  TwoWindows two;
  two.leave();
  two.work->unload();
  two.desk.hide(*two.after);
  two.desk.show(*two.after);
  QApplication::setActiveWindow(nullptr);
  REQUIRE(comesTrue([&] { return !two.called.empty(); }));
  CHECK(two.called == std::vector<QWidget*>{two.desk.window(*two.after)});
}

TEST_CASE("Nobody asks for attention whom the user is looking at, nor at the end of other windows") {
  TwoWindows two;
  QApplication::setActiveWindow(two.desk.window(*two.after));
  two.work->unload();
  QTest::qWait(20);
  CHECK(two.called.empty());
  const auto other = std::make_shared<trial::TrialForm>(two.desk);
  other->show();
  two.leave();
  other->unload();
  QTest::qWait(20);
  CHECK(two.called.empty());
}

TEST_CASE("A box asks for attention where the user works elsewhere") {
  TwoWindows two;
  two.leave();
  QWidget* box = nullptr;
  QTimer::singleShot(50, qApp, [&] {
    box = QApplication::activeModalWidget();
    box->close();
  });
  QtMessageBoxes(two.desk).show({"Insert Disc", "x", BoxButtons::Ok, BoxIcon::Information});
  CHECK(two.called == std::vector<QWidget*>{box});
}

}  // namespace trackloom
