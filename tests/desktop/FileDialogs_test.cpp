#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTimer>
#include <catch2/catch.hpp>

#include "desktop/QtDesk.h"
#include "desktop/QtFileDialogs.h"
#include "desktop/Trial.h"
#include "desktop/User.h"
#include "fakes/TempFolder.h"
#include "runtime/Files.h"

namespace trackloom {

namespace {

using Flags = FileDialogFlags;

/// A user in a folder of three files, before the dialog.
struct Choice {
  Choice() {
    for (const char* name : {"mix.iso", "OLD.ISO", "notes.txt"}) folder.write(name, "x");
  }

  fakes::TempFolder folder;
  trial::Shown window;
  QtFileDialogs files{window.desk};
  trial::User user;

  /// The user's next deed in the dialog that stands in front.
  void enter(const std::string& title, const std::string& name) {
    user.at(title, [name](QWidget& dialog) {
      dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(name));
      QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
    });
  }
  void escape(const std::string& title) {
    user.at(title, [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  }
  void answer(const std::string& title, QMessageBox::StandardButton button) {
    user.at(title, [button](QWidget& box) {
      // The screen in memory makes no other window active when one goes.
      QWidget* dialog = box.parentWidget();
      QTimer::singleShot(0, dialog, [dialog] { dialog->activateWindow(); });
      qobject_cast<QMessageBox*>(&box)->button(button)->click();
    });
  }
  std::optional<HostPath> choose(FileDialog::Mode mode, Flags flags, const std::string& offered = "") {
    auto chosen = files.choose({mode, offered, "ISO Images (*.iso)|*.iso", flags});
    user.finish();
    return chosen;
  }
};

constexpr auto Open = FileDialog::Mode::Open;
constexpr auto Save = FileDialog::Mode::Save;

}  // namespace

TEST_CASE("A chosen file comes with its whole path, and a cancelled dialog gives nothing") {
  Choice choice;
  choice.enter("Open", choice.folder / "mix.iso");
  CHECK(choice.choose(Open, {.pathMustExist = true, .fileMustExist = true}) == HostPath(choice.folder / "mix.iso"));
  choice.escape("Open");
  CHECK_FALSE(choice.choose(Open, {}));
}

TEST_CASE("A file that must exist and does not is not taken") {
  Choice choice;
  choice.enter("Open", choice.folder / "none.iso");
  choice.answer("Open", QMessageBox::Ok);
  choice.escape("Open");
  CHECK_FALSE(choice.choose(Open, {.pathMustExist = true, .fileMustExist = true}));
}

TEST_CASE("A name to save under is taken as it was typed, without an extension") {
  Choice choice;
  choice.enter("Save As", choice.folder / "mix");
  CHECK(choice.choose(Save, {.pathMustExist = true, .overwritePrompt = true}) == HostPath(choice.folder / "mix"));
  CHECK_FALSE(FileExists(HostPath(choice.folder / "mix")));
}

TEST_CASE("A folder that must exist and does not is told, and the dialog stays") {
  Choice choice;
  choice.enter("Save As", choice.folder / "none/mix.iso");
  choice.answer("Save As", QMessageBox::Ok);
  choice.enter("Save As", choice.folder / "new.iso");
  CHECK(choice.choose(Save, {.pathMustExist = true}) == HostPath(choice.folder / "new.iso"));
}

TEST_CASE("Overwriting is asked about where it is to be, and only there") {
  Choice choice;
  choice.enter("Save As", choice.folder / "mix.iso");
  choice.answer("Save As", QMessageBox::No);
  choice.escape("Save As");
  CHECK_FALSE(choice.choose(Save, {.overwritePrompt = true}));
  choice.enter("Save As", choice.folder / "mix.iso");
  CHECK(choice.choose(Save, {}) == HostPath(choice.folder / "mix.iso"));
}

TEST_CASE("The offered name stands in the dialog, and the filter finds letters in any case") {
  Choice choice;
  QStringList names;
  choice.user.at("Open", [&](QWidget& dialog) {
    CHECK(dialog.findChild<QLineEdit*>("fileNameEdit")->text() == "mix.iso");
    const auto& view = *dialog.findChild<QListView*>("listView");
    REQUIRE(trial::comesTrue([&] { return view.model()->rowCount(view.rootIndex()) == 2; }));
    for (int row = 0; row < 2; ++row) names << view.model()->index(row, 0, view.rootIndex()).data().toString();
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  CHECK_FALSE(choice.choose(Open, {}, choice.folder / "mix.iso"));
  CHECK(names == QStringList{"mix.iso", "OLD.ISO"});
}

TEST_CASE("While a file is chosen, no other window of the program takes input, and what is no member does") {
  Choice choice;
  QPushButton stranger("A help viewer");
  int asked = 0;
  QObject::connect(&stranger, &QPushButton::clicked, [&] { ++asked; });
  stranger.show();
  QWidget& window = *choice.window.desk.window(*choice.window.form);
  QTimer::singleShot(0, qApp, [&] {
    QWidget& dialog = *QApplication::activeModalWidget();
    CHECK(dialog.windowModality() == Qt::WindowModal);
    CHECK(choice.window.desk.family().owns(&dialog));
    QTest::keyClick(window.windowHandle(), Qt::Key_Return);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                      window.findChild<QPushButton*>("cmdOK")->geometry().center());
    QTest::mouseClick(stranger.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  CHECK_FALSE(choice.choose(Save, {}));
  for (const std::string& heard : choice.window.form->heard) CHECK(heard == "Activate");
  CHECK(asked == 1);
}

}  // namespace trackloom
