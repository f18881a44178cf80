#include <QApplication>
#include <QTimer>
#include <chrono>

#include "app/DiscLooks.h"
#include "app/MachineDrives.h"
#include "desktop/DesktopOpener.h"
#include "desktop/DriveNotice.h"
#include "desktop/FolderLister.h"
#include "desktop/ForcedEnd.h"
#include "desktop/HelpViewer.h"
#include "desktop/Host.h"
#include "desktop/Look.h"
#include "desktop/PanelDoor.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEvents.h"
#include "desktop/QtFileDialogs.h"
#include "desktop/QtMessageBoxes.h"
#include "desktop/QtPrintControls.h"
#include "desktop/ServiceMounts.h"
#include "desktop/SessionWakefulness.h"
#include "engines/discdb/WebDatabases.h"
#include "engines/drives/LinuxDrives.h"
#include "engines/encoder/LameEncoders.h"
#include "engines/ground/EngineSettings.h"
#include "engines/helpfile/HelpBookFile.h"
#include "engines/ripper/DiscRippers.h"
#include "engines/virtual/FolderShelf.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "shell/Program.h"

namespace trackloom {

namespace {

/// Caches of tracks can take a whole disc's size, which is too much for a file system in memory.
constexpr const char* ScratchFolder = "/var/tmp";

/// By then the splash is painted, and it stands for much longer.
constexpr std::chrono::milliseconds SplashIsSeen{100};

engines::Lazily<engines::PlacedRecorders> foundBy(MachineDrives& drives) {
  return engines::Lazily<engines::PlacedRecorders>([&drives] { return drives.recorders(); });
}

engines::Lazily<engines::ReadingDrives> readersBy(MachineDrives& drives) {
  return engines::Lazily<engines::ReadingDrives>([&drives] {
    drives.recorders();
    return drives.readers().get();
  });
}

/// What the writer engine knows about its last failure, and where there is no recorder at all, why.
class StartDetail final : public FailureDetail {
 public:
  StartDetail(const MachineDrives& drives, const FailureDetail& writer) : drives_(drives), writer_(writer) {}

  std::string lastFailure() const override {
    const std::string why = drives_.whyNone();
    return why.empty() ? writer_.lastFailure() : why;
  }

 private:
  const MachineDrives& drives_;
  const FailureDetail& writer_;
};

/// Joins the desktop, the engines and the program, and runs them until the process ends. Nothing is taken down at the
/// end, since threads that wait for a disk may still look at it.
[[noreturn]] void runProgram() {
  QtDesk desk;
  QtEventPump pump;
  QtEventQueue events(desk);
  QtPatience patience(desk);
  DriveNotice notice;
  QtMessageBoxes boxes(desk);
  QtFileDialogs files(desk);
  FolderLister folders(events, patience);
  engines::drives::LinuxDrives hardDrives(patience);
  LinuxProcess process;
  DesktopOpener opener;
  HelpViewer help(engines::helpfile::patientReader(patience), opener);
  NoCommonControls commonControls;
  NoRegistry registry;
  NoFileVersions fileVersions;
  engines::encoder::LameEncoders encoders;
  const HostPath programFolder(process.executableFolder());
  QtPrintControls prints(desk, files, programFolder);
  const engines::EngineSettings settings = engines::loadEngineSettings(programFolder);
  const std::vector<engines::KnownDrive> known = engines::loadKnownDrives(programFolder);
  const engines::RecorderList virtualOnes = settings.virtualRecorders
                                                ? engines::virtualrecorder::findVirtualRecorders(programFolder, known)
                                                : engines::RecorderList();
  MachineDrives drives({.programFolder = programFolder,
                        .virtualOnes = virtualOnes,
                        .mounts = std::make_shared<ServiceMounts>(),
                        .patience = patience,
                        .whenUnusable = [&notice](const std::vector<std::string>& why) { notice.tell(why); }});
  process.whenFirst = [&programFolder] { engines::explainEngineSettings(programFolder); };
  const auto wakefulness = std::make_shared<SessionWakefulness>();
  engines::writer::DiscWriters writers(foundBy(drives), std::make_shared<engines::audio::AudioFiles>(), events,
                                       patience,
                                       {settings.pause, HostPath(ScratchFolder), settings.verify, wakefulness});
  engines::ripper::DiscRippers rippers(readersBy(drives), events, patience, {programFolder, 0, wakefulness});
  engines::discdb::WebDatabases databases(settings.discServer, programFolder, contentsOf(drives.readers()), patience);
  const StartDetail detail(drives, writers.failureDetail());
  desk.setFailureDetail(detail);
  Program program(desk, {boxes, files, folders, hardDrives, pump, process, writers, opener, help, prints, rippers,
                         encoders, databases, commonControls, registry, fileVersions, systemSeparators()});
  PanelDoor panelDoor(engines::virtualrecorder::shelvesOf(programFolder, virtualOnes), opener,
                      [&desk] { return desk.failureDetail(); });
  desk.setExtras([&panelDoor, &notice, &prints](const std::string& form, QWidget& window) {
    if (form == "frmListing") panelDoor.standIn(window);
    if (form == "frmListing") notice.standIn(window);
    if (form == "frmPrint") prints.standIn(window);
  });
  const ForcedEnd forcedEnd([&program](int status) { program.endUnasked(status); });
  desk.setTrap([&program](const std::function<void()>& event) { program.run(event); });
  desk.enter([&program] { program.start(); });
  QTimer::singleShot(SplashIsSeen, [&desk, &program] { desk.prepare(program.session().frmListing()); });
  QTimer::singleShot(2 * SplashIsSeen, [&desk] { desk.prepare("frmNewOption"); });
  process.end(QApplication::exec());
}

}  // namespace

}  // namespace trackloom

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  trackloom::dress();
  trackloom::runProgram();
}
