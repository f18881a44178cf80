// How long it takes to make an image file of 700 MB of files, beside cat that puts the same files into one. Both begin
// with the files in the page cache and end with everything on the disk.

#include <sys/resource.h>

#include <string>

#include "WriterBench.h"

namespace trackloom::bench {

namespace {

constexpr int fileCount = 140;

void makeImage(const Workplace& place) {
  Loop loop;
  engines::writer::DiscWriters writers({}, std::make_shared<engines::audio::AudioFiles>(), loop, loop,
                                       {150, HostPath(place.folder() + "/scratch")});
  const auto writer = writers.create(loop);
  for (int file = 0; file < fileCount; ++file)
    writer->AddDataFile(DiscPath("\\Music\\" + std::to_string(file) + ".mp3"), place.file(file));
  writer->CreateIsoImage(HostPath(place.folder() + "/ours.iso"));
}

/// The disk's moods are left out by taking the best of a few turns, in which both alternate.
void makeImages() {
  const Workplace place("trackloom-bench-image");
  makeFiles(place, fileCount);
  Cost ours;
  Cost theirs;
  for (int turn = 0; turn < 4; ++turn) {
    ours.measure([&] { makeImage(place); });
    run("rm " + place.folder() + "/ours.iso && sync");
    theirs.measure([&] {
      run("cat " + place.folder() + "/files/* > " + place.folder() + "/theirs && sync " + place.folder() + "/theirs");
    });
    run("rm " + place.folder() + "/theirs && sync");
  }
  rusage used{};
  ::getrusage(RUSAGE_SELF, &used);
  compare("Making an image file of 700 MB of files", ours, "Putting them into one file with cat, and sync", theirs);
  row("Most memory while making it", static_cast<double>(used.ru_maxrss) / 1024, "MiB");
}

}  // namespace

}  // namespace trackloom::bench

int main() {
  trackloom::bench::makeImages();
}
