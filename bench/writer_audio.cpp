// How long it takes to write a disc of 70 minutes from MP3 files, beside ffmpeg that only decodes the same files, and
// how much memory that takes. The recorder is a virtual one in a temporary folder.

#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "WriterBench.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"

namespace trackloom::bench {

namespace {

constexpr int trackCount = 14;
constexpr int minutesOfTrack = 5;

/// Fourteen tracks of five minutes each, all different.
class Layout {
 public:
  Layout() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    for (int track = 0; track < trackCount; ++track)
      run("ffmpeg -nostdin -f lavfi -i anoisesrc=color=pink:amplitude=0.5:sample_rate=44100:seed=" +
          std::to_string(track) + ":duration=" + std::to_string(minutesOfTrack * 60) +
          " -ac 2 -codec:a libmp3lame -b:a 192k " + at(track).text);
    createVirtualRecorder(HostPath(folder_ + "/Virtual Recorder"));
  }
  ~Layout() { std::filesystem::remove_all(folder_); }
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

  const std::string& folder() const { return folder_; }
  HostPath at(int track) const { return HostPath(folder_ + "/" + std::to_string(track) + ".mp3"); }

 private:
  std::string folder_ = std::filesystem::temp_directory_path() / "trackloom-bench-writer";
};

void writeDisc(const Layout& layout) {
  Loop loop;
  DiscWriters writers(findVirtualRecorders(HostPath(layout.folder())), std::make_shared<AudioFiles>(), loop,
                      {150, HostPath(layout.folder() + "/scratch")});
  const auto writer = writers.create(loop);
  writer->SelectDrive(0);
  writer->SetCloseDisc(true);
  for (int track = 0; track < trackCount; ++track)
    writer->AddAudioTrack(layout.at(track), static_cast<std::int16_t>(track + 1));
  writer->StartWrite();
  loop.runToTheEnd();
  writer->EjectDisc();
}

void decodeWithFfmpeg(const Layout& layout) {
  for (int track = 0; track < trackCount; ++track)
    run("ffmpeg -nostdin -y -i " + layout.at(track).text + " -f s16le /dev/null");
}

/// The machine's moods are left out by taking the best of a few turns, in which both alternate.
void writeAudio() {
  const Layout layout;
  double ours = 1e9;
  double theirs = 1e9;
  for (int turn = 0; turn < 4; ++turn) {
    ours = std::min(ours, secondsOf([&] { writeDisc(layout); }));
    run("rm -r '" + layout.folder() + "/Virtual Recorder/shelf/'* && sync");
    theirs = std::min(theirs, secondsOf([&] { decodeWithFfmpeg(layout); }));
  }
  rusage used{};
  ::getrusage(RUSAGE_SELF, &used);
  row("Writing 70 minutes of MP3 files onto a virtual disc", ours, "s");
  row("Decoding the same files with ffmpeg", theirs, "s");
  row("Ratio of the two", ours / theirs, "x");
  row("Most memory while writing", static_cast<double>(used.ru_maxrss) / 1024, "MiB");
}

}  // namespace

}  // namespace trackloom::bench

int main() {
  trackloom::bench::writeAudio();
}
