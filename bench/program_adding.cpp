#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "YieldingDesk.h"
#include "engines/writer/DiscWriters.h"
#include "engines/writer/FakeRecorder.h"
#include "fakes/FakeDrives.h"
#include "fakes/FakeFolderListing.h"
#include "fakes/FakePatience.h"
#include "fakes/FakePrintControls.h"
#include "fakes/FakeRipping.h"
#include "fakes/FakeWorld.h"
#include "fakes/TempFolder.h"
#include "shell/Program.h"

namespace trackloom::bench {

namespace {

double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Never runs what is posted: nothing here writes.
class NoEvents final : public EventQueue {
 public:
  void post(std::function<void()>) override {}
};

/// Copies of one MP3 file without a length header, which is the slow kind to measure.
std::vector<std::string> makeFiles(const fakes::TempFolder& folder, int count) {
  const std::string original = folder / "original.mp3";
  const std::string command =
      "ffmpeg -loglevel error -f lavfi -i sine=440:duration=20 -ac 2 -ar 44100 -b:a 192k "
      "-write_xing 0 -y '" +
      original + "'";
  if (std::system(command.c_str()) != 0) std::exit(1);
  std::vector<std::string> paths;
  for (int i = 0; i < count; ++i) {
    paths.push_back(folder / (std::to_string(i) + ".mp3"));
    std::filesystem::copy_file(original, paths.back());
  }
  return paths;
}

/// Seconds that the program takes to add the files to an MP3 layout, from drop to meter.
double addingTime(const std::vector<std::string>& files) {
  fakes::TempFolder folder;
  folder.write("NoShow.dat", "");
  fuzz::YieldingDesk desk;
  fakes::FakePump pump;
  fakes::FakeProcess process;
  process.folder = folder.path();
  fakes::FakeOpener opener;
  fakes::FakeHelp help;
  fakes::FakePrintControls prints;
  fakes::FakeRipping ripping;
  fakes::FakeCommonControls commonControls;
  fakes::FakeRegistry registry;
  fakes::FakeFileVersions fileVersions;
  fakes::FakeFolderListing folders;
  fakes::FakeDrives drives;
  NoEvents events;
  fakes::FakePatience patience;
  engines::writer::DiscWriters writers({std::make_shared<engines::writer::FakeRecorder>()},
                                       std::make_shared<engines::audio::AudioFiles>(), events, patience, {});
  Program program(desk, {desk, desk, folders, drives, pump, process, writers, opener, help, prints, ripping.rippers,
                         ripping.encoders, ripping.databases, commonControls, registry, fileVersions, Separators{}});
  program.start();
  program.forms().shell.frmOpen->Timer1.tick();
  program.session().frmListing().activated();
  program.session().mod.LayoutType = Mp3Layout;
  program.session().mod.LayoutOpen = true;
  ListView& listing = program.session().frmListing().ListView1;
  listing.Enabled = true;
  program.session().frmListing().Progress1.Maximum = 2000000000;
  const double seconds = secondsOf([&] { listing.dropFiles(files); });
  if (listing.Count() != static_cast<int>(files.size())) std::exit(1);
  return seconds;
}

double readingTime(const std::vector<std::string>& files) {
  engines::audio::AudioFiles audio;
  return secondsOf([&] {
    for (const std::string& file : files) audio.blocks(HostPath(file));
  });
}

void row(const char* name, double figure, const char* unit) {
  std::printf("%s\t%.2f\t%s\n", name, figure, unit);
}

}  // namespace

}  // namespace trackloom::bench

int main() {
  using namespace trackloom;
  fakes::TempFolder folder;
  const std::vector<std::string> files = bench::makeFiles(folder, 2000);
  const std::vector<std::string> half(files.begin(), files.begin() + 1000);
  bench::readingTime(files);
  const double thousand = bench::addingTime(half);
  bench::row("Adding 1,000 MP3 files without a length header", thousand * 1000, "ms");
  bench::row("Adding 2,000 files against 1,000", bench::addingTime(files) / thousand, "x");
  bench::row("Adding 1,000 files against only measuring them", thousand / bench::readingTime(half), "x");
  return 0;
}
