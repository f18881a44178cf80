// How long it takes to know the length of an audio file, and to decode one, beside ffmpeg on the same file.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "engines/audio/AudioFiles.h"

namespace trackloom {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Minutes = 4;

template <class Work>
double secondsOf(int times, const Work& work) {
  const auto start = Clock::now();
  for (int i = 0; i < times; ++i) work();
  return std::chrono::duration<double>(Clock::now() - start).count() / times;
}

void row(const std::string& name, double figure, const char* unit) {
  std::printf("%s\t%.2f\t%s\n", name.c_str(), figure, unit);
}

void run(const std::string& command) {
  if (std::system(("{ " + command + "; } > /dev/null 2>&1").c_str()) == 0) return;
  std::fprintf(stderr, "bench-audio: this failed: %s\n", command.c_str());
  std::exit(1);
}

/// The same minutes of noise as WAV, and as MP3 with and without a header that tells the length.
class Music {
 public:
  Music() {
    run("mkdir -p " + folder_ + " && cd " + folder_ + " && sox -n -r 44100 -c 2 -b 16 sound.wav synth " +
        std::to_string(Minutes) + ":00 pinknoise vol 0.5");
    run("cd " + folder_ + " && lame --quiet -V 2 sound.wav header.mp3 && lame --quiet -t -V 2 sound.wav bare.mp3");
  }
  ~Music() { std::filesystem::remove_all(folder_); }
  Music(const Music&) = delete;
  Music& operator=(const Music&) = delete;

  HostPath at(const std::string& name) const { return HostPath(folder_ + "/" + name); }

 private:
  std::string folder_ = std::filesystem::temp_directory_path() / "trackloom-bench-audio";
};

void benchLengths(const Music& music) {
  for (const std::string name : {"header.mp3", "bare.mp3", "sound.wav"}) {
    const HostPath path = music.at(name);
    const std::string what = "Length of " + std::to_string(Minutes) + " minutes, " + name;
    engines::audio::AudioFiles known;
    known.blocks(path);
    row(what + ", asked again", secondsOf(10'000, [&] { known.blocks(path); }) * 1e6, "us");
    row(what + ", asked first", secondsOf(100, [&] { engines::audio::AudioFiles().blocks(path); }) * 1e6, "us");
  }
}

void decode(const HostPath& path) {
  std::vector<std::byte> sectors(std::size_t{32} * 2352);
  const auto stream = engines::audio::AudioFiles().open(path);
  while (stream->read(sectors) > 0) {
  }
}

void benchDecoding(const Music& music) {
  for (const std::string name : {"header.mp3", "sound.wav"}) {
    const HostPath path = music.at(name);
    const double ours = secondsOf(5, [&] { decode(path); });
    const double theirs = secondsOf(5, [&] { run("ffmpeg -nostdin -y -i " + path.text + " -f s16le /dev/null"); });
    const std::string what = "Decoding " + std::to_string(Minutes) + " minutes, " + name;
    row(what, ours * 1e3, "ms");
    row(what + ", ffmpeg", theirs * 1e3, "ms");
    row(what + ", ours to ffmpeg's", ours / theirs, "times");
  }
}

}  // namespace

}  // namespace trackloom

int main() {
  const trackloom::Music music;
  trackloom::benchLengths(music);
  trackloom::benchDecoding(music);
}
