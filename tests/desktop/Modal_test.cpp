#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <catch2/catch.hpp>

#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;
using trial::Shown;
using trial::TrialForm;
using Lines = std::vector<std::string>;

namespace {

/// A desk on which the trial form can be shown modally, with steps that the user takes meanwhile.
struct Modal {
  QtDesk desk{trial::trialDesigns()};
  std::shared_ptr<TrialForm> form = std::make_shared<TrialForm>(desk);

  void show(std::function<void()> user) {
    QTimer::singleShot(0, qApp, std::move(user));
    form->showModal(nullptr);
  }
  QPushButton& ok() { return *desk.window(*form)->findChild<QPushButton*>("cmdOK"); }
};

/// A form without a design, whose window takes any size.
struct Plain {
  Plain() { form->show(); }

  QtDesk desk{trial::trialDesigns()};
  std::shared_ptr<Form> form = std::make_shared<Form>(desk, "frmPlain", "Plain");
};

}  // namespace

TEST_CASE("A modal form returns once a handler has hidden it, and goes on living") {
  Modal modal;
  modal.form->cmdOK.Click = [&] {
    modal.form->hide();
    modal.form->heard.push_back("after hide");
  };
  modal.show([&] {
    CHECK(modal.desk.window(*modal.form)->windowModality() == Qt::WindowModal);
    modal.ok().click();
  });
  CHECK(modal.form->heard.back() == "after hide");
  CHECK_FALSE(modal.form->closed());
  modal.show([&] { modal.ok().click(); });
  CHECK_FALSE(modal.desk.window(*modal.form)->isVisible());
}

TEST_CASE("A handler that unloads its own form runs on with its controls readable") {
  Modal modal;
  std::string read;
  const std::weak_ptr<TrialForm> alive = modal.form;
  modal.form->cmdOK.Click = [&, form = modal.form.get()] {
    form->unload();
    modal.form.reset();
    read = form->cmdOK.Caption.get();
  };
  const auto form = modal.form;
  QTimer::singleShot(
      0, qApp, [&, window = form.get()] { modal.desk.window(*window)->findChild<QPushButton*>("cmdOK")->click(); });
  form->showModal(nullptr);
  CHECK(read == "&OK");
  CHECK(form->closed());
  CHECK(modal.desk.window(*form) == nullptr);
}

TEST_CASE("A form that is unloaded behind a modal one keeps its window until its own handler is over") {
  Modal modal;
  Shown other;
  QPointer<QWidget> window(other.desk.window(*other.form));
  const auto behind = other.form;
  bool windowLived = false;
  other.form->cmdOK.Click = [&] {
    modal.show([&] {
      behind->unload();
      other.form.reset();
      QTest::qWait(20);
      windowLived = !window.isNull();
      modal.form->hide();
    });
  };
  QTimer::singleShot(0, qApp, [&] { window->findChild<QPushButton*>("cmdOK")->click(); });
  CHECK(comesTrue([&] { return window.isNull(); }));
  CHECK(windowLived);
}

TEST_CASE("Modal forms nest, and each returns by itself") {
  Modal outer;
  Modal inner;
  Lines order;
  outer.show([&] {
    inner.show([&] {
      outer.form->hide();
      inner.form->hide();
    });
    order.push_back("inner");
  });
  order.push_back("outer");
  CHECK(order == Lines{"inner", "outer"});
}

TEST_CASE("A form that hides itself while it loads is not waited for") {
  struct Shy final : TrialForm {
    using TrialForm::TrialForm;
    void Load() override { unload(); }
  };
  QtDesk desk(trial::trialDesigns());
  std::make_shared<Shy>(desk)->showModal(nullptr);
}

TEST_CASE("The close box unloads a form, or is refused, and presses no button") {
  Shown shown;
  shown.form->cmdCancel.Cancel = true;
  shown.form->refuseClose = true;
  QWidget* window = shown.desk.window(*shown.form);
  window->close();
  CHECK(window->isVisible());
  shown.form->refuseClose = false;
  window->close();
  CHECK(shown.form->heard == Lines{"close by user", "close by user", "Unload"});
  CHECK(shown.form->closed());
}

