#include "engines/audio/Mp3Source.h"

#include <mpg123.h>
#include <sys/types.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "engines/audio/Mp3Walk.h"

namespace trackloom::engines::audio {

namespace {

/// The frames of a walk as the file that libmpg123 sees: without a byte between them, so that it never has to search
/// for one, and whatever it does about damage and changes of format never counts. Remembers the error that ended
/// reading, which the library does not tell.
class Window {
 public:
  Window(SourceReading& reading, const Mp3Extent& extent) : reading_(reading), walk_(reading, extent) {}

  void throwFailure() const {
    if (failure_) throw *failure_;
  }

  static ssize_t read(void* window, void* buffer, size_t size) noexcept {
    return static_cast<Window*>(window)->read(std::span(static_cast<std::uint8_t*>(buffer), size));
  }
  static off_t seek(void* /*window*/, off_t /*offset*/, int /*whence*/) noexcept { return -1; }

 private:
  ssize_t read(std::span<std::uint8_t> bytes) noexcept {
    try {
      if (frame_.size == 0) frame_ = walk_.next().value_or(Mp3Walk::Frame{});
      const std::size_t count = reading_.readAt(frame_.at, bytes.first(std::min(bytes.size(), frame_.size)));
      frame_.at += static_cast<std::int64_t>(count);
      frame_.size -= count;
      return static_cast<ssize_t>(count);
    } catch (const EngineError& error) {
      failure_ = error;
      return -1;
    }
  }

  SourceReading& reading_;
  Mp3Walk walk_;
  Mp3Walk::Frame frame_;  // what is left of it
  std::optional<EngineError> failure_;
};

/// An MP3 file open in libmpg123, set to 16-bit samples as the file has them: nothing is resampled, mixed, amplified or
/// left out.
class Decoder {
 public:
  Decoder(SourceReading& reading, const Mp3Extent& extent) : reading_(reading), window_(reading, extent) {
    if (!handle_) throw reading.failure(systemWords(ENOMEM));
    constexpr long set = MPG123_QUIET | MPG123_SKIP_ID3V2 | MPG123_IGNORE_INFOFRAME;
    constexpr long unset = MPG123_GAPLESS | MPG123_AUTO_RESAMPLE;
    const auto freeSize = static_cast<long>(extent.freeSize == 0 ? -1 : extent.freeSize - HeaderSize);
    const bool ready = mpg123_param(handle_.get(), MPG123_ADD_FLAGS, set, 0) == MPG123_OK &&
                       mpg123_param(handle_.get(), MPG123_REMOVE_FLAGS, unset, 0) == MPG123_OK &&
                       mpg123_param(handle_.get(), MPG123_FREEFORMAT_SIZE, freeSize, 0) == MPG123_OK &&
                       mpg123_format_none(handle_.get()) == MPG123_OK &&
                       mpg123_format(handle_.get(), 44'100, MPG123_STEREO, MPG123_ENC_SIGNED_16) == MPG123_OK &&
                       mpg123_replace_reader_handle(handle_.get(), Window::read, Window::seek, nullptr) == MPG123_OK &&
                       mpg123_open_handle(handle_.get(), &window_) == MPG123_OK;
    if (!ready) throw trouble();
  }

  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  /// The samples decoded, 0 when the sound is over.
  std::size_t read(std::span<std::int16_t> samples) {
    for (;;) {
      std::size_t bytes = 0;
      const int result =
          mpg123_read(handle_.get(), reinterpret_cast<unsigned char*>(samples.data()), samples.size_bytes(), &bytes);
      window_.throwFailure();
      if (bytes > 0 || result == MPG123_DONE) return bytes / sizeof(std::int16_t);
      if (result != MPG123_NEW_FORMAT) throw trouble();
    }
  }

 private:
  struct Deleter {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
  };

  EngineError trouble() const {
    window_.throwFailure();
    return reading_.failure(mpg123_strerror(handle_.get()));
  }

  SourceReading& reading_;
  Window window_;
  std::unique_ptr<mpg123_handle, Deleter> handle_{mpg123_new(nullptr, nullptr)};
};

class Mp3Source : public FrameSource {
 public:
  Mp3Source(std::unique_ptr<SourceReading> reading, const Mp3Extent& extent)
      : reading_(std::move(reading)), extent_(extent), decoder_(*reading_, extent_) {}

  void read(std::span<std::int16_t> samples) override {
    if (!std::exchange(begun_, true) && skip(samplesIn(extent_.before)) != samplesIn(extent_.before)) throw tooShort();
    for (std::size_t done = 0; done < samples.size();) {
      const std::size_t got = decoder_.read(samples.subspan(done));
      if (got == 0) throw tooShort();
      done += got;
    }
  }

  void finish() override {
    if (skip(samplesIn(extent_.behind) + 1) != samplesIn(extent_.behind)) throw reading_->changed();
    reading_->requireUnchanged();
  }

 private:
  static std::size_t samplesIn(std::int64_t frames) { return static_cast<std::size_t>(frames) * ChannelCount; }
  EngineError tooShort() const { return reading_->failure("its sound ends too early"); }

  /// The samples that there were to leave out.
  std::size_t skip(std::size_t samples) {
    std::array<std::int16_t, 4096> unheard{};
    std::size_t done = 0;
    while (done < samples) {
      const std::size_t got = decoder_.read(std::span(unheard).first(std::min(unheard.size(), samples - done)));
      if (got == 0) break;
      done += got;
    }
    return done;
  }

  std::unique_ptr<SourceReading> reading_;
  Mp3Extent extent_;
  Decoder decoder_;
  bool begun_ = false;
};

}  // namespace

std::optional<SoundLength> mp3Length(SourceReading& reading, Proof proof) {
  const auto extent = findMp3(reading.file());
  if (!extent) return std::nullopt;
  const bool believed = extent->announced && proof == Proof::Header;
  const std::int64_t frames = extent->soundIn(believed ? *extent->announced : countFrames(reading, *extent));
  if (frames <= 0) return std::nullopt;
  return SoundLength{.frames = frames, .proven = !believed};
}

std::unique_ptr<FrameSource> openMp3(std::unique_ptr<SourceReading> reading) {
  const auto extent = findMp3(reading->file());
  if (!extent) throw reading->changed();
  return std::make_unique<Mp3Source>(std::move(reading), *extent);
}

}  // namespace trackloom::engines::audio
