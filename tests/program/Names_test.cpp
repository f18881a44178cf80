#include <catch2/catch.hpp>
#include <set>

#include "layout/frmFiles.h"
#include "layout/frmSave.h"
#include "program/RealMachine.h"
#include "runtime/Text.h"

namespace trackloom {

using fakes::contentOf;
using fakes::noise;
using fakes::outputOf;
using test::RealMachine;

namespace {

/// Names that a careless program trips over, without their extension.
const std::vector<std::string>& hostileNames() {
  static const std::vector<std::string> names{"\"quoted\", twice\"",
                                              "line\nbreak",
                                              "carriage\rreturn",
                                              "not \xFF\xFE utf8",
                                              "-rf --",
                                              "100%s%n%d",
                                              "back\\slash",
                                              "; rm -rf $HOME `x` | & *?[",
                                              " blanks around ",
                                              ".hidden",
                                              "caf\xC3\xA9 \xE2\x99\xAB \xF0\x9F\x8E\xB5",
                                              std::string(251, 'n')};
  return names;
}

std::vector<std::string> named(const std::string& extension) {
  std::vector<std::string> names;
  for (const std::string& name : hostileNames()) names.push_back(name + extension);
  return names;
}

/// The source paths of all rows.
std::set<std::string> pathsOf(const ListView& listing) {
  std::set<std::string> paths;
  for (int row = 1; row <= listing.Count(); ++row) paths.insert(listing.SubItem(row, 1) + listing.Item(row).Text);
  return paths;
}

/// A machine whose layout has a file of every hostile name.
class Hostile : public RealMachine {
 public:
  explicit Hostile(std::int16_t kind, bool dropped) {
    startQuietly();
    for (const std::string& name : named(kind == AudioLayout ? ".wav" : ".mp3"))
      files.push_back(kind == AudioLayout ? wavFile(name, 5) : mp3File(name, 3000 + name.size()));
    newLayout(kind);
    if (dropped)
      drop(files);
    else
      pick();
    CHECK(pathsOf(window().ListView1) == std::set<std::string>(files.begin(), files.end()));
    CHECK(desk.boxes.empty());
  }

  std::vector<std::string> files;

 private:
  void pick() {
    desk.expectForm<frmFiles>("frmFiles", [&](frmFiles& form) {
      form.FT1.choose(folder / "music");
      form.cmdCheckAll.click();
      form.cmdOK.click();
    });
    click("AddFiles");
  }
};

}  // namespace

TEST_CASE("Files of any name are picked and dropped, and go to the player as they are") {
  const bool dropped = GENERATE(false, true);
  Hostile machine(AudioLayout, dropped);
  ListView& listing = machine.window().ListView1;
  std::set<std::string> played;
  for (int row = 1; row <= listing.Count(); ++row) listing.doubleClick(row);
  for (const ShellOrder& order : machine.opener.orders) {
    CHECK(order.verb == "open");
    played.insert(order.file);
  }
  CHECK(played == std::set<std::string>(machine.files.begin(), machine.files.end()));
}

TEST_CASE("Audio files of any name are recorded with their sound") {
  Hostile machine(AudioLayout, true);
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  std::string expected;
  for (const std::string& name : named(".wav")) {
    if (!expected.empty()) expected += std::string(std::size_t{150} * 2352, '\0');
    expected += RealMachine::samplesOf(name, 5);
  }
  CHECK(contentOf(machine.finished(1) / "disc.bin") == expected);
}

TEST_CASE("MP3 files of any name are recorded with their bytes, and nothing else is") {
  Hostile machine(Mp3Layout, false);
  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  const std::string image = "'" + (machine.finished(1) / "disc.iso").string() + "'";
  const std::string listed = outputOf("isoinfo -J -f -i " + image);
  // The backslash makes a folder on the disc, which is listed too.
  CHECK(std::count(listed.begin(), listed.end(), '\n') == static_cast<long>(machine.files.size()) + 1);
  CHECK_THAT(listed, Catch::Contains("/back\n") && Catch::Contains("/back/slash.mp3\n"));
  CHECK_THAT(listed, Catch::Contains("/" + std::string(60, 'n') + ".mp3\n"));
  const std::string name = "100%s%n%d.mp3";
  CHECK(outputOf("isoinfo -J -x '/" + name + "' -i " + image) == noise(3000 + name.size(), 3000 + name.size()));
  CHECK_THAT(outputOf("xorriso -indev " + image + " -check_media --"), Catch::Contains("+ good"));
}

TEST_CASE("A layout of files of any name is saved byte by byte") {
  Hostile machine(AudioLayout, true);
  machine.desk.expectForm<frmSave>("frmSave", [](frmSave& form) {
    form.txtName.type("100% 'mine'");
    form.cmdOK.click();
  });
  machine.click("mnuFileSave");
  std::string expected = "\"Audio\"\r\n" + std::to_string(machine.files.size()) + "\r\n";
  expected += "\"" + machine.mod().LayoutTotalText + "\"\r\n";
  for (const std::string& path : machine.files) expected += "\"" + path + "\"\r\n";
  CHECK(machine.folder.read("Layouts/100% 'mine'.mixl") == expected);
}

}  // namespace trackloom