TEST_CASE("Esc presses the cancel button, and does nothing where there is none") {
  Shown shown;
  shown.press(Qt::Key_Escape);
  CHECK(shown.form->heard.empty());
  CHECK(shown.desk.window(*shown.form)->isVisible());
  shown.form->cmdCancel.Cancel = true;
  shown.press(Qt::Key_Escape);
  CHECK(shown.form->heard == Lines{"cmdCancel"});
  shown.form->cmdCancel.Enabled = false;
  shown.press(Qt::Key_Escape);
  CHECK(shown.form->heard == Lines{"cmdCancel"});
}

TEST_CASE("Enter presses the default button, or the button that has the focus") {
  Shown shown;
  shown.form->txtName.SetFocus();
  shown.press(Qt::Key_Return);
  CHECK(shown.form->heard.empty());
  shown.form->cmdOK.Default = true;
  shown.press(Qt::Key_Return);
  CHECK(shown.form->heard == Lines{"cmdOK"});
  shown.form->cmdCancel.SetFocus();
  shown.press(Qt::Key_Return);
  CHECK(shown.form->heard == Lines{"cmdOK", "cmdCancel"});
}

TEST_CASE("A shown form is activated from the event loop, once") {
  Shown shown;
  CHECK(shown.form->heard.empty());
  CHECK(comesTrue([&] { return shown.form->heard == Lines{"Activate"}; }));
  QTest::qWait(150);
  CHECK(shown.form->heard == Lines{"Activate"});
}

TEST_CASE(
    "A form is activated with its window, and the patience for that of a window system that tells nothing is not used "
    "up") {
  Shown shown;
  bool later = false;
  QEvent active(QEvent::WindowActivate);
  QCoreApplication::sendEvent(shown.desk.window(*shown.form), &active);
  QTimer::singleShot(0, [&] {
    later = true;
    CHECK(shown.form->heard == Lines{"Activate"});
  });
  CHECK(comesTrue([&] { return later; }));
}

TEST_CASE("What a handler throws reaches the trap and not the toolkit") {
  Shown shown;
  int trapped = 0;
  shown.desk.setTrap([&](const std::function<void()>& event) {
    try {
      event();
    } catch (const std::runtime_error&) {
      ++trapped;
    }
  });
  shown.form->cmdOK.Click = [] { throw std::runtime_error("words"); };
  shown.widget<QPushButton>("cmdOK").click();
  CHECK(trapped == 1);
}

TEST_CASE("A form's placement moves its window, and the window's moves renew the placement") {
  Shown shown;
  QWidget* window = shown.desk.window(*shown.form);
  shown.form->placement = Placement{WindowState::Normal, 1500, 750, 12000, 15000};
  CHECK(window->x() == 100);
  CHECK(window->y() == 50);
  CHECK(window->width() == 800);
  CHECK(window->height() == 1000);
  window->move(30, 40);
  CHECK(shown.form->placement.get() == Placement{WindowState::Normal, 450, 600, 12000, 15000});
  window->showMaximized();
  CHECK(comesTrue([&] { return shown.form->placement.get().state == WindowState::Maximized; }));
}

TEST_CASE(
    "A window whose place is on a screen that is gone comes into reach, and keeps its numbers until it is moved") {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const Placement gone{WindowState::Normal, 300000, -30000, 6000, 4500};
  Plain plain;
  QWidget* window = plain.desk.window(*plain.form);
  plain.form->placement = gone;
  CHECK(screen.contains(window->geometry()));
  CHECK(plain.form->placement.get() == gone);
  window->resize(410, 310);
  CHECK(plain.form->placement.get() == Placement{WindowState::Normal, 300000, -30000, 6150, 4650});
  window->showMaximized();
  REQUIRE(comesTrue([&] { return plain.form->placement.get().state == WindowState::Maximized; }));
  window->showNormal();
  REQUIRE(comesTrue([&] { return plain.form->placement.get().state == WindowState::Normal; }));
  CHECK(comesTrue([&] { return plain.form->placement.get().left == 300000; }));
  window->move(30, 40);
  CHECK(plain.form->placement.get().left == 450);
  CHECK(plain.form->placement.get().top == 600);
}

TEST_CASE("A window that merely hangs over the edge of its screen stays there") {
  Shown shown;
  QWidget* window = shown.desk.window(*shown.form);
  shown.form->placement = Placement{WindowState::Normal, -1500, 300, 6000, 4500};
  CHECK(window->pos() == QPoint(-100, 20));
}

}  // namespace trackloom
