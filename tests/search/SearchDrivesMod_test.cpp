#include "search/SearchDrivesMod.h"

#include <catch2/catch.hpp>

#include "search/SearchMachine.h"

namespace trackloom {

using fakes::FakeDrives;
using fakes::SearchMachine;

namespace {

constexpr std::int64_t GiB = std::int64_t{1} << 30;

/// The window of the search, open while the test asks the walk itself.
void withWindow(SearchMachine& machine, const std::function<void(frmSearch&)>& script) {
  machine.search([&](frmSearch& form) {
    form.Combo1.choose(2);
    script(form);
    form.cmdCancel.click();
  });
}

std::string namesOf(const frmSearch& form) {
  std::string names;
  for (int row = 1; row <= form.ListView1.Count(); ++row) names += form.ListView1.Item(row).Text + ";";
  return names;
}

}  // namespace

TEST_CASE("A text ends at its first NUL, and is empty without one") {
  using namespace std::string_literals;
  CHECK(StripAtNul("song.mp3\0\0rest"s) == "song.mp3");
  CHECK(StripAtNul("song.mp3") == "");
  CHECK(StripAtNul("\0x"s) == "");
  CHECK(StripAtNul("") == "");
}

TEST_CASE("Roots are cut off the list one by one until its last NUL is left") {
  using namespace std::string_literals;
  std::string list = "/\0/home\0\0"s;
  CHECK(NextRoot(list) == "/");
  CHECK(list == "/home\0\0"s);
  CHECK(NextRoot(list) == "/home");
  CHECK(list == "\0"s);
}

TEST_CASE("The list of roots is asked for without the blanks around it") {
  using namespace std::string_literals;
  SearchMachine machine(AudioLayout);
  machine.drives.roots = "  /\0\0   "s;
  CHECK(GetDriveRoots(machine.session()) == "/\0\0"s);
}

TEST_CASE("Each type of drive has its words") {
  SearchMachine machine(AudioLayout);
  const auto words = [&](const std::string& root, int type) {
    machine.drives.types[root] = type;
    return DriveTypeText(machine.session(), root);
  };
  CHECK(words("/", 0) == "The drive type cannot be determined.");
  CHECK(words("/", 1) == "The root directory does not exist.");
  CHECK(words("/", 2) == "Removable");
  CHECK(words("a:", 2) == "Floppy");
  CHECK(words("b:", 2) == "Floppy");
  CHECK(words("A:", 2) == "Removable");
  CHECK(words("c:", 2) == "Removable");
  CHECK(words("/", 3) == "Hard");
  CHECK(words("/", 4) == "Network");
  CHECK(words("/", 5) == "CD-ROM");
  CHECK(words("/", 6) == "RAM");
  CHECK(words("/", 7) == "");
  CHECK(words("/", -1) == "");
}

TEST_CASE("Folders are read breadth first, each in the order of upper-cased names, and files come as they are met") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"b/deep/x.mp3", "b/1.mp3", "A/2.mp3", "c.mp3", "A/deep/y.mp3", "B2.mp3"})
    machine.makeFile(name);
  withWindow(machine, [&](frmSearch& form) {
    SearchDrive(machine.forms(), machine.disk());
    CHECK(machine.drives.asked == std::vector<std::string>{machine.disk(), machine.disk("A/"), machine.disk("b/"),
                                                           machine.disk("A/deep/"), machine.disk("b/deep/")});
    CHECK(namesOf(form) == "B2.mp3;c.mp3;2.mp3;1.mp3;y.mp3;x.mp3;");
    CHECK(machine.forms().mod.FilesFound == 6);
  });
}

TEST_CASE("Window events run once for each folder but the root, behind its files") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"0.mp3", "a/1.mp3", "b/2.mp3", "b/c/3.mp3"}) machine.makeFile(name);
  withWindow(machine, [&](frmSearch& form) {
    std::vector<int> rows;
    machine.pump.onPump = [&] { rows.push_back(form.ListView1.Count()); };
    SearchDrive(machine.forms(), machine.disk());
    machine.pump.onPump = {};
    CHECK(rows == std::vector<int>{2, 3, 4});
  });
}

TEST_CASE("E123: The totals count every file with its size, and every folder but the root") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("empty.mp3", 0);
  machine.makeFile("a.mp3", 10);
  machine.makeFile("sub/notes.txt", 5);
  machine.makeFile("Recycled/b.mp3", 100);
  std::filesystem::create_directories(machine.disk("sub/hollow"));
  withWindow(machine, [&](frmSearch& form) {
    const DriveTotals totals = SearchDrive(machine.forms(), machine.disk());
    CHECK(totals.bytes == 115);
    CHECK(totals.files == 4);
    CHECK(totals.folders == 3);
    CHECK(namesOf(form) == "a.mp3;");
  });
}

