#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <catch2/catch.hpp>

#include "fakes/FolderLook.h"
#include "fakes/Machine.h"
#include "layout/frmSave.h"
#include "runtime/FileDescriptor.h"
#include "runtime/RuntimeError.h"
#include "shell/frmNOCD.h"

namespace trackloom {

using fakes::EndOfProcess;
using fakes::Machine;
using fakes::namesIn;
using fakes::permissionsOf;
using fakes::TempFolder;
using Lines = std::vector<std::string>;

namespace {

/// A machine with an unsaved audio layout of one track, and two folders outside of the program's.
class InNeed : public Machine {
 public:
  TempFolder home, other;

  InNeed() {
    process.refugeFolders = {home.path(), other.path()};
    startQuietly();
    newLayout(AudioLayout);
    addTrack("a.mp3", 100);
  }

  /// The error that nobody handles; the status with which the process ended.
  std::optional<int> fail() {
    return endOf([] { throw RuntimeError(RuntimeError::DiskFull); });
  }
  std::optional<int> endUnasked(int status) {
    return endOf([&] { program().endUnasked(status); });
  }
  void obstructLayouts() const {
    std::filesystem::remove_all(folder / "Layouts");
    folder.write("Layouts", "in the way");
  }
  void clearLayouts() const { std::filesystem::remove(folder / "Layouts"); }
  std::string layout() const { return "\"Audio\"\r\n1\r\n\"00:03:25\"\r\n\"" + folder.path() + "/music/a.mp3\"\r\n"; }
};

constexpr const char* DiskFullWords = "Run-time error '61':\r\n\r\nDisk full";

}  // namespace

TEST_CASE("A rescued layout goes among the layouts, under a name of its own that only the user can read") {
  InNeed machine;
  machine.mod().LayoutFileName = "Mix.mixl";
  machine.folder.write("Layouts/Rescued Mix 1.mixl", "an earlier one");
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.fail() == 1);
  CHECK(machine.desk.lastBox().text ==
        std::string(DiskFullWords) + "\r\n\r\nThe open layout was saved as 'Rescued Mix 2'.");
  CHECK(machine.folder.read("Layouts/Rescued Mix 1.mixl") == "an earlier one");
  CHECK(machine.folder.read("Layouts/Rescued Mix 2.mixl") == machine.layout());
  CHECK(permissionsOf(machine.folder / "Layouts/Rescued Mix 2.mixl") == 0600);
}

TEST_CASE("The refuges are tried in turn, and the first that takes the layout has its only copy") {
  InNeed machine;
  machine.obstructLayouts();
  machine.process.refugeFolders = {machine.folder / "missing", machine.home.path() + "/", machine.other.path()};
  std::filesystem::create_symlink("elsewhere", machine.home / "Rescued layout 1.mixl");
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.fail() == 1);
  const std::string copy = machine.home / "Rescued layout 2.mixl";
  CHECK(machine.desk.lastBox().text ==
        std::string(DiskFullWords) + "\r\n\r\nThe open layout was saved as '" + copy + "'.");
  CHECK(machine.home.read("Rescued layout 2.mixl") == machine.layout());
  CHECK(permissionsOf(copy) == 0600);
  CHECK_FALSE(machine.home.has("elsewhere"));
  CHECK(namesIn(machine.other.path()).empty());
}

TEST_CASE("A layout that no place takes is asked for until one does") {
  InNeed machine;
  machine.obstructLayouts();
  machine.process.refugeFolders = {machine.folder / "missing"};
  machine.desk.expectBox("Trackloom", BoxAnswer::Retry);
  machine.desk.expectBox("Trackloom", BoxAnswer::Retry);
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    if (machine.desk.boxes.size() == 2) machine.clearLayouts();
  };
  CHECK(machine.fail() == 1);
  CHECK(
      machine.desk.boxes.at(1).text ==
      "The open layout could not be saved anywhere: Path not found.\r\n\r\nMake room and press Retry, or press Cancel "
      "to give the layout up.");
  CHECK(machine.desk.boxes.at(1).buttons == BoxButtons::RetryCancel);
  CHECK(machine.desk.boxes.at(1).icon == BoxIcon::Critical);
  CHECK(machine.desk.lastBox().text ==
        std::string(DiskFullWords) + "\r\n\r\nThe open layout was saved as 'Rescued layout 1'.");
  CHECK(machine.folder.read("Layouts/Rescued layout 1.mixl") == machine.layout());
}

