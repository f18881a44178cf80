#include "engines/audio/WavSource.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace trackloom::engines::audio {

namespace {

struct Closer {
  void operator()(SNDFILE* sound) const { sf_close(sound); }
};

/// A reading as the file that libsndfile sees. Remembers the error that ended it, which the library does not tell.
class Window {
 public:
  explicit Window(SourceReading& reading) : reading_(reading) {}

  void throwFailure() const {
    if (failure_) throw *failure_;
  }

  static sf_count_t size(void* window) noexcept { return static_cast<Window*>(window)->reading_.size(); }
  static sf_count_t position(void* window) noexcept { return static_cast<Window*>(window)->position_; }
  static sf_count_t seek(sf_count_t offset, int whence, void* window) noexcept {
    Window& self = *static_cast<Window*>(window);
    const sf_count_t base = whence == SEEK_CUR ? self.position_ : whence == SEEK_END ? self.reading_.size() : 0;
    sf_count_t position{};
    if (__builtin_add_overflow(base, offset, &position) || position < 0) return -1;
    return self.position_ = position;
  }
  static sf_count_t read(void* buffer, sf_count_t size, void* window) noexcept {
    Window& self = *static_cast<Window*>(window);
    return self.read(std::span(static_cast<std::uint8_t*>(buffer), static_cast<std::size_t>(size)));
  }
  static sf_count_t write(const void* /*bytes*/, sf_count_t /*size*/, void* /*window*/) noexcept { return 0; }

 private:
  sf_count_t read(std::span<std::uint8_t> bytes) noexcept {
    try {
      const auto count = static_cast<sf_count_t>(reading_.readAt(position_, bytes));
      position_ += count;
      return count;
    } catch (const EngineError& error) {
      failure_ = error;
      return 0;
    }
  }

  SourceReading& reading_;
  sf_count_t position_ = 0;  // bytes
  std::optional<EngineError> failure_;
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

std::optional<Wav> openSound(Window& window) {
  SF_VIRTUAL_IO calls{.get_filelen = Window::size,
                      .seek = Window::seek,
                      .read = Window::read,
                      .write = Window::write,
                      .tell = Window::position};
  Wav wav;
  wav.sound.reset(sf_open_virtual(&calls, SFM_READ, &wav.info, &window));
  window.throwFailure();
  if (!wav.sound || !fitsDisc(wav.info)) return std::nullopt;
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
  explicit WavSource(std::unique_ptr<SourceReading> reading) : reading_(std::move(reading)), window_(*reading_) {
    auto wav = openSound(window_);
    if (!wav) throw reading_->changed();
    wav_ = std::move(*wav);
    left_ = wav_.info.frames;
  }

  void read(std::span<std::int16_t> samples) override {
    left_ -= static_cast<sf_count_t>(samples.size() / ChannelCount);
    if (wav_.isFloat())
      convert(floats_, samples);
    else
      convert(integers_, samples);
  }

  void finish() override {
    if (left_ != 0) throw reading_->changed();
    reading_->requireUnchanged();
  }

 private:
  template <class Sample>
  void convert(std::vector<Sample>& wide, std::span<std::int16_t> samples) {
    wide.resize(samples.size());
    const sf_count_t frames = readFrames(wav_.sound.get(), std::span<Sample>(wide));
    window_.throwFailure();
    if (const int error = sf_error(wav_.sound.get()); error != SF_ERR_NO_ERROR)
      throw reading_->failure(sf_error_number(error));
    if (static_cast<std::size_t>(frames) * ChannelCount != samples.size())
      throw reading_->failure("its sound ends too early");
    std::transform(wide.begin(), wide.end(), samples.begin(), [](Sample sample) { return rounded(sample); });
  }

  std::unique_ptr<SourceReading> reading_;
  Window window_;
  Wav wav_;
  sf_count_t left_ = 0;  // frames
  std::vector<int> integers_;
  std::vector<float> floats_;
};

}  // namespace

std::optional<SoundLength> wavLength(SourceReading& reading) {
  Window window(reading);
  const auto wav = openSound(window);
  if (!wav) return std::nullopt;
  return SoundLength{.frames = wav->info.frames, .proven = true};
}

std::unique_ptr<FrameSource> openWav(std::unique_ptr<SourceReading> reading) {
  return std::make_unique<WavSource>(std::move(reading));
}

}  // namespace trackloom::engines::audio
