#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"
#include "desktop/Trial.h"
#include "ripper/RipperForms.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// The program with the ripper's window before its user, and a disc of three tracks in the drive.
class LiveRipper : public trial::LiveProgram {
 public:
  LiveRipper() {
    ripping.stage.disc = {{0, 750}, {750, 1500}, {2250, 75}};
    startQuietly();
    click("Ripper");
    list().setFocus();
    REQUIRE(trial::comesTrue([this] { return ripper().isActiveWindow(); }));
  }

  RipperForms& forms() { return program.forms().ripper; }
  QWidget& ripper() { return *desk.window(forms().frmRipMain.get()); }
  QTreeView& list() { return trial::in<QTreeView>(ripper(), "ListView2"); }
  fakes::FakeRipper& engine() { return dynamic_cast<fakes::FakeRipper&>(*forms().frmRipMain->CDRipperX1); }
  void press(const char* button) { trial::in<QPushButton>(ripper(), button).click(); }
  void read() {
    press("cmdRead");
    REQUIRE(trial::comesTrue([this] { return list().model()->rowCount() == 3; }));
    // The screen in memory makes no other window active when one goes.
    ripper().activateWindow();
    REQUIRE(trial::comesTrue([this] { return ripper().isActiveWindow(); }));
  }
  /// The user chooses this folder in the browser and agrees to the options.
  void chooseFolder(const std::string& path) {
    user.at("Define CD Ripping Options", [](QWidget& window) { trial::in<QPushButton>(window, "cmdFolder").click(); });
    user.at("Select Folder to Store Extracted Tracks to:", [path](QWidget& window) {
      trial::in<QLineEdit>(window, "fileNameEdit").setText(QString::fromStdString(path));
      QTest::keyClick(&trial::in<QLineEdit>(window, "fileNameEdit"), Qt::Key_Return);
    });
    user.at("Define CD Ripping Options", [](QWidget& window) { trial::in<QPushButton>(window, "cmdOK").click(); });
  }
  /// What happens before the dialog of the rip, once the engine has its order.
  void whenBegun(std::function<void(QWidget& status)> deed) {
    ripping.stage.onLine = [this, deed = std::move(deed)](const std::string& call) {
      if (call != "CDRipperX1.StartRip") return;
      QTimer::singleShot(0, &ripper(), [this, deed] { deed(*desk.window(forms().frmRipStatus.get())); });
    };
  }
  void goOn(int events) {
    for (int event = 0; event < events && engine().busy(); ++event) desk.enter([this] { engine().step(); });
  }
  QString cell(int row, int column) { return list().model()->index(row, column).data().toString(); }
};

MessageBox complete() {
  return {"Operation Complete", "Ripping of selected tracks is now complete.", BoxButtons::Ok, BoxIcon::Information};
}

}  // namespace

TEST_CASE(
    "While a disc is read a window that belongs to the ripper's stands on top of it, and nothing can be pressed") {
  LiveRipper live;
  bool seen = false;
  live.ripping.stage.onLine = [&](const std::string& call) {
    if (call != "CDRipperX1.ReadTOC") return;
    QWidget& window = *live.desk.window(live.forms().frmReading.get());
    seen = window.isVisible() && window.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    CHECK(window.windowHandle()->transientParent() == live.ripper().windowHandle());
    CHECK(window.windowModality() == Qt::NonModal);
    for (const char* button : {"cmdRead", "cmdSelectAll", "cmdExtract", "cmdExit", "cmdHelp"})
      CHECK_FALSE(trial::in<QPushButton>(live.ripper(), button).isEnabled());
  };
  live.read();
  CHECK(seen);
  CHECK_FALSE(live.forms().frmReading.exists());
  CHECK(live.cell(1, 0) == "02");
  CHECK(live.cell(1, 3) == "00:20:00");
}

TEST_CASE("The name of a row can be changed by key, its times cannot, and the rip takes the new name") {
  LiveRipper live;
  live.read();
  QTreeView& list = live.list();
  list.setCurrentIndex(list.model()->index(0, 0));
  QTest::keyClick(&list, Qt::Key_F2);
  auto* editor = list.viewport()->findChild<QLineEdit*>();
  REQUIRE(editor != nullptr);
  CHECK(editor->text() == "01");
  editor->setText("Aubade");
  QTest::keyClick(editor, Qt::Key_Return);
  CHECK(trial::comesTrue([&] { return live.forms().frmRipMain->ListView2.Item(1).Text == "Aubade"; }));
  CHECK(live.cell(0, 0) == "Aubade");
  CHECK(list.model()->index(0, 0).flags().testFlag(Qt::ItemIsEditable));
  CHECK_FALSE(list.model()->index(0, 1).flags().testFlag(Qt::ItemIsEditable));
}

TEST_CASE("A name that is being typed counts when rows are ticked and the extraction is called by its key") {
  LiveRipper live;
  live.read();
  QTreeView& list = live.list();
  list.setFocus();
  list.setCurrentIndex(list.model()->index(0, 0));
  QTest::keyClick(&list, Qt::Key_F2);
  auto* editor = list.viewport()->findChild<QLineEdit*>();
  REQUIRE(editor != nullptr);
  QTest::keyClicks(editor, "Aubade");
  QTest::keyClick(editor, Qt::Key_A, Qt::AltModifier);
  REQUIRE(trial::comesTrue([&] { return live.forms().frmRipMain->ListView2.CheckedCount() == 3; }));
  CHECK(editor->text() == "Aubade");
  live.user.at("Define CD Ripping Options", [&](QWidget& window) {
    CHECK(trial::comesTrue([&] { return live.forms().frmRipMain->ListView2.Item(1).Text == "Aubade"; }));
    QTest::keyClick(&window, Qt::Key_Escape);
  });
  QTest::keyClick(editor, Qt::Key_E, Qt::AltModifier);
  live.user.finish();
  CHECK(live.cell(0, 0) == "Aubade");
}