TEST_CASE("A layout that the user gives up is not asked for again, and the error is told all the same") {
  InNeed machine;
  machine.obstructLayouts();
  machine.process.refugeFolders.clear();
  machine.desk.expectBox("Trackloom", BoxAnswer::Cancel);
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.fail() == 1);
  CHECK(machine.desk.boxes.size() == 2);
  CHECK(machine.desk.lastBox().text == DiskFullWords);
}

TEST_CASE("What is saved already, or is empty, is not rescued") {
  InNeed machine;
  machine.mod().LayoutSaved = true;
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.fail() == 1);
  CHECK(machine.desk.lastBox().text == DiskFullWords);
  CHECK(namesIn(machine.folder / "Layouts").empty());

  machine.startQuietly();
  machine.mod().LayoutSaved = false;
  machine.mod().LayoutFileName = "Mix.mixl";
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.fail() == 1);
  CHECK(namesIn(machine.folder / "Layouts").empty());
}

TEST_CASE("The next start brings rescued layouts home, each under a free name") {
  Machine machine;
  const TempFolder home, other;
  machine.process.refugeFolders = {machine.folder / "missing", home.path(), other.path()};
  machine.folder.write("Layouts/Rescued Mix 1.mixl", "here before");
  home.write("Rescued Mix 1.mixl", "first");
  home.write("Rescued Mix 12.mixl", "second");
  other.write("Rescued Rescued layout 3 1.mixl", "third");
  machine.startQuietly();
  CHECK(namesIn(machine.folder / "Layouts") ==
        Lines{"Rescued Mix 1.mixl", "Rescued Mix 2.mixl", "Rescued Mix 3.mixl", "Rescued Rescued layout 3 1.mixl"});
  CHECK(machine.folder.read("Layouts/Rescued Mix 1.mixl") == "here before");
  CHECK(machine.folder.read("Layouts/Rescued Mix 2.mixl") == "first");
  CHECK(machine.folder.read("Layouts/Rescued Mix 3.mixl") == "second");
  CHECK(machine.folder.read("Layouts/Rescued Rescued layout 3 1.mixl") == "third");
  CHECK(permissionsOf(machine.folder / "Layouts/Rescued Mix 2.mixl") == 0600);
  CHECK(namesIn(home.path()).empty());
  CHECK(namesIn(other.path()).empty());
}

TEST_CASE("A start leaves alone what is no rescued layout of the user's own") {
  Machine machine;
  const TempFolder home;
  machine.process.refugeFolders = {home.path()};
  const Lines others{"Mix.mixl",           "Rescued 5.mixl",   "Rescued Mix 1.MIXL", "Rescued Mix 1.mixl.bak",
                     "Rescued Mix x.mixl", "Rescued Mix.mixl", "Rescued Mix7.mixl",  "rescued Mix 1.mixl",
                     "Rescued Mix .mixl"};
  for (const std::string& name : others) home.write(name, "kept");
  home.write("elsewhere", "kept");
  std::filesystem::create_symlink("elsewhere", home / "Rescued link 1.mixl");
  std::filesystem::create_directory(home / "Rescued folder 1.mixl");
  REQUIRE(::mkfifo((home / "Rescued pipe 1.mixl").c_str(), 0600) == 0);
  home.write("Rescued busy 1.mixl", "in the making");
  const FileDescriptor writer = FileDescriptor::open(home / "Rescued busy 1.mixl", O_RDONLY);
  REQUIRE(::flock(writer.get(), LOCK_EX | LOCK_NB) == 0);
  const Lines before = namesIn(home.path());
  machine.startQuietly();
  CHECK(namesIn(home.path()) == before);
  CHECK(namesIn(machine.folder / "Layouts").empty());
}

