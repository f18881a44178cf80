#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QTreeView>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "desktop/Appearance.h"
#include "desktop/FolderLister.h"
#include "desktop/Host.h"
#include "desktop/Look.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEvents.h"
#include "desktop/QtFileDialogs.h"
#include "desktop/QtMessageBoxes.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "fakes/FakeDrives.h"
#include "fakes/FakePrintControls.h"
#include "fakes/FakeRipping.h"
#include "fakes/FakeWorld.h"
#include "fakes/TempFolder.h"
#include "shell/Program.h"

namespace trackloom::bench {

namespace {

constexpr int Files = 1000;
constexpr int Folders = 100;

void row(const std::string& name, double milliseconds) {
  std::printf("%s\t%.1f\tms\n", name.c_str(), milliseconds);
}

/// Files of a second of music each, whose names tell no folder.
std::vector<std::string> makeFiles(const fakes::TempFolder& folder) {
  const std::string original = folder / "original";
  const std::string command =
      "ffmpeg -loglevel error -f lavfi -i sine=440:duration=1 -ac 2 -ar 44100 -b:a 192k -f mp3 -y '" + original + "'";
  if (std::system(command.c_str()) != 0) std::exit(1);
  std::filesystem::create_directory(folder / "music");
  std::vector<std::string> paths;
  for (int i = 0; i < Files; ++i) {
    paths.push_back(folder / ("music/Track number " + std::to_string(i) + ".mp3"));
    std::filesystem::copy_file(original, paths.back());
  }
  return paths;
}

/// Calls `painted` once the dialog that comes next stands painted, and knows how long that took.
class NextDialog final : public QObject {
 public:
  explicit NextDialog(std::function<void(QWidget& dialog)> painted) : painted_(std::move(painted)) {
    clock_.start();
    qApp->installEventFilter(this);
  }
  double milliseconds() const { return milliseconds_; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    auto* dialog = QApplication::activeModalWidget();
    if (event->type() != QEvent::Paint || object != dialog) return false;
    qApp->removeEventFilter(this);
    // The parts of a dialog are painted behind itself, before any timer is due.
    QTimer::singleShot(0, this, [this, dialog] {
      milliseconds_ = static_cast<double>(clock_.nsecsElapsed()) / 1e6;
      painted_(*dialog);
    });
    return false;
  }

 private:
  QElapsedTimer clock_;
  double milliseconds_ = 0;
  std::function<void(QWidget& dialog)> painted_;
};

/// The program with its real windows on a screen that nobody sees.
class Desktop {
 public:
  explicit Desktop(const std::string& home) : process_(processIn(home)) {
    std::filesystem::create_directory(home + "/Layouts");
    engines::virtualrecorder::createVirtualRecorder(HostPath(home + "/Virtual Recorder"));
    writers_.emplace(engines::virtualrecorder::findVirtualRecorders(HostPath(home)),
                     std::make_shared<engines::audio::AudioFiles>(), events_, patience_,
                     engines::writer::WriterSettings{0, HostPath(home)});
    program_.emplace(desk_, Ports{boxes_, dialogs_, folders_, drives_, pump_, process_, *writers_, opener_, help_,
                                  prints_, ripping_.rippers, ripping_.encoders, ripping_.databases, commonControls_,
                                  registry_, fileVersions_, Separators{}});
    desk_.setTrap([this](const std::function<void()>& event) { program_->run(event); });
    program_->start();
    program_->forms().shell.frmOpen->Timer1.tick();
    session().frmListing().Loading = false;
    session().mod.Options.PromptSave = 0;
    QApplication::processEvents();
  }

  Session& session() { return program_->session(); }
  LayoutForms& forms() { return program_->forms().layout; }
  ListView& listing() { return session().frmListing().ListView1; }

  double timeOf(const std::function<void()>& deed) {
    QElapsedTimer clock;
    clock.start();
    desk_.enter(deed);
    QApplication::processEvents();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
  }
  void click(const std::string& tool) {
    desk_.enter([&] { session().frmListing().DockStudio1.click(tool); });
  }
  /// Milliseconds until the dialog of a command stands painted; `use` brings it to its end.
  double opening(const std::string& tool, const std::function<void(QWidget& dialog)>& use) {
    const NextDialog next(use);
    click(tool);
    if (next.milliseconds() == 0) std::exit(1);
    return next.milliseconds();
  }