TEST_CASE(
    "Sizes of 2 GiB up to 4 GiB count as empty, since their low 32 bits are negative, and larger ones by those bits") {
  SearchMachine machine(AudioLayout);
  std::int64_t all = 0;
  const std::vector<std::pair<std::string, std::int64_t>> sizes{
      {"1.mp3", 2 * GiB - 1}, {"2.mp3", 2 * GiB},     {"3.mp3", 3 * GiB}, {"4.mp3", 4 * GiB - 1},
      {"5.mp3", 4 * GiB},     {"6.mp3", 4 * GiB + 1}, {"7.mp3", 5 * GiB}, {"8.mp3", 6 * GiB}};
  for (const auto& [name, size] : sizes) {
    machine.makeFile(name);
    std::filesystem::resize_file(machine.disk(name), static_cast<std::uintmax_t>(size));
    all += size;
  }
  withWindow(machine, [&](frmSearch& form) {
    const DriveTotals totals = SearchDrive(machine.forms(), machine.disk());
    CHECK(namesOf(form) == "1.mp3;6.mp3;7.mp3;");
    CHECK(form.ListView1.SubItem(3, 2) == "5.00 GB");
    CHECK(totals.bytes == all);
  });
}

TEST_CASE(
    "Files below a folder with RECYCLED in its path are passed over, whatever its case, and its folders are walked") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"recycled/a.mp3", "unRecycledToo/deep/b.mp3", "recycle/c.mp3", "recycled.mp3"})
    machine.makeFile(name);
  withWindow(machine, [&](frmSearch& form) {
    const DriveTotals totals = SearchDrive(machine.forms(), machine.disk());
    CHECK(namesOf(form) == "recycled.mp3;c.mp3;");
    CHECK(totals.files == 4);
    CHECK(totals.folders == 4);
  });
}

TEST_CASE("A root that lies in such a folder hides everything") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("recycled/a.mp3");
  withWindow(machine, [&](frmSearch& form) {
    SearchDrive(machine.forms(), machine.disk("recycled"));
    CHECK(form.ListView1.Count() == 0);
  });
}

TEST_CASE("A folder that cannot be read is counted and passed over without a word") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"a/1.mp3", "b/2.mp3", "c/3.mp3"}) machine.makeFile(name);
  machine.drives.unreadable.insert(machine.disk("b/"));
  withWindow(machine, [&](frmSearch& form) {
    const DriveTotals totals = SearchDrive(machine.forms(), machine.disk());
    CHECK(namesOf(form) == "1.mp3;3.mp3;");
    CHECK(totals.folders == 3);
  });
}

TEST_CASE("A file that goes before its length is taken hides the later files of its folder, and the walk goes on") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"a/1.mp3", "a/3.mp3", "a/sub/5.mp3", "b/4.mp3"}) machine.makeFile(name);
  machine.drives.onRead = [&](const std::string& folder, std::vector<FindRecord>& records) {
    if (folder == machine.disk("a/")) records.insert(records.begin() + 1, FakeDrives::file("2.mp3", 7));
  };
  withWindow(machine, [&](frmSearch& form) {
    const DriveTotals totals = SearchDrive(machine.forms(), machine.disk());
    CHECK(namesOf(form) == "1.mp3;4.mp3;");
    CHECK(totals.bytes == 1 + 7 + 1);
    CHECK(totals.files == 3);
    CHECK(totals.folders == 2);
  });
}

TEST_CASE("A stop lets the folders that wait go by without reading them, and no drive begins behind it") {
  SearchMachine machine(AudioLayout);
  for (const char* name : {"a/1.mp3", "b/2.mp3", "c/3.mp3"}) machine.makeFile(name);
  withWindow(machine, [&](frmSearch& form) {
    machine.pump.onPump = [&] { machine.forms().mod.StopSearch = true; };
    const int before = machine.pump.pumped;
    const DriveTotals totals = SearchDrive(machine.forms(), machine.disk());
    CHECK(machine.pump.pumped - before == 3);
    machine.pump.onPump = {};
    CHECK(namesOf(form) == "1.mp3;");
    CHECK(totals.folders == 3);
    CHECK(totals.files == 1);
    CHECK(machine.drives.asked.size() == 2);

    machine.drives.walked.clear();
    const DriveTotals none = SearchDrive(machine.forms(), machine.disk());
    CHECK(none.folders + none.files + none.bytes == 0);
    CHECK(machine.drives.walked.empty());
  });
}

TEST_CASE("A root without its separator gets it, and one with it keeps it") {
  SearchMachine machine(AudioLayout);
  machine.makeFile("1.mp3");
  withWindow(machine, [&](frmSearch& form) {
    SearchDrive(machine.forms(), machine.folder / "disk");
    SearchDrive(machine.forms(), machine.disk());
    CHECK(machine.drives.walked == std::vector<std::string>{machine.disk(), machine.disk()});
    CHECK(form.ListView1.SubItem(1, 3) == machine.disk());
  });
}

TEST_CASE("Five hundred folders within each other are walked to the last") {
  SearchMachine machine(AudioLayout);
  std::string deep;
  for (int depth = 0; depth < 500; ++depth) deep += "d/";
  machine.makeFile(deep + "end.mp3");
  withWindow(machine, [&](frmSearch& form) {
    CHECK(SearchDrive(machine.forms(), machine.disk()).folders == 500);
    CHECK(form.ListView1.SubItem(1, 3) == machine.disk(deep));
  });
}

}  // namespace trackloom
