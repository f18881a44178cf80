#include "launcher/OwnFolder.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <catch2/catch.hpp>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "fakes/OwnDisk.h"
#include "fakes/TempFolder.h"

namespace trackloom::launcher {

using Catch::Matchers::Contains;
using fakes::OwnDisk;
using fakes::TempFolder;
namespace fs = std::filesystem;

namespace {

constexpr const char* Program = ".local/share/trackloom/";

/// A system with the package installed, the program in it being a script that tells where it was started from.
class Installed {
 public:
  Installed() {
    fs::create_directories(root_ / "usr/bin");
    fs::copy_file(TRACKLOOM_LAUNCHER, root_ / "usr/bin/trackloom");
    script("usr/libexec/trackloom/tell", "printf '%s' \"$1\" > \"$SAID/window\"");
    root_.write("usr/lib/trackloom/Virtual Recorder/recorder.ini", "[recorder]\n");
    fs::create_directories(root_ / "usr/lib/trackloom/Virtual Recorder/shelf");
    root_.write("said/none", "");
    user("ada");
    release(1);
  }

  /// The package of that number: executable and help tell it, and have its time.
  void release(int number) const {
    const std::string tag = std::to_string(number);
    script("usr/lib/trackloom/trackloom", "echo " + tag + " \"$0\" \"$@\" > \"$SAID/start\"");
    root_.write("usr/lib/trackloom/Trackloom.chm", "help " + tag);
    for (const char* file : {"trackloom", "Trackloom.chm"})
      age(root_ / ("usr/lib/trackloom/" + std::string(file)), number);
  }

  void user(const std::string& name) const { fs::create_directories(root_ / name); }
  /// Starts the command as that user, of whose session it knows these settings only; its exit status.
  int start(const std::string& name, const std::string& settings = "DISPLAY=:9", const std::string& after = "") const {
    fs::remove(root_ / "said/start");
    fs::remove(root_ / "said/window");
    const std::string command = "env -u XDG_DATA_HOME -u DISPLAY -u WAYLAND_DISPLAY HOME='" + (root_ / name) +
                                "' SAID='" + (root_ / "said") + "' " + settings + " '" + (root_ / "usr/bin/trackloom") +
                                "' " + after + " 2> '" + (root_ / "said/words") + "'";
    const int end = std::system(command.c_str());
    return WIFEXITED(end) ? WEXITSTATUS(end) : -1;
  }
  std::string started() const { return root_.read("said/start"); }
  std::string window() const { return root_.read("said/window"); }
  std::string words() const { return root_.read("said/words"); }
  const TempFolder& root() const { return root_; }
  std::string own(const std::string& file) const { return std::string("ada/") + Program + file; }
  bool isWhole(const std::string& file) const {
    return root_.read(own(file)) == root_.read("usr/lib/trackloom/" + file);
  }

 private:
  void script(const std::string& name, const std::string& line) const {
    root_.write(name, "#!/bin/sh\n" + line + "\n");
    fs::permissions(root_ / name, fs::perms(0755));
  }
  static void age(const fs::path& file, int number) {
    fs::last_write_time(file, fs::file_time_type() + std::chrono::hours(24 * number));
  }