TEST_CASE("An edit that is given up leaves the name and the window as they were") {
  LiveRipper live;
  live.read();
  QTreeView& list = live.list();
  list.setCurrentIndex(list.model()->index(1, 0));
  QTest::keyClick(&list, Qt::Key_F2);
  auto* editor = list.viewport()->findChild<QLineEdit*>();
  REQUIRE(editor != nullptr);
  editor->setText("x");
  QTest::keyClick(editor, Qt::Key_Escape);
  QCoreApplication::processEvents();
  CHECK(live.cell(1, 0) == "02");
  CHECK(live.forms().frmRipMain.exists());
}

TEST_CASE("A click on the head of a column sorts nothing in the lists whose places count") {
  LiveRipper live;
  live.read();
  live.forms().frmRipMain->ListView2.edit(1, "zzz");
  QHeaderView& heads = *live.list().header();
  for (int times = 0; times < 2; ++times)
    QTest::mouseClick(heads.viewport(), Qt::LeftButton, {}, QPoint(heads.sectionViewportPosition(0) + 20, 8));
  CHECK(live.cell(0, 0) == "zzz");
  CHECK_FALSE(live.list().isSortingEnabled());
  auto& listing = live.program.forms().printing.frmPrintList.get();
  for (const char* name : {"02", "01"}) listing.ListView1.Add({name, {"a", "b"}});
  listing.show();
  auto& rows = trial::in<QTreeView>(*live.desk.window(listing), "ListView1");
  REQUIRE(trial::comesTrue([&] { return rows.model()->rowCount() == 2; }));
  QTest::mouseClick(rows.header()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  CHECK(rows.model()->index(0, 0).data() == "02");
}

TEST_CASE("The folder is chosen among folders alone, under the words that say what for") {
  LiveRipper live;
  live.read();
  live.press("cmdSelectAll");
  live.user.at("Define CD Ripping Options", [](QWidget& window) {
    CHECK(trial::in<QPushButton>(window, "cmdFolder").toolTip() == "Choose Folder");
    CHECK(trial::in<QLineEdit>(window, "txtFolder").isReadOnly());
    trial::in<QPushButton>(window, "cmdFolder").click();
  });
  live.user.at("Select Folder to Store Extracted Tracks to:", [&](QWidget& window) {
    const auto& browser = dynamic_cast<QFileDialog&>(window);
    CHECK(browser.fileMode() == QFileDialog::Directory);
    CHECK(browser.testOption(QFileDialog::ShowDirsOnly));
    CHECK(browser.windowModality() == Qt::WindowModal);
    QTest::keyClick(&window, Qt::Key_Escape);
  });
  live.user.at("Define CD Ripping Options", [](QWidget& window) {
    CHECK(trial::in<QLineEdit>(window, "txtFolder").text().isEmpty());
    QTest::keyClick(&window, Qt::Key_Escape);
  });
  live.press("cmdExtract");
  live.user.finish();
  CHECK_FALSE(live.forms().frmRipOptions.exists());
}

TEST_CASE("Tracks are ripped before the real windows, from the folder to the last word") {
  LiveRipper live;
  live.folder.write("rips/.keep", "");
  live.read();
  live.press("cmdSelectAll");
  live.chooseFolder(live.folder / "rips");
  live.whenBegun([&](QWidget&) {
    CHECK_FALSE(live.ripper().isActiveWindow());
    live.goOn(100);
  });
  live.user.atBox(complete(), QMessageBox::Ok);
  live.press("cmdExtract");
  live.user.finish();
  CHECK(live.folder.has("rips/01.wav"));
  CHECK(live.folder.has("rips/03.wav"));
  CHECK(live.folder.read("Folder.dat") == "\"" + live.folder.path() + "/rips/\"\r\n");
  CHECK(live.ripper().isEnabled());
}

TEST_CASE("A running rip stands fast against its close box, and Esc cancels it") {
  LiveRipper live;
  live.folder.write("rips/.keep", "");
  live.read();
  live.press("cmdSelectAll");
  live.chooseFolder(live.folder / "rips");
  live.whenBegun([&](QWidget& window) {
    live.goOn(8);
    window.close();
    CHECK(window.isVisible());
    QTest::keyClick(&window, Qt::Key_Escape);
    CHECK(window.isVisible());
    live.goOn(100);
  });
  live.user.atBox({"Operation Cancelled", "Ripping operation was cancelled.", BoxButtons::Ok, BoxIcon::Information},
                  QMessageBox::Ok);
  live.press("cmdExtract");
  live.user.finish();
  CHECK(live.folder.has("rips/01.wav"));
  CHECK_FALSE(live.folder.has("rips/02.wav"));
}

TEST_CASE("An empty drive's box stands before the ripper, and its close brings the main window back") {
  LiveRipper live;
  live.ripping.stage.disc.reset();
  live.user.atBox(
      {"No Disc", "There is no disc inserted in the selected drive to read.", BoxButtons::Ok, BoxIcon::Information},
      QMessageBox::Ok);
  live.press("cmdRead");
  live.user.finish();
  CHECK(live.ripper().windowTitle() == "Trackloom CD Ripper");
  live.press("cmdExit");
  CHECK(live.window().isVisible());
}

}  // namespace trackloom
