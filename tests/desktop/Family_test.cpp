#include "desktop/Family.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QMimeData>
#include <QShortcut>
#include <QTimer>
#include <QTreeView>
#include <catch2/catch.hpp>
#include <stdexcept>

#include "desktop/LiveProgram.h"
#include "desktop/QtEvents.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;
using trial::in;
using Lines = std::vector<std::string>;

namespace {

/// A window of somebody else, such as a help viewer, that counts its clicks.
struct Stranger {
  Stranger() {
    window.resize(200, 100);
    button.resize(200, 100);
    QObject::connect(&button, &QPushButton::clicked, [this] { ++clicks; });
    window.show();
  }
  QWidget window;
  QPushButton button{&window};
  int clicks = 0;
};

/// As the window system brings a click: to the window, which must let it through to the widget.
void clickInWindow(QWidget& widget) {
  const QPoint place = widget.mapTo(widget.window(), widget.rect().center());
  QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {}, place);
}

void keyInWindow(QWidget& window, Qt::Key key, Qt::KeyboardModifiers with = {}) {
  QTest::keyClick(window.windowHandle(), key, with);
}

/// What the form's handlers heard of its user.
Lines deeds(const trial::TrialForm& form) {
  Lines deeds;
  for (const std::string& heard : form.heard)
    if (heard != "Activate") deeds.push_back(heard);
  return deeds;
}

struct TwoForms {
  QtDesk desk{trial::trialDesigns()};
  std::shared_ptr<trial::TrialForm> first = std::make_shared<trial::TrialForm>(desk);
  std::shared_ptr<trial::TrialForm> second = std::make_shared<trial::TrialForm>(desk);
  TwoForms() { first->show(); }

  QPushButton& ok(Form& form) { return in<QPushButton>(*desk.window(form), "cmdOK"); }

  /// Shows a box and closes it.
  QWindow* windowBeforeBox() {
    QWindow* before = nullptr;
    QTimer::singleShot(0, qApp, [&] {
      before = QApplication::activeModalWidget()->windowHandle()->transientParent();
      QApplication::activeModalWidget()->close();
    });
    QtMessageBoxes(desk).show({"t", "x", BoxButtons::Ok, BoxIcon::Information});
    return before;
  }
};

}  // namespace

TEST_CASE("While a form is modal, no other window of the program takes a click or a key, and strangers do") {
  TwoForms forms;
  Stranger stranger;
  QTimer::singleShot(0, qApp, [&] {
    clickInWindow(forms.ok(*forms.first));
    keyInWindow(*forms.desk.window(*forms.first), Qt::Key_Return);
    clickInWindow(stranger.button);
    clickInWindow(forms.ok(*forms.second));
    forms.second->hide();
  });
  forms.second->showModal(forms.first.get());
  CHECK(deeds(*forms.first).empty());
  CHECK(deeds(*forms.second) == Lines{"cmdOK"});
  CHECK(stranger.clicks == 1);
  clickInWindow(forms.ok(*forms.first));
  CHECK(deeds(*forms.first) == Lines{"cmdOK"});
}

TEST_CASE("A box takes the input of every window of the program, also without an owner, and of no other") {
  TwoForms forms;
  forms.second->show();
  Stranger stranger;
  QtMessageBoxes boxes(forms.desk);
  QTimer::singleShot(0, qApp, [&] {
    clickInWindow(forms.ok(*forms.first));
    clickInWindow(forms.ok(*forms.second));
    clickInWindow(stranger.button);
    QApplication::activeModalWidget()->close();
  });
  boxes.show({"t", "x", BoxButtons::Ok, BoxIcon::Information});
  CHECK(deeds(*forms.first).empty());
  CHECK(deeds(*forms.second).empty());
  CHECK(stranger.clicks == 1);
}

TEST_CASE("Of two boxes the newer takes the input, and then the older again") {
  TwoForms forms;
  QtMessageBoxes boxes(forms.desk);
  QPointer<QMessageBox> older;
  BoxAnswer newer = BoxAnswer::Ok;
  QTimer::singleShot(0, qApp, [&] {
    older = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    QTimer::singleShot(0, qApp, [&] {
      clickInWindow(*older->button(QMessageBox::Yes));
      CHECK(older->isVisible());
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      clickInWindow(*box->button(QMessageBox::No));
    });
    newer = boxes.show({"new", "x", BoxButtons::YesNo, BoxIcon::Question});
    clickInWindow(*older->button(QMessageBox::Yes));
  });
  CHECK(boxes.show({"old", "x", BoxButtons::YesNo, BoxIcon::Question}) == BoxAnswer::Yes);
  CHECK(newer == BoxAnswer::No);
}

