// How long it takes to rip five tracks to MP3, of an album's lengths and of equal ones, beside the same engine that
// copies them to WAV with lame behind it, one after the other; and to WAV, beside dd that copies the sectors. The disc
// is a virtual one in a temporary folder.

#include <sys/resource.h>

#include <array>
#include <string>

#include "WriterBench.h"
#include "engines/encoder/LameEncoders.h"
#include "engines/ripper/DiscRippers.h"
#include "engines/ripper/RecorderDrive.h"

namespace trackloom::bench {

namespace {

/// The lengths of five songs, in seconds. A track is encoded by one thread, so on two cores the first take at least
/// 0.50 of what one core needs, and equal ones 0.60.
using Songs = std::array<int, 5>;
constexpr Songs album{190, 265, 170, 305, 220};
constexpr Songs equal{230, 230, 230, 230, 230};
constexpr int kbps = 192;
constexpr int blocksASecond = 75;

/// Runs a rip's events on the thread that waits for its end.
class RipLoop : public Loop, public CDRipperEvents {
 public:
  void RipStatus(std::int32_t code, std::int32_t) override {
    if (code == RipProgress) return;
    std::fprintf(stderr, "the ripper bench: the rip tells of %d\n", code);
    std::exit(1);
  }
  void RipFinished() override { OnOperationComplete(); }
};

std::string disc(const Workplace& place) {
  return place.folder() + "/Virtual Recorder/tray/Disc 0001/";
}

void makeDisc(const Workplace& place, const Songs& songs) {
  int seconds = 0;
  std::string ini = "[disc]\nmedium = CD-R\nstatus = closed\nblocks = 359849\n[session 1]\nstatus = closed\n";
  for (std::size_t song = 0; song < songs.size(); ++song) {
    ini += "[track " + std::to_string(song + 1) +
           "]\nsession = 1\nkind = audio\npregap = 0\nstart = " + std::to_string(seconds * blocksASecond) +
           "\nlength = " + std::to_string(songs[song] * blocksASecond) + "\n";
    seconds += songs[song];
  }
  std::ofstream(disc(place) + "disc.ini") << ini;
  run("ffmpeg -nostdin -y -f lavfi -i anoisesrc=color=pink:amplitude=0.5:sample_rate=44100:seed=1:duration=" +
      std::to_string(seconds) + " -ac 2 -f s16le '" + disc(place) + "disc.bin'");
}

std::string file(const Workplace& place, std::size_t song, const char* extension) {
  return place.folder() + "/files/" + std::to_string(song + 1) + extension;
}

void rip(const Workplace& place, const char* extension, Mp3Stream* encoder) {
  RipLoop loop;
  const auto recorders = engines::virtualrecorder::findVirtualRecorders(HostPath(place.folder()));
  const auto drive = std::make_shared<engines::ripper::RecorderDrive>(recorders.front());
  engines::ripper::DiscRippers rippers(engines::ReadingDrives{drive}, loop, loop, {HostPath(place.folder())});
  const auto ripper = rippers.create();
  ripper->listen(&loop);
  ripper->SelectRipDrive(0);
  ripper->ReadTOC();
  if (encoder != nullptr) ripper->AttachEncoder(*encoder);
  ripper->SetUseEncoder(encoder != nullptr);
  for (std::size_t song = 0; song < album.size(); ++song)
    ripper->QueueTrack(static_cast<std::int16_t>(song + 1), HostPath(file(place, song, extension)), 1);
  if (!ripper->StartRip()) std::exit(1);
  loop.runToTheEnd();
}

void lameBehindCopy(const Workplace& place) {
  rip(place, ".wav", nullptr);
  for (std::size_t song = 0; song < album.size(); ++song)
    run("lame --quiet -b " + std::to_string(kbps) + " '" + file(place, song, ".wav") + "' '" +
        file(place, song, ".lame.mp3") + "'");
}

/// The machine's moods are left out by taking the best of a few turns, in which both alternate.
void ripToMp3(const Workplace& place, const std::string& what) {
  const auto encoder = engines::encoder::LameEncoders().create();
  encoder->SetBitRate(kbps);
  Cost ours;
  Cost theirs;
  for (int turn = 0; turn < 3; ++turn) {
    ours.measure([&] { rip(place, ".mp3", &encoder->Encoder()); });
    theirs.measure([&] { lameBehindCopy(place); });
  }
  compare("Ripping five tracks of " + what + " to MP3", ours, "The same to WAV, then lame, one after the other",
          theirs);
}

void ripToWav(const Workplace& place) {
  Cost ours;
  Cost theirs;
  for (int turn = 0; turn < 5; ++turn) {
    ours.measure([&] { rip(place, ".wav", nullptr); });
    theirs.measure(
        [&] { run("dd if='" + disc(place) + "disc.bin' of='" + place.folder() + "/copy' bs=1M conv=fsync"); });
  }
  compare("Ripping them to WAV, on the medium", ours, "Copying their sectors with dd, on the medium", theirs);
}

void ripTracks() {
  const Workplace place("trackloom-bench-ripper");
  makeDisc(place, album);
  ripToMp3(place, "an album's lengths");
  ripToWav(place);
  makeDisc(place, equal);
  ripToMp3(place, "equal lengths");
  rusage used{};
  ::getrusage(RUSAGE_SELF, &used);
  row("Most memory while ripping", static_cast<double>(used.ru_maxrss) / 1024, "MiB");
}

}  // namespace

}  // namespace trackloom::bench

int main() {
  trackloom::bench::ripTracks();
}
