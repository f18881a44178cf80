#include "engines/audio/WavSource.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace trackloom::engines::audio {

namespace {

struct Closer {
  void operator()(SNDFILE* sound) const { sf_close(sound); }
};

/// A WAV file open in libsndfile, known to be of a kind that fits on a disc.
struct Wav {
  std::unique_ptr<SNDFILE, Closer> sound;
  SF_INFO info{};

  bool isFloat() const { return (info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_FLOAT; }
};

bool fitsDisc(const SF_INFO& info) {
  const int container = info.format & SF_FORMAT_TYPEMASK;
  const int encoding = info.format & SF_FORMAT_SUBMASK;
  const bool wav = container == SF_FORMAT_WAV || container == SF_FORMAT_WAVEX;
  const bool plain = encoding == SF_FORMAT_PCM_16 || encoding == SF_FORMAT_PCM_24 || encoding == SF_FORMAT_PCM_32 ||
                     encoding == SF_FORMAT_FLOAT;
  return wav && plain && info.samplerate == 44'100 && info.channels == 2 && info.frames > 0;
}

std::optional<Wav> openSound(const OpenedFile& file) {
  Wav wav;
  wav.sound.reset(sf_open_fd(file.rewoundDescriptor(), SFM_READ, &wav.info, SF_FALSE));
  if (!wav.sound || !fitsDisc(wav.info) || wav.info.frames > file.size()) return std::nullopt;
  return wav;
}

// libsndfile gives every integer sample in the high bits of 32. Halves go up, here and for floats.
std::int16_t rounded(int sample) {
  constexpr std::int64_t half = 0x8000, most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min((sample + half) >> 16, most));
}

// 32768 is the scale by which a 16-bit sample, made float by dividing, comes back unchanged; 1.0 itself is clipped to
// 32767. What is not a number is silence.
std::int16_t rounded(float sample) {
  if (std::isnan(sample)) return 0;
  return static_cast<std::int16_t>(std::clamp(std::floor(double{sample} * 32768 + 0.5), -32768.0, 32767.0));
}

sf_count_t readFrames(SNDFILE* sound, std::span<int> samples) {
  return sf_readf_int(sound, samples.data(), static_cast<sf_count_t>(samples.size() / ChannelCount));
}

sf_count_t readFrames(SNDFILE* sound, std::span<float> samples) {
  return sf_readf_float(sound, samples.data(), static_cast<sf_count_t>(samples.size() / ChannelCount));
}

class WavSource : public FrameSource {
 public:
  WavSource(OpenedFile file, Wav wav) : file_(std::move(file)), wav_(std::move(wav)), left_(wav_.info.frames) {}

  std::size_t read(std::span<std::int16_t> samples) override {
    return wav_.isFloat() ? convert(floats_, samples) : convert(integers_, samples);
  }

 private:
  template <class Sample>
  std::size_t convert(std::vector<Sample>& wide, std::span<std::int16_t> samples) {
    wide.resize(samples.size());
    const sf_count_t frames = readFrames(wav_.sound.get(), std::span<Sample>(wide));
    if (const int error = sf_error(wav_.sound.get()); error != SF_ERR_NO_ERROR)
      throw file_.failure(sf_error_number(error));
    left_ -= frames;
    if (frames == 0 && left_ > 0) throw file_.failure("it became shorter while it was read");
    const std::size_t count = static_cast<std::size_t>(frames) * ChannelCount;
    std::transform(wide.begin(), wide.begin() + static_cast<std::ptrdiff_t>(count), samples.begin(),
                   [](Sample sample) { return rounded(sample); });
    return count;
  }

  OpenedFile file_;
  Wav wav_;
  sf_count_t left_;  // frames
  std::vector<int> integers_;
  std::vector<float> floats_;
};

}  // namespace

std::optional<std::int64_t> wavFrames(const OpenedFile& file) {
  const auto wav = openSound(file);
  if (!wav) return std::nullopt;
  return wav->info.frames;
}

std::unique_ptr<FrameSource> openWav(OpenedFile file) {
  auto wav = openSound(file);
  if (!wav) throw file.failure("it is not a WAV file of 44.1 kHz stereo sound");
  return std::make_unique<WavSource>(std::move(file), std::move(*wav));
}

}  // namespace trackloom::engines::audio
