#include <sys/stat.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <filesystem>
#include <set>

#include "engines/drives/LinuxDrives.h"
#include "fakes/FakePatience.h"
#include "fakes/TestFiles.h"
#include "search/SearchMachine.h"

namespace trackloom {

using fakes::outputOf;
using fakes::SearchMachine;
namespace fs = std::filesystem;

namespace {

/// A drive with one of everything that a search may meet, and what of it is to be listed.
class OddTree {
 public:
  explicit OddTree(SearchMachine& machine) : machine_(machine) {
    files();
    links();
    folders();
  }
  ~OddTree() { fs::permissions(machine_.disk("shut"), fs::perms::owner_all); }
  OddTree(const OddTree&) = delete;
  OddTree& operator=(const OddTree&) = delete;

  /// The paths of the rows.
  std::set<std::string> listed;

 private:
  void list(const std::string& name) {
    machine_.makeFile(name, 10);
    listed.insert(machine_.disk(name));
  }
  void sparse(const std::string& name, std::uintmax_t gibibytes) {
    machine_.makeFile(name);
    fs::resize_file(machine_.disk(name), gibibytes << 30);
  }

  void files() {
    for (const char* name : {"LOUD.MP3", "caf\xE9.mp3", ".mp3", "a|b;c.wav"}) list(name);
    for (const char* name : {"a.mp3.txt", "mp3", "a.mp33"}) machine_.makeFile(name);
    machine_.makeFile("empty.mp3", 0);
    sparse("three.mp3", 3);
    sparse("five.wav", 5);
    listed.insert(machine_.disk("five.wav"));
    REQUIRE(mkfifo(machine_.disk("pipe.mp3").c_str(), 0600) == 0);
  }
  void links() {
    fs::create_symlink("LOUD.MP3", machine_.disk("link.mp3"));
    listed.insert(machine_.disk("link.mp3"));
    fs::create_symlink("nowhere", machine_.disk("gone.mp3"));
    fs::create_symlink("self.mp3", machine_.disk("self.mp3"));
    fs::create_directory_symlink(machine_.disk(), machine_.disk("loop"));
  }
  void folders() {
    for (int file = 0; file < 10000; ++file) list("many/" + std::to_string(file) + ".mp3");
    std::string deep;
    for (int depth = 0; depth < 500; ++depth) deep += "d/";
    list(deep + "end.mp3");
    list("folder.mp3/inside.wav");
    for (const char* name : {"Recycled/lost.mp3", "my recycled things/below/lost.mp3"}) machine_.makeFile(name);
    machine_.makeFile("shut/hidden.mp3");
    fs::permissions(machine_.disk("shut"), fs::perms::none);
    // The superuser may read it all the same.
    if (access(machine_.disk("shut").c_str(), R_OK | X_OK) == 0) listed.insert(machine_.disk("shut/hidden.mp3"));
  }

  SearchMachine& machine_;
};

int countOf(const std::string& findings) {
  return std::stoi(outputOf("find " + findings + " -printf . | wc -c"));
}

}  // namespace

TEST_CASE("A search through a drive of everything odd lists its music, each file once, and counts all files") {
  SearchMachine machine(AudioLayout);
  fakes::FakePatience patience;
  engines::drives::LinuxDrives drives(patience);
  machine.drives.real = &drives;
  const OddTree tree(machine);
  machine.search([&](frmSearch& form) {
    form.Combo1.choose(2);
    machine.run(form);
    std::set<std::string> rows;
    std::string fiveGigabytes;
    for (int row = 1; row <= form.ListView1.Count(); ++row) {
      rows.insert(form.ListView1.SubItem(row, 3) + form.ListView1.Item(row).Text);
      if (form.ListView1.Item(row).Text == "five.wav") fiveGigabytes = form.ListView1.SubItem(row, 2);
    }
    CHECK((rows == tree.listed));
    CHECK(static_cast<std::size_t>(form.ListView1.Count()) == tree.listed.size());
    CHECK(machine.forms().mod.FilesFound == static_cast<int>(tree.listed.size()));
    CHECK(fiveGigabytes == "5.00 GB");
    const DriveTotals totals = SearchDrive(machine.forms(), machine.disk());
    const std::string root = "'" + machine.disk() + "'";
    CHECK(totals.files == countOf(root + " -xtype f"));
    CHECK(totals.folders == countOf(root + " -mindepth 1 -type d"));
    form.cmdCancel.click();
  });
}

}  // namespace trackloom
