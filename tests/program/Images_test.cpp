#include <map>

#include "program/RealMachine.h"

namespace trackloom {

using Catch::Contains;
using fakes::contentOf;
using fakes::noise;
using fakes::outputOf;
using test::RealMachine;
namespace fs = std::filesystem;

namespace {

/// A machine with an MP3 layout of two files, the second in a folder.
class Images : public RealMachine {
 public:
  Images() {
    startQuietly();
    newLayout(Mp3Layout);
    drop({mp3File("one.mp3", 5000), mp3File("two.mp3", 70000)});
    window().ListView1.SetSubItem(2, 3, "\\Rock");
  }

  /// Makes an image; the titles of the boxes that come, in their order.
  std::vector<std::string> makeImage(const std::string& target, const std::vector<std::string>& boxes) {
    const std::size_t before = desk.boxes.size();
    desk.expectForm<frmISO>("frmISO", [&](frmISO& form) {
      desk.expectFile(HostPath(target));
      form.cmdBrowse.click();
      form.txtLabel.type("For the car");
      for (const std::string& box : boxes) desk.expectBox(box, BoxAnswer::Ok);
      form.cmdOK.click();
    });
    click("mnuActionsCreate");
    CHECK(desk.finished());
    std::vector<std::string> titles;
    for (std::size_t box = before; box < desk.boxes.size(); ++box) titles.push_back(desk.boxes[box].title);
    return titles;
  }
  void writeImage(const std::string& image) {
    desk.expectFile(HostPath(image));
    desk.expectBox("Write ISO Image", BoxAnswer::Ok);
    click("mnuFileWrite");
  }
  /// The files that xorriso finds in an image, with their bytes.
  std::map<std::string, std::string> filesIn(const fs::path& image) const {
    const fs::path out = folder / "extracted";
    fs::remove_all(out);
    outputOf("xorriso -osirrox on -indev '" + image.string() + "' -extract / '" + out.string() + "'");
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(out))
      if (entry.is_regular_file()) files[fs::relative(entry.path(), out).string()] = contentOf(entry.path());
    return files;
  }
  /// What stands in a folder of the machine.
  std::vector<std::string> namesIn(const std::string& place) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder / place)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
};

const std::vector<std::string> Complete{"Creation Complete"};
const std::vector<std::string> Failed{"Write Error", "Creation Complete"};

}  // namespace

TEST_CASE("An image made of a layout has its files and its label, and lies on a disc byte for byte") {
  Images machine;
  const std::string image = machine.folder / "car.iso";
  machine.makeImage(image, Complete);
  const std::map<std::string, std::string> wanted{{"one.mp3", noise(5000, 5000)},
                                                  {"Rock/two.mp3", noise(70000, 70000)}};
  CHECK((machine.filesIn(image) == wanted));
  CHECK_THAT(outputOf("isoinfo -d -i '" + image + "'"), Contains("Volume id: For the car\n"));
  CHECK_FALSE(fs::exists(machine.finished(1)));

  machine.writeImage(image);
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK((contentOf(machine.finished(1) / "disc.iso") == contentOf(image)));
  CHECK_THAT(contentOf(machine.finished(1) / "disc.ini"), Contains("status = closed"));
}

TEST_CASE("A source that goes while the dialog stands is told, and the image has the others") {
  Images machine;
  fs::remove(machine.folder / "music/one.mp3");
  const std::string image = machine.folder / "car.iso";
  machine.makeImage(image, {"Missing Track", "Creation Complete"});
  CHECK((machine.filesIn(image) == std::map<std::string, std::string>{{"Rock/two.mp3", noise(70000, 70000)}}));
}

TEST_CASE("An image takes the place of an older file only when it is whole") {
  Images machine;
  machine.folder.write("out/car.iso", "an older one");
  fs::remove(machine.folder / "music/one.mp3");
  fs::create_directory(machine.folder / "music/one.mp3");
  const std::string image = machine.folder / "out/car.iso";
  machine.makeImage(image, {"Missing Track", "Write Error", "Creation Complete"});
  CHECK(contentOf(image) == "an older one");
  CHECK(machine.namesIn("out") == std::vector<std::string>{"car.iso"});
  fs::remove(machine.folder / "music/one.mp3");
  machine.mp3File("one.mp3", 5000);
  machine.makeImage(image, Complete);
  CHECK(machine.filesIn(image).size() == 2);
  CHECK(machine.namesIn("out") == std::vector<std::string>{"car.iso"});
}

TEST_CASE("No image takes the place of one of its own files, under whatever name") {
  const bool link = GENERATE(false, true);
  Images machine;
  const std::string source = machine.folder / "music/one.mp3";
  const std::string target = link ? machine.folder / "linked.iso" : source;
  if (link) fs::create_symlink(source, target);
  machine.makeImage(target, Failed);
  CHECK((contentOf(source) == noise(5000, 5000)));
}

TEST_CASE("An image that cannot be put where it is to go is told, and nothing is left there") {
  Images machine;
  fs::create_directory(machine.folder / "out");
  fs::create_directory(machine.folder / "out/folder.iso");
  machine.makeImage(machine.folder / "out/folder.iso", Failed);
  machine.makeImage("/proc/car.iso", Failed);
  CHECK(machine.namesIn("out") == std::vector<std::string>{"folder.iso"});
}

TEST_CASE("A file that is no image for this disc is refused before the first block") {
  Images machine;
  machine.configure("refuseEject = yes\n");
  machine.folder.write("empty.iso", "");
  machine.folder.write("large.iso", std::string(101 * 2048, 'x'));
  machine.describe("[disc]\nmedium = CD-R\nstatus = blank\nblocks = 100\n");
  for (const char* name : {"empty.iso", "large.iso", "music", "nowhere.iso"}) {
    INFO(name);
    machine.writeImage(machine.folder / name);
    const std::string words = machine.errorOfWrite();
    CHECK_THAT(words, Catch::StartsWith(name == std::string("large.iso") ? " A device error" : " A file error"));
    CHECK_FALSE(fs::exists(machine.disc() / "disc.iso"));
  }
}

TEST_CASE("Behind a test alone an image is tested only, and an erase and a close are real") {
  Images machine;
  machine.configure("refuseEject = yes\n");
  machine.describe("[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 1000\n");
  machine.record([](frmOptions& form) { form.optTestOnly.click(); });
  machine.expectDone();
  REQUIRE(machine.finishes());
  const std::string image = machine.folder / "car.iso";
  machine.makeImage(image, Complete);
  machine.writeImage(image);
  machine.expectDone();
  REQUIRE(machine.finishes());
  CHECK_FALSE(fs::exists(machine.disc() / "disc.iso"));

  machine.record();
  machine.expectDone();
  REQUIRE(machine.finishes());
  REQUIRE(fs::exists(machine.disc() / "disc.iso"));
  machine.window().CDR1->SetTestMode(true);
  machine.desk.expectForm<frmErase>("frmErase", [&](frmErase& form) {
    form.cmdOK.click();
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finishes();
  });
  machine.click("mnuToolsErase");
  CHECK_THAT(contentOf(machine.disc() / "disc.ini"), Contains("status = blank"));
}

}  // namespace trackloom
