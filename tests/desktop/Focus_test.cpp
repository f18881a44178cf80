#include <QApplication>
#include <QLineEdit>
#include <QTreeView>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"
#include "desktop/Spinner.h"

namespace trackloom {

using trial::in;

namespace {

/// A program with a layout of two tracks, of which the listing has the focus.
struct Ready : trial::LiveProgram {
  Ready() {
    startQuietly();
    newLayout(AudioLayout);
    addTrack("a.mp3", 1000);
    addTrack("b.mp3", 1000);
    REQUIRE(focus() == "ListView1");
  }

  std::string focus() { return window().focusWidget()->objectName().toStdString(); }

  /// From Record to the status window, in which `deed` is done.
  void record(trial::User::Deed deed) {
    user.at("CD Creation Options", [](QWidget& form) { in<QPushButton>(form, "cmdOK").click(); });
    user.at("CD Creation Status", std::move(deed));
  }
};

}  // namespace

TEST_CASE("After a recording the listing has the focus") {
  Ready live;
  live.record([&](QWidget& /*status*/) { live.desk.enter([&] { live.cdr1().events.OnOperationComplete(); }); });
  live.user.at("Record Operation", [](QWidget& form) { in<QPushButton>(form, "cmdClose").click(); });
  live.user.at("Trackloom", [&](QWidget& /*window*/) { CHECK(live.focus() == "ListView1"); });
  live.click("Record");
  live.user.finish();
}

TEST_CASE("After a cancelled recording the listing has the focus") {
  Ready live;
  live.record([](QWidget& status) { in<QPushButton>(status, "cmdCancel").click(); });
  live.user.at("Cancel", [](QWidget& box) { dynamic_cast<QMessageBox&>(box).button(QMessageBox::Ok)->click(); });
  live.user.at("Operation Cancelled", [](QWidget& box) { box.close(); });
  live.user.at("Trackloom", [&](QWidget& /*window*/) { CHECK(live.focus() == "ListView1"); });
  live.click("Record");
  live.user.finish();
}

TEST_CASE("After a failed recording the listing has the focus") {
  Ready live;
  live.record([&](QWidget& /*status*/) { live.desk.enter([&] { live.cdr1().events.OnWriteError(2, 0); }); });
  live.user.at("Write Error", [](QWidget& form) { in<QPushButton>(form, "cmdClose").click(); });
  live.user.at("Trackloom", [&](QWidget& /*window*/) { CHECK(live.focus() == "ListView1"); });
  live.click("Record");
  live.user.finish();
}

TEST_CASE("Several tracks can be removed with Delete and Enter alone") {
  Ready live;
  live.addTrack("c.mp3", 1000);
  live.form().ListView1.SelectRow(2);
  for (int left = 2; left >= 0; --left) {
    live.user.at("Trackloom", [](QWidget& window) { QTest::keyClick(window.focusWidget(), Qt::Key_Delete); });
    live.user.at("Remove Track", [](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); });
    live.user.finish();
    CHECK(live.form().ListView1.Count() == left);
  }
}

TEST_CASE("The options for a recording count copies by a spinner") {
  Ready live;
  live.user.at("CD Creation Options", [&](QWidget& form) {
    auto& spinner = in<Spinner>(form, "VScroll1");
    QTest::mouseClick(&spinner, Qt::LeftButton, {}, QPoint(spinner.width() / 2, 5));
    CHECK(in<QLineEdit>(form, "txtCopies").text() == "2");
    CHECK(spinner.height() >= spinner.sizeHint().height());
    in<QPushButton>(form, "cmdCancel").click();
  });
  live.click("Record");
  live.user.finish();
}

TEST_CASE("A window without a caption is called by the program's name") {
  CHECK(QApplication::applicationName() == "Trackloom");
}

TEST_CASE("In the file selection the names take what a wider window gives") {
  Ready live;
  live.user.at("File Selection", [](QWidget& form) {
    auto& view = in<QTreeView>(form, "ListView1");
    const int name = view.columnWidth(0);
    const int size = view.columnWidth(1);
    form.resize(form.width() + 300, form.height());
    QCoreApplication::processEvents();
    CHECK(view.columnWidth(0) > name + 100);
    CHECK(view.columnWidth(1) == size);
    CHECK(view.columnWidth(0) + size == view.viewport()->width());
    in<QPushButton>(form, "cmdCancel").click();
  });
  live.click("AddFiles");
  live.user.finish();
}

}  // namespace trackloom
