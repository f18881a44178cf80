#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/Look.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEvents.h"
#include "engines/drives/LinuxDrives.h"
#include "engines/writer/DiscWriters.h"
#include "engines/writer/FakeRecorder.h"
#include "fakes/FakeFolderListing.h"
#include "fakes/FakePrintControls.h"
#include "fakes/FakeRipping.h"
#include "fakes/FakeWorld.h"
#include "fakes/TempFolder.h"
#include "shell/Program.h"

namespace trackloom::bench {

namespace {

constexpr int Folders = 2000;
constexpr int FilesOfFolder = 100;
/// Every twentieth file is music: 10,000 of 200,000.
constexpr int FilesForOneFind = 20;
constexpr int Runs = 5;

void row(const std::string& name, double figure, const char* unit) {
  std::printf("%s\t%.2f\t%s\n", name.c_str(), figure, unit);
}

double millisecondsOf(const std::function<void()>& work) {
  QElapsedTimer clock;
  clock.start();
  work();
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> figures) {
  std::sort(figures.begin(), figures.end());
  return figures[figures.size() / 2];
}

void makeTree(const std::string& root) {
  for (int folder = 0; folder < Folders; ++folder) {
    const std::string path = root + "/" + std::to_string(folder % 40) + "/" + std::to_string(folder) + "/";
    std::filesystem::create_directories(path);
    for (int file = 0; file < FilesOfFolder; ++file)
      std::ofstream(path + "A file " + std::to_string(file) + (file % FilesForOneFind == 0 ? ".mp3" : ".text")) << "x";
  }
}

void makeHugeFolder(const std::string& root) {
  std::filesystem::create_directories(root + "/huge");
  for (int file = 0; file < 10'000; ++file)
    std::ofstream(root + "/huge/A file " + std::to_string(file) + ".mp3") << "x";
}

/// The folder of a tree is the only hard drive.
class OneDrive final : public Drives {
 public:
  OneDrive(std::string root, Patience& patience) : root_(std::move(root)), drives_(patience) {}

  std::string LogicalDriveRoots() override { return root_ + std::string(2, '\0'); }
  int DriveType(const std::string&) override { return 3; }
  std::unique_ptr<DriveWalk> walk(const std::string& root) override { return drives_.walk(root); }

 private:
  std::string root_;
  engines::drives::LinuxDrives drives_;
};

/// Agrees to all boxes, and chooses no file.
class Agreeing final : public MessageBoxes, public FileDialogs {
 public:
  BoxAnswer show(const MessageBox&) override { return BoxAnswer::Ok; }
  std::optional<HostPath> choose(const FileDialog&) override { return std::nullopt; }
  std::optional<HostPath> browseForFolder(const std::string&) override { return std::nullopt; }
};

/// The longest time for which the event loop runs nothing.
class Stalls {
 public:
  Stalls() {
    QObject::connect(&timer_, &QTimer::timeout, [this] { longest_ = std::max(longest_, clock_.restart()); });
    timer_.setTimerType(Qt::PreciseTimer);
    clock_.start();
    timer_.start(0);
  }
  double longest() const { return static_cast<double>(std::max(longest_, clock_.elapsed())); }

 private:
  QTimer timer_;
  QElapsedTimer clock_;
  qint64 longest_ = 0;
};

/// The window of the search over one drive, with its list, on a screen that nobody sees.
class Window {
 public:
  explicit Window(const std::string& root) : drives_(root, patience_) {
    process_.folder = home_.path();
    program_.start();
    program_.forms().shell.frmOpen->Timer1.tick();
    // So that no layout is asked for.
    program_.session().frmListing().Loading = false;
    program_.session().mod.LayoutType = 1;
    form().show();
    form().Combo1.choose(2);
    QApplication::processEvents();
  }
  double search() {
    return millisecondsOf([this] { desk_.enter([this] { form().cmdStart.click(); }); });
  }
  int finds() { return form().ListView1.Count(); }

 private:
  frmSearch& form() { return program_.forms().search.frmSearch.get(); }

  fakes::TempFolder home_;
  QtDesk desk_;
  QtEventPump pump_;
  QtPatience patience_{desk_};
  OneDrive drives_;
  Agreeing agreeing_;
  fakes::FakeProcess process_;
  QtEventQueue events_{desk_};
  engines::writer::DiscWriters writers_{{std::make_shared<engines::writer::FakeRecorder>()},
                                        std::make_shared<engines::audio::AudioFiles>(),
                                        events_,
                                        patience_,
                                        {}};
  fakes::FakeFolderListing folders_;
  fakes::FakeOpener opener_;
  fakes::FakeHelp help_;
  fakes::FakePrintControls prints_;
  fakes::FakeRipping ripping_;
  fakes::FakeCommonControls commonControls_;
  fakes::FakeRegistry registry_;
  fakes::FakeFileVersions fileVersions_;
  Program program_{desk_, Ports{agreeing_, agreeing_, folders_, drives_, pump_, process_, writers_, opener_, help_,
                                prints_, ripping_.rippers, ripping_.encoders, ripping_.databases, commonControls_,
                                registry_, fileVersions_, Separators{}}};
};

double timeOfCommand(const std::string& command) {
  return millisecondsOf([&] {
    if (std::system((command + " > /dev/null").c_str()) != 0) std::exit(1);
  });
}

/// All three in turn, so that none has the quieter machine.
void compare(const std::string& root) {
  Window window(root);
  const std::string find = "find '" + root + "' -type f -printf '%s\\n'";
  const std::string fd = "fdfind -e mp3 -e wav . '" + root + "'";
  std::vector<double> searches;
  std::vector<double> finds;
  std::vector<double> fds;
  window.search();
  for (int run = 0; run < Runs; ++run) {
    searches.push_back(window.search());
    finds.push_back(timeOfCommand(find));
    fds.push_back(timeOfCommand(fd));
  }
  if (window.finds() != Folders * FilesOfFolder / FilesForOneFind) std::exit(1);
  row("Searching a warm tree of 200,000 files, 10,000 finds listed", median(searches), "ms");
  row("find -type f -printf '%s\\n' on the same tree", median(finds), "ms");
  row("fdfind -e mp3 -e wav on the same tree", median(fds), "ms");
  row("The search against find", median(searches) / median(finds), "x");
  row("The search against fdfind", median(searches) / median(fds), "x");
}

void lookAtStalls(const std::string& name, const std::string& root) {
  Window window(root);
  window.search();
  std::vector<double> stalls;
  for (int run = 0; run < Runs; ++run) {
    const Stalls watch;
    window.search();
    QApplication::processEvents();
    stalls.push_back(watch.longest());
  }
  row("Longest stall of the window, " + name, median(stalls), "ms");
}

}  // namespace

}  // namespace trackloom::bench

/// How long the search takes beside programs that walk the same tree, and how long it keeps the window waiting.
int main(int argc, char** argv) {
  using namespace trackloom;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  dress();
  const fakes::TempFolder folder;
  bench::makeTree(folder / "tree");
  bench::makeHugeFolder(folder / "one");
  bench::compare(folder / "tree");
  bench::lookAtStalls("200,000 files in 2,000 folders", folder / "tree");
  bench::lookAtStalls("10,000 finds in one folder", folder / "one");
  // The tree takes a while to go.
  std::fflush(stdout);
  return 0;
}
