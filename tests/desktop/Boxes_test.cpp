#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"

namespace trackloom {

using trial::LiveProgram;

namespace {

const MessageBox SaveOnExit{"Save Layout", "Save the currently open layout?", BoxButtons::YesNoCancel,
                            BoxIcon::Question};
const MessageBox SaveBefore{"Save Layout", "Save the currently open layout?", BoxButtons::YesNo, BoxIcon::Question};
const MessageBox NoMedia{
    "No Media",
    "No media is currently loaded in the selected CD Recording Drive.  In order for Trackloom to track total time and "
    "available space a CD needs to be inserted.\n\nPlease insert a new CDR disc into the selected CD Recording Drive "
    "and click OK when the disc is ready, otherwise click Cancel to cancel the current operation.",
    BoxButtons::OkCancel, BoxIcon::Exclamation};

/// A program with an audio layout of one track, which wants saving.
struct Unsaved : LiveProgram {
  Unsaved() {
    startQuietly();
    newLayout(AudioLayout);
    addTrack("a.mp3", 1000);
    REQUIRE_FALSE(program.session().mod.LayoutSaved);
  }

  /// What stands when the question was answered with No.
  void answered(const char* tool, const char* next, const char* cancel) {
    user.atBox(SaveBefore, QMessageBox::No);
    if (next != nullptr) user.at(next, [cancel](QWidget& window) { trial::in<QPushButton>(window, cancel).click(); });
    click(tool);
    CHECK_FALSE(program.session().mod.LayoutOpen);
  }
};

}  // namespace

TEST_CASE("The box \"Entries\" says that no track is without a folder") {
  LiveProgram live;
  live.startQuietly();
  live.newLayout(Mp3Layout);
  live.user.atBox({"Entries",
                   "There are no tracks in your listing with a No Folder entry to display.\n\nSelect the Show All "
                   "Entries option to list all items.",
                   BoxButtons::Ok, BoxIcon::Information},
                  QMessageBox::Ok);
  live.click("ShowNoFolder");
  live.user.finish();
}

TEST_CASE("The box \"Eject\" says that the drive keeps its disc") {
  LiveProgram live;
  live.startQuietly();
  live.engines.stage.ejectFails = true;
  live.user.atBox({"Eject", "Unable to Eject CD", BoxButtons::Ok, BoxIcon::Exclamation}, QMessageBox::Ok);
  live.click("mnuToolsEject");
  live.user.finish();
}

TEST_CASE("The box \"No Media\" asks again after OK, and Cancel leaves no layout") {
  LiveProgram live;
  live.startQuietly();
  live.engines.stage.disc.reset();
  live.newLayout(AudioLayout, [&] {
    live.user.atBox(NoMedia, QMessageBox::Ok);
    live.user.atBox(NoMedia, QMessageBox::Cancel);
  });
  CHECK_FALSE(live.program.session().mod.LayoutOpen);
}

TEST_CASE("The box \"No Available Space\" refuses a full disc") {
  LiveProgram live;
  live.startQuietly();
  live.engines.stage.disc->freeAudio = 0;
  live.newLayout(AudioLayout, [&] {
    live.user.atBox({"No Available Space",
                     "The current disc in your CD writer does not have any free space on it.  The disc is either "
                     "closed for further writing or is not a writable disc.\n\nPlease insert a new CDR disc before "
                     "creating or opening a CD layout.",
                     BoxButtons::Ok, BoxIcon::Exclamation},
                    QMessageBox::Ok);
  });
  CHECK_FALSE(live.program.session().mod.LayoutOpen);
}

TEST_CASE("The box \"Save Layout\" of New, Open and Close has Yes and No") {
  Unsaved().answered("New", "Select Option", "cmdCancel");
  Unsaved().answered("Open", "Open CD Layout", "cmdCancel");
  Unsaved().answered("mnuFileClose", nullptr, nullptr);
}

TEST_CASE("The box \"Save Layout\" at the exit has a Cancel, which keeps everything as it was") {
  Unsaved live;
  live.user.atBox(SaveOnExit, QMessageBox::Cancel);
  live.window().close();
  CHECK_FALSE(live.ended);
  CHECK(live.window().isVisible());
  CHECK(live.form().ListView1.Count() == 1);
  live.user.atBox(SaveOnExit, QMessageBox::No);
  live.window().close();
  CHECK(live.ended == 0);
}

TEST_CASE("The box \"Save Layout\" at the exit asks for a name after Yes") {
  Unsaved live;
  live.user.atBox(SaveOnExit, QMessageBox::Yes);
  live.user.at("Save CD Layout", [](QWidget& window) { trial::in<QPushButton>(window, "cmdCancel").click(); });
  live.window().close();
  CHECK(live.ended == 0);
}

TEST_CASE("A save at the exit that fails is told, and the close goes on from behind its dialog") {
  Unsaved live;
  std::filesystem::remove_all(live.folder / "Layouts");
  live.folder.write("Layouts", "in the way");
  const fakes::TempFolder home;
  live.process.refugeFolders = {home.path()};
  live.user.atBox(SaveOnExit, QMessageBox::Yes);
  live.user.at("Save CD Layout", [](QWidget& window) {
    QTest::keyClicks(&trial::in<QLineEdit>(window, "txtName"), "Mix");
    trial::in<QPushButton>(window, "cmdOK").click();
  });
  live.user.atBox({"Trackloom",
                   "Run-time error '76':\n\nPath not found\n\nThe open layout was saved as '" +
                       (home / "Rescued layout 1.mixl") + "'.",
                   BoxButtons::Ok, BoxIcon::Critical},
                  QMessageBox::Ok);
  live.window().close();
  CHECK(live.ended == 0);
  CHECK(live.folder.has("Trackloom.dsl"));
}

TEST_CASE("While the box of a fatal error stands, no command and no key of the main window does anything") {
  Unsaved live;
  live.program.session().mod.LayoutHasFile = true;
  live.program.session().mod.LayoutFileName = "Mix.mixl";
  std::filesystem::remove_all(live.folder / "Layouts");
  live.user.at("Trackloom", [&](QWidget& box) {
    live.click("New");
    QTest::keyClick(&live.window(), Qt::Key_O, Qt::ControlModifier);
    live.window().close();
    CHECK(QApplication::activeModalWidget() == &box);
    qobject_cast<QMessageBox*>(&box)->button(QMessageBox::Ok)->click();
  });
  live.click("mnuFileSave");
  live.user.finish();
  CHECK(live.ended == 1);
  CHECK(live.form().ListView1.Count() == 1);
}

TEST_CASE("The box \"Trackloom Help\" says that the help file is missing") {
  LiveProgram live;
  live.startQuietly();
  live.user.atBox({"Trackloom Help",
                   "Unable to find the Trackloom Help file.  Please reinstall Trackloom to replace the Help system.",
                   BoxButtons::Ok, BoxIcon::Exclamation},
                  QMessageBox::Ok);
  live.click("mainHelp");
  live.user.finish();
}

TEST_CASE("The box \"Remove Track\" removes after OK and not after Cancel") {
  Unsaved live;
  const MessageBox question{"Remove Track", "Remove the selected track from your layout?", BoxButtons::OkCancel,
                            BoxIcon::Question};
  live.form().ListView1.SelectRow(1);
  live.user.atBox(question, QMessageBox::Cancel);
  live.click("Delete");
  CHECK(live.form().ListView1.Count() == 1);
  live.user.atBox(question, QMessageBox::Ok);
  live.click("Delete");
  CHECK(live.form().ListView1.Count() == 0);
}

TEST_CASE("A box breaks long words, and leaves out the middle of what no file's name makes so long") {
  LiveProgram live;
  live.startQuietly();
  const QRect screen = QApplication::primaryScreen()->availableGeometry();
  for (const std::size_t length : {255U, 1000U, 60000U}) {
    const std::string text = "'/" + std::string(length, 'x') + "' could not be read.";
    live.user.at("Long", [&](QWidget& window) {
      auto& box = dynamic_cast<QMessageBox&>(window);
      const QString shown = box.text().remove(QChar(0x200B));
      if (length < 1200)
        CHECK(shown.toStdString() == text);
      else
        CHECK(shown.size() < 1300);
      CHECK(shown.startsWith("'/xxx"));
      CHECK(shown.endsWith("xxx' could not be read."));
      CHECK(screen.contains(box.geometry()));
      const auto& label = trial::in<QLabel>(window, "qt_msgbox_label");
      CHECK(label.width() >= label.fontMetrics().horizontalAdvance(QString(80, 'x')));
      CHECK(label.height() >= label.heightForWidth(label.width()));
      box.button(QMessageBox::Ok)->click();
    });
    live.boxes.show({"Long", text, BoxButtons::Ok, BoxIcon::Exclamation});
    live.user.finish();
  }
}

}  // namespace trackloom