TEST_CASE("Another user's file is not brought home") {
  if (::geteuid() != 0) return;
  Machine machine;
  const TempFolder home;
  machine.process.refugeFolders = {home.path()};
  home.write("Rescued theirs 1.mixl", "kept");
  REQUIRE(::chown((home / "Rescued theirs 1.mixl").c_str(), 65534, 65534) == 0);
  machine.startQuietly();
  CHECK(home.has("Rescued theirs 1.mixl"));
}

TEST_CASE("A refuge that is the folder of the layouts itself changes nothing there") {
  Machine machine;
  machine.folder.write("Layouts/Rescued Mix 1.mixl", "here before");
  machine.process.refugeFolders = {machine.folder / "Layouts", machine.folder / "Layouts/"};
  machine.startQuietly();
  CHECK(namesIn(machine.folder / "Layouts") == Lines{"Rescued Mix 1.mixl"});
}

TEST_CASE("Where the layouts take nothing, a rescued one stays in its refuge") {
  Machine machine;
  const TempFolder home;
  machine.process.refugeFolders = {home.path()};
  home.write("Rescued Mix 1.mixl", "kept");
  machine.folder.write("Layouts", "in the way");
  machine.startQuietly();
  CHECK(home.read("Rescued Mix 1.mixl") == "kept");
}

TEST_CASE("After a fatal error nothing but its own boxes takes input") {
  InNeed machine;
  machine.mod().LayoutSaved = true;
  machine.window().Timer1.Enabled = true;
  int ran = 0;
  const auto enter = [&](const std::function<void()>& event) {
    machine.program().run([&] {
      ++ran;
      event();
    });
  };
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    enter([&] { machine.click("New"); });
    enter([&] { machine.window().closeBox(); });
    enter([&] { machine.window().Timer1.tick(); });
    enter([] { throw RuntimeError(RuntimeError::Overflow); });
  };
  CHECK(machine.fail() == 1);
  CHECK(ran == 0);
  CHECK(machine.desk.boxes.size() == 1);
}

TEST_CASE("A save that fails in the dialog of the close sequence leaves the close going on") {
  InNeed machine;
  machine.obstructLayouts();
  machine.desk.expectBox("Save Layout", BoxAnswer::Yes);
  machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
    form.txtName.type("Mix");
    machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
    // As the desk brings it: the error is met where the click came in.
    machine.program().run([&] { form.cmdOK.click(); });
  });
  machine.mod().Options.SortMode = 2;
  CHECK(machine.close() == 0);
  CHECK(machine.desk.lastBox().text ==
        "Run-time error '76':\r\n\r\nPath not found\r\n\r\nThe open layout was saved as '" +
            (machine.home / "Rescued layout 1.mixl") + "'.");
  CHECK(machine.home.read("Rescued layout 1.mixl") == machine.layout());
  CHECK(machine.folder.read("Options.dat").at(262) == 2);
  CHECK(machine.folder.has("Trackloom.dsl"));
}

TEST_CASE("An end without questions rescues the layout and stores what the close stores") {
  for (const int status : {0, 1}) {
    InNeed machine;
    machine.mod().Options.SortMode = 2;
    machine.window().placement = Placement{WindowState::Normal, 150, 300, 15000, 9000};
    CHECK(machine.endUnasked(status) == status);
    CHECK(machine.desk.boxes.empty());
    CHECK(machine.process.told == Lines{"The open layout was saved as 'Rescued layout 1'."});
    CHECK(machine.folder.read("Layouts/Rescued layout 1.mixl") == machine.layout());
    CHECK(machine.folder.read("Options.dat").at(262) == 2);
    CHECK(machine.folder.read("Options.dat").at(268) == static_cast<char>(15000 & 0xFF));
    CHECK(machine.folder.has("Trackloom.dsl"));
    CHECK(machine.window().panel1.Text == std::string());
  }
}

