// How long it takes to write a data disc of 630 MB onto a virtual disc, beside cat that puts the same files into one.
// Both begin with the files in the page cache and end with everything on the disk.

#include <algorithm>
#include <string>

#include "WriterBench.h"

namespace trackloom::bench {

namespace {

constexpr int fileCount = 126;

void queueFiles(const Workplace& place, CDWriterXP& writer) {
  writer.SetDiscMode(DataBlocks);
  for (int file = 0; file < fileCount; ++file)
    writer.AddDataFile(DiscPath("\\Music\\" + std::to_string(file) + ".mp3"), place.file(file));
}

/// The disk's moods are left out by taking the best of a few turns, in which both alternate.
void writeData() {
  const Workplace place("trackloom-bench-data");
  makeFiles(place, fileCount);
  double ours = 1e9;
  double theirs = 1e9;
  for (int turn = 0; turn < 4; ++turn) {
    ours = std::min(ours, secondsOf([&] { place.writeDisc([&](CDWriterXP& writer) { queueFiles(place, writer); }); }));
    place.clearShelf();
    theirs = std::min(
        theirs, secondsOf([&] { run("cat " + place.folder() + "/files/* > " + place.folder() + "/theirs && sync"); }));
    run("rm " + place.folder() + "/theirs && sync");
  }
  row("Writing 630 MB of files onto a virtual data disc", ours, "s");
  row("Putting them into one file with cat, and sync", theirs, "s");
  row("Ratio of the two", ours / theirs, "x");
}

}  // namespace

}  // namespace trackloom::bench

int main() {
  trackloom::bench::writeData();
}
