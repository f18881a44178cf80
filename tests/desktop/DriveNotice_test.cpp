#include "desktop/DriveNotice.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QToolBar>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/Make.h"

namespace trackloom {

namespace {

/// A window with the bar that the notice looks for.
class Window : public QMainWindow {
 public:
  Window() {
    bar.setObjectName("StatusBar1");
    addToolBar(&bar);
    resize(900, 300);
    show();
  }
  QToolButton* button() { return findChild<QToolButton*>("driveNotice"); }
  bool tells() {
    QCoreApplication::processEvents();
    return button() != nullptr && button()->isVisible();
  }

  QToolBar bar;
};

}  // namespace

TEST_CASE("The main window says which drives cannot be used only while there are such, and what to do in a box") {
  Window window;
  DriveNotice notice;
  notice.standIn(window);
  CHECK_FALSE(window.tells());
  notice.tell({"you may not use the drive /dev/sr0"});
  REQUIRE(window.tells());
  CHECK(window.button()->text() == "A drive cannot be used");
  CHECK(window.button()->toolTip() == "You may not use the drive /dev/sr0.");
  window.button()->click();
  auto* box = window.findChild<QMessageBox*>();
  REQUIRE(box != nullptr);
  CHECK(box->text() == "You may not use the drive /dev/sr0.");
  box->close();
  notice.tell({"a", "b"});
  CHECK(window.button()->text() == "Drives cannot be used");
  CHECK(window.button()->toolTip() == "A.\nB.");
  notice.tell({});
  CHECK_FALSE(window.tells());
}

TEST_CASE("What is told before the main window is there stands in it from its beginning") {
  DriveNotice notice;
  notice.tell({"a"});
  QMainWindow other;
  notice.standIn(other);
  Window window;
  notice.standIn(window);
  CHECK(window.tells());
}

TEST_CASE("The box tells of each drive in a paragraph, can be copied from by keys, and is gone once it is closed") {
  Window window;
  DriveNotice notice;
  notice.standIn(window);
  notice.tell({"a", "b"});
  CHECK(window.button()->accessibleDescription() == "A. B.");
  window.button()->click();
  const QPointer<QMessageBox> box = window.findChild<QMessageBox*>();
  REQUIRE(box != nullptr);
  CHECK(box->isVisible());
  CHECK(box->isModal());
  CHECK(box->windowTitle() == "Drives cannot be used");
  CHECK(box->text() == "A.\n\nB.");
  CHECK(box->icon() == QMessageBox::Warning);
  CHECK(box->standardButtons() == QMessageBox::Ok);
  CHECK(box->textInteractionFlags() == (Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard));
  box->button(QMessageBox::Ok)->click();
  CHECK(QTest::qWaitFor([&] { return box == nullptr; }));
}

}  // namespace trackloom
