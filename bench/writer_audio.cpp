// How long it takes to write a disc of 70 minutes from MP3 files, beside ffmpeg that only decodes the same files, and
// how much memory that takes. The recorder is a virtual one in a temporary folder.

#include <sys/resource.h>

#include <string>

#include "WriterBench.h"

namespace trackloom::bench {

namespace {

constexpr int trackCount = 14;
constexpr int minutesOfTrack = 5;

/// Fourteen tracks of five minutes each, all different.
void makeTracks(const Workplace& place) {
  for (int track = 0; track < trackCount; ++track)
    run("ffmpeg -nostdin -f lavfi -i anoisesrc=color=pink:amplitude=0.5:sample_rate=44100:seed=" +
        std::to_string(track) + ":duration=" + std::to_string(minutesOfTrack * 60) +
        " -ac 2 -codec:a libmp3lame -b:a 192k " + place.file(track).text);
}

void queueTracks(const Workplace& place, CDWriterXP& writer) {
  for (int track = 0; track < trackCount; ++track)
    writer.AddAudioTrack(place.file(track), static_cast<std::int16_t>(track + 1));
}

void decodeWithFfmpeg(const Workplace& place) {
  for (int track = 0; track < trackCount; ++track)
    run("ffmpeg -nostdin -y -i " + place.file(track).text + " -f s16le /dev/null");
}

/// The machine's moods are left out by taking the best of a few turns, in which both alternate.
void writeAudio() {
  const Workplace place("trackloom-bench-audio");
  makeTracks(place);
  Cost ours;
  Cost theirs;
  for (int turn = 0; turn < 4; ++turn) {
    ours.measure([&] { place.writeDisc([&](CDWriterXP& writer) { queueTracks(place, writer); }); });
    place.clearShelf();
    theirs.measure([&] { decodeWithFfmpeg(place); });
  }
  rusage used{};
  ::getrusage(RUSAGE_SELF, &used);
  compare("Writing 70 minutes of MP3 files onto a virtual disc", ours, "Decoding the same files with ffmpeg", theirs);
  row("Most memory while writing", static_cast<double>(used.ru_maxrss) / 1024, "MiB");
}

}  // namespace

}  // namespace trackloom::bench

int main() {
  trackloom::bench::writeAudio();
}