 private:
  static fakes::FakeProcess processIn(const std::string& home) {
    fakes::FakeProcess process;
    process.folder = home;
    return process;
  }

  QtDesk desk_;
  QtEventPump pump_;
  QtEventQueue events_{desk_};
  QtPatience patience_{desk_};
  QtMessageBoxes boxes_{desk_};
  QtFileDialogs dialogs_{desk_};
  FolderLister folders_{events_, patience_};
  fakes::FakeDrives drives_;
  fakes::FakeProcess process_;
  fakes::FakeOpener opener_;
  fakes::FakeHelp help_;
  fakes::FakePrintControls prints_;
  fakes::FakeRipping ripping_;
  fakes::FakeCommonControls commonControls_;
  fakes::FakeRegistry registry_;
  fakes::FakeFileVersions fileVersions_;
  std::optional<engines::writer::DiscWriters> writers_;
  std::optional<Program> program_;
};

void close(QWidget& dialog) {
  dialog.close();
}

void makeLayout(Desktop& desktop, const std::vector<std::string>& files) {
  desktop.opening("New", [&](QWidget&) {
    desktop.forms().frmNewOption->optMP3.click();
    desktop.forms().frmNewOption->cmdOK.click();
  });
  row("Dropping 1,000 files on the window", desktop.timeOf([&] { desktop.listing().dropFiles(files); }));
  if (desktop.listing().Count() != Files) std::exit(1);
  for (int track = 1; track <= Files; ++track)
    desktop.listing().SetSubItem(track, 3, "\\Folder " + std::to_string(track % Folders));
}

/// All rows of the dialog into another folder, by the dialog's own list.
void moveAll(Desktop& desktop) {
  double selecting = 0;
  double moving = 0;
  row("Opening frmFolder", desktop.opening("ShowAll", [&](QWidget& dialog) {
    auto* view = dialog.findChild<QTreeView*>("ListView1");
    selecting = desktop.timeOf([&] { view->selectAll(); });
    desktop.forms().frmFolder->txtFolder.type("Another");
    moving = desktop.timeOf([&] { desktop.forms().frmFolder->cmdOK.click(); });
  }));
  row("Selecting all rows of frmFolder", selecting);
  row("OK of frmFolder on all rows", moving);
  if (desktop.listing().SubItem(Files, 3) != "\\Another") std::exit(1);
}

void openAndCloseDialogs(Desktop& desktop) {
  const std::vector<std::pair<std::string, std::string>> dialogs{{"AddFiles", "frmFiles"},
                                                                 {"Search", "frmSearch"},
                                                                 {"mnuFileSaveAs", "frmSave"},
                                                                 {"Record", "frmOptions"},
                                                                 {"mnuActionsCreate", "frmISO"},
                                                                 {"mnuToolsInformation", "frmDiskInfo"},
                                                                 {"mnuToolsOptions", "frmDefaultOptions"},
                                                                 {"mnuHelpAbout", "frmAbout"}};
  for (const auto& [tool, form] : dialogs) row("Opening " + form, desktop.opening(tool, close));
}

/// Saves the layout, and opens it again by the dialog.
void reopen(Desktop& desktop) {
  desktop.opening("mnuFileSaveAs", [&](QWidget&) {
    desktop.forms().frmSave->txtName.type("Thousand");
    desktop.forms().frmSave->cmdOK.click();
  });
  QElapsedTimer reading;
  row("Opening frmOpenLayout", desktop.opening("Open", [&](QWidget&) {
    reading.start();
    desktop.forms().frmOpenLayout->cmdOK.click();
  }));
  row("Reading the layout's 1,000 files", static_cast<double>(reading.nsecsElapsed()) / 1e6);
  if (desktop.listing().Count() != Files) std::exit(1);
}

}  // namespace

}  // namespace trackloom::bench

/// How long the dialogs of an MP3 layout of 1,000 files in 100 folders take until they stand painted, and how long
/// their long deeds take.
int main(int argc, char** argv) {
  using namespace trackloom;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  dress();
  const fakes::TempFolder folder;
  const std::vector<std::string> files = bench::makeFiles(folder);
  bench::Desktop desktop(folder / "");
  bench::makeLayout(desktop, files);
  desktop.session().mod.Options.setLastFolder(folder / "music/");
  bench::openAndCloseDialogs(desktop);
  bench::moveAll(desktop);
  bench::reopen(desktop);
  std::fflush(stdout);
  std::_Exit(0);
}