TEST_CASE("An end without questions has nothing to tell of a saved layout") {
  InNeed machine;
  machine.mod().LayoutSaved = true;
  CHECK(machine.endUnasked(0) == 0);
  CHECK(machine.process.told.empty());
  CHECK(machine.folder.has("Trackloom.dsl"));
}

TEST_CASE("An end without questions that can rescue the layout nowhere says so, and goes on") {
  InNeed machine;
  machine.obstructLayouts();
  machine.process.refugeFolders.clear();
  CHECK(machine.endUnasked(0) == 0);
  CHECK(machine.desk.boxes.empty());
  CHECK(machine.process.told == Lines{"The open layout could not be saved anywhere: Path not found."});
  CHECK(machine.folder.has("Trackloom.dsl"));
}

TEST_CASE("An end without questions behind the splash stores nothing") {
  Machine machine;
  machine.showSplash();
  CHECK(machine.endOf([&] { machine.program().endUnasked(0); }) == 0);
  CHECK(namesIn(machine.folder.path()).empty());
}

TEST_CASE("An end without questions where no drive was found stores nothing") {
  Machine machine;
  machine.engines.stage.drives.clear();
  machine.folder.write("Options.dat", std::string(276, '\1'));
  machine.desk.expectForm<frmNOCD>("frmNOCD", [&](frmNOCD&) { machine.program().endUnasked(0); });
  int status = -1;
  try {
    machine.start();
  } catch (const EndOfProcess& end) {
    status = end.status;
  }
  CHECK(status == 0);
  CHECK(machine.folder.read("Options.dat") == std::string(276, '\1'));
  CHECK_FALSE(machine.folder.has("Trackloom.dsl"));
}

TEST_CASE("An end without questions over the box of a fatal error is that error's end, and rescues nothing twice") {
  InNeed machine;
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) { machine.program().endUnasked(0); };
  CHECK(machine.fail() == 1);
  CHECK(machine.process.told.empty());
  CHECK(namesIn(machine.folder / "Layouts") == Lines{"Rescued layout 1.mixl"});
  CHECK_FALSE(machine.folder.has("Trackloom.dsl"));
}

TEST_CASE("An end without questions while room for the layout is asked for tries once more") {
  InNeed machine;
  machine.obstructLayouts();
  machine.process.refugeFolders.clear();
  machine.desk.expectBox("Trackloom", BoxAnswer::Cancel);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    machine.clearLayouts();
    machine.program().endUnasked(0);
  };
  CHECK(machine.fail() == 1);
  CHECK(machine.process.told == Lines{"The open layout was saved as 'Rescued layout 1'."});
  CHECK(machine.folder.read("Layouts/Rescued layout 1.mixl") == machine.layout());
}

TEST_CASE("An end without questions over the exit question or its box still stores what the close stores") {
  InNeed machine;
  machine.desk.expectBox("Save Layout", BoxAnswer::Cancel);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) { machine.program().endUnasked(0); };
  CHECK(machine.close() == 0);
  CHECK(machine.folder.has("Trackloom.dsl"));
  CHECK(namesIn(machine.folder / "Layouts") == Lines{"Rescued layout 1.mixl"});

  InNeed failing;
  failing.mod().LayoutHasFile = true;
  failing.mod().LayoutFileName = "Mix.mixl";
  std::filesystem::remove_all(failing.folder / "Layouts");
  failing.desk.expectBox("Save Layout", BoxAnswer::Yes);
  failing.desk.expectBox("Trackloom", BoxAnswer::Ok);
  failing.desk.whileBoxIsOpen = [&](const MessageBox& box) {
    if (box.title == "Trackloom") failing.program().endUnasked(0);
  };
  CHECK(failing.close() == 0);
  CHECK(failing.folder.has("Trackloom.dsl"));
  CHECK(namesIn(failing.folder / "Layouts") == Lines{"Rescued Mix 1.mixl"});
}

}  // namespace trackloom