  TempFolder root_;
};

std::set<std::string> namesIn(const fs::path& folder) {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
  return names;
}

}  // namespace

TEST_CASE("The first start makes the user's own program folder and starts the executable in it") {
  const Installed here;
  REQUIRE(here.start("ada", "", "-platform 'x y'") == 0);
  CHECK(here.started() == "1 " + (here.root() / here.own("trackloom")) + " -platform x y\n");
  CHECK(namesIn(here.root() / here.own("")) == std::set<std::string>{"trackloom", "Trackloom.chm", "Virtual Recorder"});
  CHECK(here.isWhole("trackloom"));
  CHECK(here.isWhole("Trackloom.chm"));
  CHECK(here.isWhole("Virtual Recorder/recorder.ini"));
  CHECK(fs::is_directory(here.root() / here.own("Virtual Recorder/shelf")));
  CHECK(fs::status(here.root() / here.own("")).permissions() == fs::perms::owner_all);
  CHECK(here.words().empty());
}

TEST_CASE("A start without an upgrade writes nothing, whatever the user has made of the folder") {
  const Installed here;
  REQUIRE(here.start("ada") == 0);
  fs::remove_all(here.root() / here.own("Virtual Recorder"));
  const fs::path folder = here.root() / here.own("");
  fs::last_write_time(folder, fs::file_time_type());
  REQUIRE(here.start("ada") == 0);
  CHECK(fs::last_write_time(folder) == fs::file_time_type());
  CHECK(namesIn(folder) == std::set<std::string>{"trackloom", "Trackloom.chm"});
}

TEST_CASE("An upgrade renews executable and help and touches nothing else") {
  const Installed here;
  REQUIRE(here.start("ada") == 0);
  here.root().write(here.own("Options.dat"), "mine");
  here.root().write(here.own("Virtual Recorder/recorder.ini"), "mine too");
  for (const int release : {2, 1}) {
    here.release(release);
    REQUIRE(here.start("ada") == 0);
    CHECK(here.started().starts_with(std::to_string(release)));
    CHECK(here.root().read(here.own("Trackloom.chm")) == "help " + std::to_string(release));
  }
  CHECK(here.root().read(here.own("Options.dat")) == "mine");
  CHECK(here.root().read(here.own("Virtual Recorder/recorder.ini")) == "mine too");
  CHECK(namesIn(here.root() / here.own("")) ==
        std::set<std::string>{"trackloom", "Trackloom.chm", "Virtual Recorder", "Options.dat"});
}

TEST_CASE("A copy that was cut short or deleted is renewed, and a recorder that was deleted stays away") {
  const Installed here;
  REQUIRE(here.start("ada") == 0);
  fs::remove_all(here.root() / here.own("Virtual Recorder"));
  fs::remove(here.root() / here.own("Trackloom.chm"));
  fs::resize_file(here.root() / here.own("trackloom"), 3);
  REQUIRE(here.start("ada") == 0);
  CHECK(here.isWhole("trackloom"));
  CHECK(here.isWhole("Trackloom.chm"));
  CHECK_FALSE(here.root().has(here.own("Virtual Recorder")));
}

TEST_CASE("A recorder with discs outlives the loss of the executable") {
  const Installed here;
  here.root().write(here.own("Virtual Recorder/shelf/Disc 0001/disc.ini"), "disc");
  REQUIRE(here.start("ada") == 0);
  CHECK(here.root().read(here.own("Virtual Recorder/shelf/Disc 0001/disc.ini")) == "disc");
  CHECK_FALSE(here.root().has(here.own("Virtual Recorder/recorder.ini")));
}

TEST_CASE("What a killed launcher has left is gone behind the next start") {
  const Installed here;
  here.root().write(here.own(".trackloom.new"), "half a");
  here.root().write(here.own(".launching"), "");
  here.root().write(here.own(".Virtual Recorder.new/half"), "half a");
  REQUIRE(here.start("ada") == 0);
  CHECK(here.isWhole("trackloom"));
  CHECK(namesIn(here.root() / here.own("")) == std::set<std::string>{"trackloom", "Trackloom.chm", "Virtual Recorder"});
  CHECK_FALSE(here.root().has(here.own("Virtual Recorder/half")));
}

TEST_CASE("A running instance keeps its executable through an upgrade") {
  const Installed here;
  const fs::path original = here.root() / "usr/lib/trackloom/trackloom";
  fs::copy_file("/bin/sleep", original, fs::copy_options::overwrite_existing);
  ::setenv("HOME", (here.root() / "ada").c_str(), 1);
  ::unsetenv("XDG_DATA_HOME");
  std::string command = here.root() / "usr/bin/trackloom";
  std::string argument = "1000";
  char* const arguments[] = {command.data(), argument.data(), nullptr};
  pid_t running = 0;
  REQUIRE(::posix_spawn(&running, command.c_str(), nullptr, nullptr, arguments, environ) == 0);
  const fs::path executable = "/proc/" + std::to_string(running) + "/exe";
  const fs::path copy = here.root() / here.own("trackloom");
  while (fs::read_symlink(executable) != copy && ::waitpid(running, nullptr, WNOHANG) == 0) continue;

  here.release(2);
  CHECK(here.start("ada") == 0);
  CHECK(here.started().starts_with("2 "));
  CHECK(fs::read_symlink(executable) == copy.string() + " (deleted)");
  CHECK(::waitpid(running, nullptr, WNOHANG) == 0);
  ::kill(running, SIGKILL);
  ::waitpid(running, nullptr, 0);
}

TEST_CASE("Launchers that start at the same time all start the program, from one whole folder") {
  const Installed here;
  for (const int release : {1, 2, 3}) {
    here.release(release);
    const std::string once = "'" + (here.root() / "usr/bin/trackloom") + "' || echo failed";
    const std::string many = "HOME='" + (here.root() / "ada") + "' SAID='" + (here.root() / "said") +
                             "' sh -c \"for n in 1 2 3 4 5 6 7 8; do " + once + " & done; wait\" > '" +
                             (here.root() / "said/many") + "' 2>&1";
    REQUIRE(std::system(("unset XDG_DATA_HOME; " + many).c_str()) == 0);
    CHECK(here.root().read("said/many").empty());
    CHECK(here.isWhole("trackloom"));
    CHECK(here.isWhole("Trackloom.chm"));
    CHECK(namesIn(here.root() / here.own("")) ==
          std::set<std::string>{"trackloom", "Trackloom.chm", "Virtual Recorder"});
  }
}

TEST_CASE("Two users have a program folder each") {
  const Installed here;
  here.user("bob");
  REQUIRE(here.start("ada") == 0);
  REQUIRE(here.start("bob") == 0);
  CHECK(here.started() == "1 " + (here.root() / "bob/") + Program + "trackloom\n");
  CHECK(here.root().has(here.own("trackloom")));
}

TEST_CASE("The folder lies where the desktop keeps users' data, but a relative place counts for nothing") {
  const Installed here;
  REQUIRE(here.start("ada", "XDG_DATA_HOME='" + (here.root() / "else/where") + "'") == 0);
  CHECK(here.started() == "1 " + (here.root() / "else/where/trackloom/trackloom") + "\n");
  CHECK(namesIn(here.root() / "ada").empty());
  REQUIRE(here.start("ada", "XDG_DATA_HOME=else") == 0);
  CHECK(here.started() == "1 " + (here.root() / here.own("trackloom")) + "\n");
}

TEST_CASE("A home folder that is not there is told in a window where there is a display") {
  const Installed here;
  const std::string words =
      "Trackloom keeps its files in your home folder, but there is no folder " + (here.root() / "nobody") + ".";
  CHECK(here.start("nobody", "DISPLAY=:9") == 1);
  CHECK(here.window() == words);
  CHECK(here.words() == "trackloom: " + words + "\n");
  CHECK(here.start("nobody", "WAYLAND_DISPLAY=w") == 1);
  CHECK(here.window() == words);
  CHECK(here.start("nobody", "LANG=C") == 1);
  CHECK_FALSE(here.root().has("said/window"));
  CHECK(here.words() == "trackloom: " + words + "\n");
  CHECK_FALSE(here.root().has("nobody"));
  CHECK(here.start("ada", "HOME=") == 1);
  CHECK(here.words() == "trackloom: Trackloom keeps its files in your home folder, but you have none.\n");
}

TEST_CASE("A full home folder is told with the room that is needed, and nothing half-made stays") {
  const Installed here;
  here.root().write("usr/lib/trackloom/Trackloom.chm", std::string(3 << 20, 'h'));
  const OwnDisk disk(here.root() / "ada", "size=1m");
  if (disk.missing()) return;
  CHECK(here.start("ada") == 1);
  CHECK(here.window() == "Trackloom keeps its files in your folder " + (here.root() / "ada/.local/share/trackloom") +
                             ", which could not be made: there is too little room. It needs 4 MB.");
  CHECK(namesIn(here.root() / here.own("")) == std::set<std::string>{"Virtual Recorder"});
}

TEST_CASE("An upgrade that finds no room is told, and the program as it was starts") {
  const Installed here;
  const OwnDisk disk(here.root() / "ada", "size=1m");
  if (disk.missing()) return;
  REQUIRE(here.start("ada") == 0);
  here.release(2);
  disk.fillUp();
  CHECK(here.start("ada") == 0);
  CHECK_THAT(here.window(), Contains(", which could not be renewed: there is too little room. It needs 1 MB."));
  CHECK(here.started().starts_with("1 "));
  disk.makeRoom();
  CHECK(here.start("ada") == 0);
  CHECK_FALSE(here.root().has("said/window"));
  CHECK(here.started().starts_with("2 "));
}

TEST_CASE("A home folder that may not be written to is told, and one that has the program starts it") {
  const Installed here;
  const OwnDisk disk(here.root() / "ada", "size=1m");
  if (disk.missing()) return;
  here.user("ada/.local/share");
  SECTION("at the first start") {
    REQUIRE(disk.makeReadOnly());
    CHECK(here.start("ada") == 1);
    CHECK(here.window() == "Trackloom keeps its files in your folder " + (here.root() / "ada/.local/share/trackloom") +
                               ", which could not be made: it may not be written to (Read-only file system).");
  }
  SECTION("later") {
    REQUIRE(here.start("ada") == 0);
    REQUIRE(disk.makeReadOnly());
    CHECK(here.start("ada") == 0);
    CHECK(here.words().empty());
    CHECK(here.started().starts_with("1 "));
  }
}

TEST_CASE("A disk from which no program can be started is told") {
  const Installed here;
  const OwnDisk disk(here.root() / "ada", "size=1m");
  if (disk.missing()) return;
  REQUIRE(::mount("tmpfs", (here.root() / "ada").c_str(), nullptr, MS_REMOUNT | MS_NOEXEC, nullptr) == 0);
  CHECK(here.start("ada") == 1);
  CHECK(here.window() == "Trackloom cannot be started from your folder " +
                             (here.root() / "ada/.local/share/trackloom") +
                             ": the disk is mounted so that no program can be started from it (noexec).");
}

TEST_CASE("A file in the place of the folder is told") {
  const Installed here;
  here.root().write("ada/.local/share/trackloom", "a file");
  CHECK(here.start("ada") == 1);
  CHECK_THAT(here.window(), Contains("which could not be made: "));
}

}  // namespace trackloom::launcher
