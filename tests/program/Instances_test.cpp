#include <sys/wait.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <thread>

#include "engines/ground/EngineSettings.h"
#include "fakes/TempFolder.h"
#include "runtime/IniFile.h"

namespace trackloom {

using fakes::TempFolder;
namespace fs = std::filesystem;

namespace {

/// The program as shipped, started for real on a desktop in memory.
class RunningProgram {
 public:
  explicit RunningProgram(const std::string& executable) : child_(::fork()) {
    if (child_ != 0) return;
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::execl(executable.c_str(), executable.c_str(), nullptr);
    ::_exit(127);
  }
  ~RunningProgram() {
    if (child_ == 0) return;
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
  }
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void terminate() const { ::kill(child_, SIGTERM); }
  bool running() {
    if (child_ != 0 && ::waitpid(child_, &end_, WNOHANG) == child_) child_ = 0;
    return child_ != 0;
  }
  /// The status with which it ends by itself, -1 where it does not within a minute.
  int status() {
    for (int tenths = 0; running(); ++tenths) {
      if (tenths == 600) return -1;
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return WIFEXITED(end_) ? WEXITSTATUS(end_) : -1;
  }

 private:
  pid_t child_;
  int end_ = 0;
};

/// Bytes and time of every file of the program's folder.
std::map<std::string, std::pair<std::string, fs::file_time_type>> filesOf(const TempFolder& folder) {
  std::map<std::string, std::pair<std::string, fs::file_time_type>> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder.path()))
    if (entry.is_regular_file()) {
      const std::string name = fs::relative(entry.path(), folder.path()).string();
      files[name] = {folder.read(name), entry.last_write_time()};
    }
  return files;
}

/// The drives that a process has remembered in its Engines.ini: with the options the last of what its start writes.
std::optional<std::string> drives(const TempFolder& folder) {
  return folder.has("Engines.ini") ? IniFile::parse(folder.read("Engines.ini")).value("drives", "1") : std::nullopt;
}

bool hasStarted(const TempFolder& folder) {
  const auto has = [&] { return folder.has("Options.dat") && drives(folder); };
  for (int tenths = 0; tenths < 600 && !has(); ++tenths) std::this_thread::sleep_for(std::chrono::milliseconds(100));
  return has();
}

}  // namespace

TEST_CASE("E008: A second process of the program ends by itself and touches no file, and the first goes on") {
  const TempFolder folder;
  fs::copy(TRACKLOOM_PROGRAM, folder.path(), fs::copy_options::recursive);
  folder.write("NoShow.dat", "");
  RunningProgram first(folder / "trackloom");
  REQUIRE(hasStarted(folder));
  folder.write("Trackloom.dsl", "as the first process left it");
  const auto before = filesOf(folder);

  CHECK(RunningProgram(folder / "trackloom").status() == 0);
  CHECK(filesOf(folder) == before);
  CHECK(first.running());

  first.terminate();
  CHECK(first.status() == 0);
  CHECK(folder.read("Trackloom.dsl") != "as the first process left it");
}

TEST_CASE("The first process explains what can be set of its engines, and remembers its drives in the same file") {
  const TempFolder folder;
  fs::copy(TRACKLOOM_PROGRAM, folder.path(), fs::copy_options::recursive);
  folder.write("NoShow.dat", "");
  RunningProgram first(folder / "trackloom");
  REQUIRE(hasStarted(folder));
  CHECK(drives(folder)->find("|CD Recorder") != std::string::npos);
  TempFolder explained;
  engines::explainEngineSettings(HostPath(explained.path()));
  CHECK(folder.read("Engines.ini").starts_with(explained.read("Engines.ini")));
}

}  // namespace trackloom
