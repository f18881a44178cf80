#pragma once

#include <memory>
#include <optional>
#include <string>

#include "fakes/FakeDrives.h"
#include "fakes/FakeFolderListing.h"
#include "fakes/FakePrintControls.h"
#include "fakes/FakeRipping.h"
#include "fakes/FakeWorld.h"
#include "fakes/FakeWriter.h"
#include "fakes/ScriptedDesk.h"
#include "fakes/TempFolder.h"
#include "shell/Program.h"

namespace trackloom::fakes {

/// A machine with the program in a folder of its own. The program can be started again and again; what it wrote stays.
class Machine {
 public:
  Machine();
  virtual ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  TempFolder folder;
  FakeEngines engines;
  FakeProcess process;
  FakePump pump;
  FakeFolderListing folders;
  FakeDrives drives;
  FakeOpener opener;
  FakeHelp help;
  FakePrintControls prints;
  FakeRipping ripping;
  FakeCommonControls commonControls;
  FakeRegistry registry;
  FakeFileVersions fileVersions;
  ScriptedDesk desk;

  /// Starts the program anew, and stays at its splash.
  void showSplash();
  /// Starts the program anew: splash, its tick, and the load of the main window.
  void start();
  /// The first activation; `NoShow.dat` keeps the new-layout dialog away.
  void activate() { session().frmListing().activated(); }
  /// A start with `NoShow.dat` in the folder, up to the empty main window.
  void startQuietly();
  /// Runs `handler` as a window would, and gives the status with which the process ended in it.
  std::optional<int> endOf(const std::function<void()>& handler);
  /// Closes the main window; the exit status, nothing when the close was refused.
  std::optional<int> close();

  void newLayout(std::int16_t kind);
  /// A file that counts as audio and as data of so many blocks; its path.
  std::string makeTrack(const std::string& name, std::int32_t blocks);
  /// A row and a queue entry, by way of a file drop.
  void addTrack(const std::string& name, std::int32_t blocks);

  Program& program() { return *program_; }
  Session& session() { return program_->session(); }
  Trackloom50Mod1& mod() { return session().mod; }
  ListingWindow& window() { return session().frmListing(); }
  FakeWriter& cdr1() { return dynamic_cast<FakeWriter&>(*window().CDR1); }
  bool enabled(const std::string& tool) { return window().DockStudio1.tool(tool).Enabled; }
  void click(const std::string& tool) { window().DockStudio1.click(tool); }

 protected:
  /// The engines of a program that is being started.
  virtual WriterEngines& writers() { return engines; }
  virtual Drives& hardDrives() { return drives; }
  /// For engines that go before the machine does.
  void forgetProgram();

 private:
  std::unique_ptr<Program> program_;
};

}  // namespace trackloom::fakes