TEST_CASE("A box stands before a window of the program, though the user works in another") {
  TwoForms forms;
  Stranger stranger;
  stranger.window.activateWindow();
  REQUIRE(QTest::qWaitForWindowActive(&stranger.window));
  CHECK(forms.windowBeforeBox() == forms.desk.window(*forms.first)->windowHandle());
}

TEST_CASE("Of two windows that take input a box stands before the one in which the user works") {
  TwoForms forms;
  forms.second->show();
  QWidget* active = forms.desk.window(*forms.first);
  active->activateWindow();
  REQUIRE(QTest::qWaitForWindowActive(active));
  CHECK(forms.windowBeforeBox() == active->windowHandle());
}

TEST_CASE("A window behind a modal form still takes the size that the window system gives it") {
  TwoForms forms;
  QWidget* behind = forms.desk.window(*forms.first);
  const QSize larger = behind->size() + QSize(40, 30);
  QTimer::singleShot(0, qApp, [&] {
    behind->windowHandle()->resize(larger);
    CHECK(comesTrue([&] { return behind->size() == larger; }));
    forms.second->hide();
  });
  forms.second->showModal(forms.first.get());
}

TEST_CASE(
    "A box stands before the modal form, though the window system still takes the one behind it for the active one") {
  TwoForms forms;
  QWindow* before = nullptr;
  QTimer::singleShot(0, qApp, [&] {
    QWidget* behind = forms.desk.window(*forms.first);
    behind->activateWindow();
    REQUIRE(QTest::qWaitForWindowActive(behind));
    before = forms.windowBeforeBox();
    forms.second->hide();
  });
  forms.second->showModal(forms.first.get());
  CHECK(before == forms.desk.window(*forms.second)->windowHandle());
}

TEST_CASE("No shortcut and no drop reaches a window behind a box, wherever the window system sends them") {
  trial::LiveProgram live;
  live.startQuietly();
  live.newLayout(AudioLayout);
  live.addTrack("first.mp3", 1000);
  const std::string path = live.makeTrack("a.mp3", 1000);
  auto& viewport = *in<QTreeView>(live.window(), "ListView1").viewport();
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
  const auto intrude = [&] {
    QShortcutEvent shortcut(QKeySequence("Ctrl+W"), 0);
    for (QShortcut* key : live.window().findChildren<QShortcut*>())
      if (key->key() == QKeySequence("Ctrl+W")) QCoreApplication::sendEvent(key, &shortcut);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(live.window().windowHandle(), &enter);
    QDropEvent drop(viewport.mapTo(&live.window(), QPoint(9, 9)), Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(live.window().windowHandle(), &drop);
    QTest::qWait(20);
  };
  live.user.at("Remove Track", [&](QWidget& box) {
    intrude();
    box.close();
  });
  live.click("Delete");
  live.user.finish();
  CHECK(live.program.session().mod.LayoutOpen);
  CHECK(live.form().ListView1.Count() == 1);
}

TEST_CASE("While the files of a hidden dialog come in, no window takes input, afterwards they do") {
  TwoForms forms;
  const auto lookAround = [&] {
    clickInWindow(forms.ok(*forms.first));
    keyInWindow(*forms.desk.window(*forms.first), Qt::Key_Escape);
    QCloseEvent close;
    QCoreApplication::sendEvent(forms.desk.window(*forms.first)->windowHandle(), &close);
    CHECK_FALSE(close.isAccepted());
    QCoreApplication::processEvents();
  };
  forms.second->cmdOK.Click = [&] {
    forms.second->hide();
    lookAround();
    forms.second->unload();
  };
  QTimer::singleShot(0, qApp, [&] { clickInWindow(forms.ok(*forms.second)); });
  forms.second->showModal(forms.first.get());
  CHECK(deeds(*forms.first).empty());
  CHECK(forms.desk.window(*forms.first)->isVisible());
  clickInWindow(forms.ok(*forms.first));
  CHECK(deeds(*forms.first) == Lines{"cmdOK"});
}

TEST_CASE("A box over a hidden dialog's work can be answered") {
  TwoForms forms;
  QtMessageBoxes boxes(forms.desk);
  BoxAnswer answer = BoxAnswer::Ok;
  forms.second->cmdOK.Click = [&] {
    forms.second->hide();
    QTimer::singleShot(0, qApp, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      CHECK(box->windowHandle()->transientParent() == forms.desk.window(*forms.first)->windowHandle());
      clickInWindow(*box->button(QMessageBox::No));
    });
    answer = boxes.show({"t", "x", BoxButtons::YesNo, BoxIcon::Question});
    forms.second->unload();
  };
  QTimer::singleShot(0, qApp, [&] { clickInWindow(forms.ok(*forms.second)); });
  forms.second->showModal(forms.first.get());
  CHECK(answer == BoxAnswer::No);
}

