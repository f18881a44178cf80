#pragma once

#include <QMainWindow>
#include <QPushButton>
#include <optional>
#include <string>

#include "desktop/QtDesk.h"
#include "desktop/QtEvents.h"
#include "desktop/QtFileDialogs.h"
#include "desktop/QtMessageBoxes.h"
#include "desktop/QtPrintControls.h"
#include "desktop/User.h"
#include "fakes/FakeDrives.h"
#include "fakes/FakeFolderListing.h"
#include "fakes/FakeRipping.h"
#include "fakes/FakeWorld.h"
#include "fakes/FakeWriter.h"
#include "fakes/TempFolder.h"
#include "shell/Program.h"

namespace trackloom::trial {

/// The program with its real windows and boxes, in a folder of its own, on fake engines.
class LiveProgram {
 public:
  explicit LiveProgram(Separators signs = {});
  ~LiveProgram();
  LiveProgram(const LiveProgram&) = delete;
  LiveProgram& operator=(const LiveProgram&) = delete;

  fakes::TempFolder folder;
  fakes::FakeEngines engines;
  fakes::FakeProcess process;
  QtEventPump pump;
  fakes::FakeFolderListing folders;
  fakes::FakeDrives drives;
  fakes::FakeOpener opener;
  fakes::FakeHelp help;
  fakes::FakeRipping ripping;
  fakes::FakeCommonControls commonControls;
  fakes::FakeRegistry registry;
  fakes::FakeFileVersions fileVersions;
  QtDesk desk;
  QtMessageBoxes boxes{desk};
  QtFileDialogs files{desk};
  QtPrintControls prints{desk, files, HostPath(folder.path())};
  Program program;
  User user;
  /// The status with which the process would have ended.
  std::optional<int> ended;

  /// Up to the main window, which at its first activation asks for a layout.
  void start();
  /// A start without that question.
  void startQuietly();
  /// The user chooses New, and then this kind of layout; `announce` tells what comes behind that.
  void newLayout(
      std::int16_t kind, const std::function<void()>& announce = [] {});
  /// A file that counts as audio and as data of so many blocks; its path.
  std::string makeTrack(const std::string& name, std::int32_t blocks);
  void addTrack(const std::string& name, std::int32_t blocks);

  ListingWindow& form() { return program.session().frmListing(); }
  QMainWindow& window() { return dynamic_cast<QMainWindow&>(*desk.window(form())); }
  fakes::FakeWriter& cdr1() { return dynamic_cast<fakes::FakeWriter&>(*form().CDR1); }
  /// As the toolkit would bring it.
  void click(const std::string& tool) {
    desk.enter([&] { form().DockStudio1.click(tool); });
  }
};

template <class Widget>
Widget& in(QWidget& window, const char* name) {
  return *window.findChild<Widget*>(name);
}

}  // namespace trackloom::trial
