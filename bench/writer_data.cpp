// How long it takes to write a data disc of 630 MB onto a virtual disc, beside genisoimage that makes an image file of
// the same files. Both begin with the files in the page cache and end with the image on the disk.

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "WriterBench.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"

namespace trackloom::bench {

namespace {

constexpr int fileCount = 126;
constexpr std::size_t fileBytes = 5'000'000;

class Layout {
 public:
  Layout() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_ + "/files");
    std::mt19937_64 random(1);
    std::string bytes(fileBytes, '\0');
    for (int file = 0; file < fileCount; ++file) {
      for (char& byte : bytes) byte = static_cast<char>(random());
      std::ofstream(at(file).text, std::ios::binary) << bytes;
    }
    createVirtualRecorder(HostPath(folder_ + "/Virtual Recorder"));
    ::sync();
  }
  ~Layout() { std::filesystem::remove_all(folder_); }
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

  const std::string& folder() const { return folder_; }
  HostPath at(int file) const { return HostPath(folder_ + "/files/" + std::to_string(file) + ".mp3"); }

 private:
  std::string folder_ = std::filesystem::temp_directory_path() / "trackloom-bench-data";
};

void writeDisc(const Layout& layout) {
  Loop loop;
  DiscWriters writers(findVirtualRecorders(HostPath(layout.folder())), std::make_shared<AudioFiles>(), loop,
                      {150, HostPath(layout.folder() + "/scratch")});
  const auto writer = writers.create(loop);
  writer->SelectDrive(0);
  writer->SetDiscMode(DataBlocks);
  writer->SetCloseDisc(true);
  for (int file = 0; file < fileCount; ++file)
    writer->AddDataFile(DiscPath("\\Music\\" + std::to_string(file) + ".mp3"), layout.at(file));
  writer->StartWrite();
  loop.runToTheEnd();
  ::sync();
  writer->EjectDisc();
}

/// The disk's moods are left out by taking the best of a few turns, in which both alternate.
void writeData() {
  const Layout layout;
  double ours = 1e9;
  double theirs = 1e9;
  for (int turn = 0; turn < 4; ++turn) {
    ours = std::min(ours, secondsOf([&] { writeDisc(layout); }));
    run("rm -r '" + layout.folder() + "/Virtual Recorder/shelf/'* && sync");
    theirs =
        std::min(theirs, secondsOf([&] {
                   run("genisoimage -J -o " + layout.folder() + "/their.iso " + layout.folder() + "/files && sync");
                 }));
    run("rm " + layout.folder() + "/their.iso && sync");
  }
  row("Writing 630 MB of files onto a virtual data disc", ours, "s");
  row("Making an image file of them with genisoimage", theirs, "s");
  row("Ratio of the two", ours / theirs, "x");
}

}  // namespace

}  // namespace trackloom::bench

int main() {
  trackloom::bench::writeData();
}
