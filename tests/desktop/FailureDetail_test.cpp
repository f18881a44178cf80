#include "ports/FailureDetail.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"
#include "desktop/ScreenReader.h"
#include "desktop/SelectableText.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::in;

namespace {

struct ToldDetail final : FailureDetail {
  std::string text;
  std::string lastFailure() const override { return text; }
};

/// A program whose write has just failed.
struct FailedWrite : trial::LiveProgram {
  explicit FailedWrite(std::string words) {
    detail.text = std::move(words);
    desk.setFailureDetail(detail);
    startQuietly();
    newLayout(AudioLayout);
    program.session().mod.WriteActive = true;
  }

  void fail(trial::User::Deed deed) {
    user.at("Write Error", [&](QWidget& window) {
      deed(window);
      in<QPushButton>(window, "cmdClose").click();
    });
    desk.enter([&] { cdr1().events.OnWriteError(2, 0); });
    user.finish();
  }

  ToldDetail detail;
};

const std::string Missing = "/home/anna/a <b> &c.mp3: No such file or directory";

}  // namespace

TEST_CASE("The failed write tells below its message on what it failed, and why") {
  FailedWrite live(Missing);
  live.fail([](QWidget& window) {
    CHECK(in<QLabel>(window, "lblError").text() == " A file error was encountered while writing the disc.");
    const auto& line = in<SelectableText>(window, "failureDetail");
    CHECK(line.isVisible());
    CHECK(line.toPlainText().toStdString() == Missing);
    CHECK(line.y() >= in<QLabel>(window, "lblError").geometry().bottom());
    CHECK(line.parentWidget() == &in<QGroupBox>(window, "Frame1"));
    CHECK(line.height() >= line.fontMetrics().height());
  });
}

TEST_CASE("Where the message says all there is no line below it, also after a failure that had one") {
  FailedWrite live(Missing);
  live.fail([](QWidget& window) { CHECK(in<SelectableText>(window, "failureDetail").isVisible()); });
  live.detail.text.clear();
  live.program.session().mod.WriteActive = true;
  live.fail([](QWidget& window) { CHECK_FALSE(in<SelectableText>(window, "failureDetail").isVisible()); });
}

TEST_CASE("The longest path is shown whole, within the window's width, and can be copied as it is") {
  const std::string longest = "/" + std::string(255, 'a') + "/" + std::string(255, 'b') + ": Input/output error";
  FailedWrite live(longest);
  live.fail([&](QWidget& window) {
    auto& line = in<SelectableText>(window, "failureDetail");
    CHECK(window.width() < 600);
    CHECK(line.document()->size().height() <= line.height());
    CHECK(line.document()->idealWidth() <= line.width());
    line.selectAll();
    line.copy();
    CHECK(QApplication::clipboard()->text().toStdString() == longest);
    CHECK(line.isReadOnly());
  });
}

TEST_CASE("A screen reader comes to the detail behind the message, and the keyboard begins at Close") {
  FailedWrite live(Missing);
  live.fail([](QWidget& window) {
    CHECK(window.focusWidget()->objectName() == "cmdClose");
    QAccessibleInterface* frame = QAccessible::queryAccessibleInterface(&in<QGroupBox>(window, "Frame1"));
    REQUIRE(frame->childCount() == 2);
    CHECK(frame->child(0)->text(QAccessible::Name).startsWith(" A file error"));
    CHECK(frame->child(0)->role() == QAccessible::Notification);
    CHECK(frame->child(0)->text(QAccessible::Description).toStdString() == Missing);
    CHECK(frame->child(1)->text(QAccessible::Value).toStdString() == Missing);
    CHECK(frame->child(1)->state().readOnly);
  });
}

TEST_CASE(
    "Where no CD writer was found, why drives cannot be used stands below the words, and nothing where there is none") {
  const std::string words = GENERATE(as<std::string>(), "", "you may not use the drive /dev/sr0");
  trial::LiveProgram live;
  ToldDetail detail;
  detail.text = words;
  live.desk.setFailureDetail(detail);
  live.engines.stage.drives.clear();
  live.folder.write("NoShow.dat", "");
  live.desk.enter([&] { live.program.start(); });
  bool told = false;
  live.user.at("No CD Writer Found", [&](QWidget& window) {
    told = true;
    const auto& line = in<SelectableText>(window, "failureDetail");
    CHECK(line.isVisible() == !words.empty());
    CHECK(line.toPlainText().toStdString() == words);
    in<QPushButton>(window, "cmdOK").click();
    live.program.forms().shell.frmNOCD->hide();
  });
  live.desk.enter([&] { live.program.forms().shell.frmOpen->Timer1.tick(); });
  live.user.finish();
  CHECK(told);
}

TEST_CASE("A box that says that the drive has failed has the reason below its words, and no other box has") {
  trial::LiveProgram live;
  ToldDetail detail;
  detail.text = "the disc in /dev/sr0 is open as /media/u/Mix: close bash (4711), and unmount it";
  live.desk.setFailureDetail(detail);
  live.startQuietly();
  live.engines.stage.ejectFails = true;
  const auto reason = [&](const char* title, const std::string& below) {
    live.user.at(title, [below](QWidget& window) {
      CHECK(dynamic_cast<QMessageBox&>(window).informativeText().toStdString() == below);
      dynamic_cast<QMessageBox&>(window).button(QMessageBox::Ok)->click();
    });
  };
  reason("Eject", detail.text);
  live.click("mnuToolsEject");
  live.user.finish();
  reason("Error", "");
  live.desk.enter([&] { live.program.session().ask({"Error", "An error was encountered."}); });
  live.user.finish();
}

TEST_CASE("A screen reader is told of the message when its window is the active one, since it drops what came before") {
  FailedWrite live(Missing);
  const trial::ScreenReader listening;
  qApp->setProperty("told", QStringList());
  QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
    if (event->type() != QAccessible::ObjectShow || event->object() == nullptr) return;
    qApp->setProperty("told", qApp->property("told").toStringList() << event->object()->objectName());
  });
  live.fail([](QWidget& window) {
    const auto told = [] { return qApp->property("told").toStringList().count("lblError"); };
    CHECK(trial::comesTrue([&] { return told() == 2; }));
    QEvent again(QEvent::WindowActivate);
    QApplication::sendEvent(&window, &again);
    CHECK(told() == 2);
  });
}

}  // namespace trackloom