TEST_CASE("The list of a combo box in a modal form can be clicked") {
  TwoForms forms;
  for (const char* text : {"one", "two", "three"}) forms.second->cboPick.AddItem(text);
  QTimer::singleShot(0, qApp, [&] {
    auto& combo = in<QComboBox>(*forms.desk.window(*forms.second), "cboPick");
    combo.showPopup();
    const QRect item = combo.view()->visualRect(combo.model()->index(1, 0));
    QTest::mouseMove(combo.view()->window()->windowHandle(),
                     combo.view()->viewport()->mapTo(combo.view()->window(), item.center()));
    QTest::qWait(300);
    QTest::mouseClick(combo.view()->window()->windowHandle(), Qt::LeftButton, {},
                      combo.view()->viewport()->mapTo(combo.view()->window(), item.center()));
    forms.second->hide();
  });
  forms.second->showModal(forms.first.get());
  CHECK(deeds(*forms.second) == Lines{"cboPick two"});
}

TEST_CASE(
    "While the program waits within a call, windows are painted and nothing reaches the program, and later all does") {
  TwoForms forms;
  QtPatience patience(forms.desk);
  QtEventQueue events(forms.desk);
  Lines heard;
  forms.first->Timer1.Tick = [&] {
    heard.push_back("tick");
    forms.first->Timer1.Enabled = false;
  };
  events.post([&] { heard.push_back("before"); });
  forms.first->Timer1.Enabled = true;
  int looks = 0;
  patience.until([&](std::chrono::milliseconds atMost) {
    QTest::qSleep(static_cast<int>(std::min(atMost, std::chrono::milliseconds(5)).count()));
    if (++looks == 3) {
      events.post([&] { heard.push_back("within"); });
      QTest::mousePress(forms.ok(*forms.first).window()->windowHandle(), Qt::LeftButton, {},
                        forms.ok(*forms.first).geometry().center());
      heard.push_back("input sent");
    }
    return looks == 10;
  });
  CHECK(heard == Lines{"input sent"});
  REQUIRE(comesTrue([&] { return heard.size() == 4; }));
  CHECK(std::find(heard.begin(), heard.end(), "before") < std::find(heard.begin(), heard.end(), "within"));
  CHECK(std::count(heard.begin(), heard.end(), "tick") == 1);
}

TEST_CASE("An event held back that shows a box does not hold up those behind it") {
  TwoForms forms;
  QtMessageBoxes boxes(forms.desk);
  QtEventQueue events(forms.desk);
  Lines heard;
  events.post([&] {
    boxes.show({"t", "x", BoxButtons::Ok, BoxIcon::Information});
    heard.push_back("box gone");
  });
  events.post([&] {
    heard.push_back("behind");
    QApplication::activeModalWidget()->close();
  });
  {
    const QtDesk::Standstill standstill(forms.desk);
    QCoreApplication::processEvents();
    CHECK(heard.empty());
  }
  REQUIRE(comesTrue([&] { return heard.size() == 2; }));
  CHECK(heard == Lines{"behind", "box gone"});
}

TEST_CASE("What was held back waits on where the program stands still again before its turn has come") {
  TwoForms forms;
  Lines heard;
  {
    const QtDesk::Standstill standstill(forms.desk);
    forms.desk.perform([&] { heard.push_back("held"); });
  }
  {
    const QtDesk::Standstill again(forms.desk);
    QCoreApplication::processEvents();
    CHECK(heard.empty());
    const QtDesk::Standstill within(forms.desk);
  }
  forms.desk.perform([&] { heard.push_back("behind"); });
  CHECK(heard.empty());
  REQUIRE(comesTrue([&] { return heard.size() == 2; }));
  CHECK(heard == Lines{"held", "behind"});
}

TEST_CASE("A window that is to be closed while the program waits within a call is asked afterwards") {
  TwoForms forms;
  {
    const QtDesk::Standstill standstill(forms.desk);
    forms.desk.window(*forms.first)->close();
    QCoreApplication::processEvents();
    CHECK(forms.desk.window(*forms.first) != nullptr);
  }
  CHECK(comesTrue([&] { return forms.desk.window(*forms.first) == nullptr; }));
}

TEST_CASE("A wait that is over at once lets nothing run, and what it throws comes out") {
  TwoForms forms;
  QtPatience patience(forms.desk);
  bool ran = false;
  QTimer::singleShot(0, qApp, [&] { ran = true; });
  patience.until([](std::chrono::milliseconds /*atMost*/) { return true; });
  CHECK_FALSE(ran);
  int looks = 0;
  CHECK_THROWS_AS(patience.until([&](std::chrono::milliseconds /*atMost*/) -> bool {
    if (++looks == 2) throw std::runtime_error("the drive has gone");
    return false;
  }),
                  std::runtime_error);
  bool entered = false;
  forms.desk.perform([&] { entered = true; });
  CHECK(entered);
}

}  // namespace trackloom
