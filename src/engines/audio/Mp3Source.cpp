#include "engines/audio/Mp3Source.h"

#include <mpg123.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <span>
#include <utility>
#include <vector>

#include "engines/audio/Mp3Extent.h"

namespace trackloom::engines::audio {

namespace {

/// The sound of an MP3 file as libmpg123 sees it: a file that begins with the first frame and ends with the last, so
/// that no tag is ever searched for frames. Reads ahead, since the library asks for each frame in two small pieces.
/// Remembers the error that ended reading, which the library does not tell.
class Window {
 public:
  Window(const OpenedFile& file, const Mp3Extent& extent) : file_(file), extent_(extent) {}

  const OpenedFile& file() const { return file_; }
  const std::optional<RuntimeError>& failure() const { return failure_; }

  static ssize_t read(void* window, void* buffer, size_t size) noexcept {
    return static_cast<Window*>(window)->read(std::span(static_cast<std::uint8_t*>(buffer), size));
  }
  static off_t seek(void* window, off_t offset, int whence) noexcept {
    return static_cast<Window*>(window)->seek(offset, whence);
  }

 private:
  static constexpr std::int64_t readAhead = 32'768;  // bytes

  std::int64_t size() const { return extent_.end - extent_.begin; }

  ssize_t read(std::span<std::uint8_t> bytes) noexcept {
    try {
      if (position_ < aheadAt_ || position_ >= aheadAt_ + static_cast<std::int64_t>(ahead_.size())) fill();
    } catch (const RuntimeError& error) {
      failure_ = error;
      return -1;
    }
    const std::span known = std::span(ahead_).subspan(static_cast<std::size_t>(position_ - aheadAt_));
    const std::size_t count = std::min(bytes.size(), known.size());
    std::copy_n(known.begin(), count, bytes.begin());
    position_ += static_cast<std::int64_t>(count);
    return static_cast<ssize_t>(count);
  }

  void fill() {
    const std::int64_t wanted = std::clamp<std::int64_t>(size() - position_, 0, readAhead);
    ahead_.resize(static_cast<std::size_t>(wanted));
    aheadAt_ = position_;
    ahead_.resize(file_.readAt(extent_.begin + position_, ahead_));
  }

  off_t seek(off_t offset, int whence) noexcept {
    const std::int64_t base = whence == SEEK_CUR ? position_ : whence == SEEK_END ? size() : 0;
    std::int64_t position = 0;
    if (__builtin_add_overflow(base, offset, &position) || position < 0) return -1;
    position_ = position;
    return position;
  }

  const OpenedFile& file_;
  Mp3Extent extent_;
  std::int64_t position_ = 0;        // bytes from the first frame
  std::vector<std::uint8_t> ahead_;  // what lies from aheadAt_ on
  std::int64_t aheadAt_ = 0;
  std::optional<RuntimeError> failure_;
};

/// An MP3 file open in libmpg123, set to 16-bit samples as the file has them: nothing is resampled, mixed or amplified.
class Decoder {
 public:
  Decoder(const OpenedFile& file, const Mp3Extent& extent) : window_(file, extent) {
    if (!handle_) throw file.failure(ENOMEM);
    constexpr long flags = MPG123_QUIET | MPG123_GAPLESS | MPG123_SKIP_ID3V2;
    const bool ready =
        mpg123_param(handle_.get(), MPG123_ADD_FLAGS, flags, 0) == MPG123_OK &&
        mpg123_param(handle_.get(), MPG123_REMOVE_FLAGS, MPG123_AUTO_RESAMPLE, 0) == MPG123_OK &&
        mpg123_format_none(handle_.get()) == MPG123_OK &&
        mpg123_format2(handle_.get(), 0, MPG123_MONO | MPG123_STEREO, MPG123_ENC_SIGNED_16) == MPG123_OK &&
        mpg123_replace_reader_handle(handle_.get(), Window::read, Window::seek, nullptr) == MPG123_OK &&
        mpg123_open_handle(handle_.get(), &window_) == MPG123_OK;
    if (!ready) throw trouble();
  }

  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  /// Walks the whole stream, so that its ends are known from then on; the frames it will play, nothing if it has none.
  std::optional<std::int64_t> scan() {
    const bool scanned = hasDiscFormat() && mpg123_scan(handle_.get()) == MPG123_OK;
    if (window_.failure()) throw *window_.failure();
    const off_t frames = scanned ? mpg123_length(handle_.get()) : 0;
    if (frames <= 0) return std::nullopt;
    return frames;
  }

  std::size_t read(std::span<std::int16_t> samples) {
    for (;;) {
      std::size_t bytes = 0;
      const int result =
          mpg123_read(handle_.get(), reinterpret_cast<unsigned char*>(samples.data()), samples.size_bytes(), &bytes);
      if (window_.failure()) throw *window_.failure();
      if (result == MPG123_NEW_FORMAT && !hasDiscFormat())
        throw window_.file().failure("its sound changes to another sample rate or number of channels on the way");
      if (bytes > 0 || (result != MPG123_OK && result != MPG123_NEW_FORMAT)) return bytes / sizeof(std::int16_t);
    }
  }

 private:
  struct Deleter {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
  };

  bool hasDiscFormat() {
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    mpg123_frameinfo2 info{};
    return mpg123_getformat(handle_.get(), &rate, &channels, &encoding) == MPG123_OK && rate == 44'100 &&
           channels == MPG123_STEREO && encoding == MPG123_ENC_SIGNED_16 &&
           mpg123_info2(handle_.get(), &info) == MPG123_OK && info.layer == 3;
  }

  RuntimeError trouble() const {
    return window_.failure() ? *window_.failure() : window_.file().failure(mpg123_strerror(handle_.get()));
  }

  Window window_;
  std::unique_ptr<mpg123_handle, Deleter> handle_{mpg123_new(nullptr, nullptr)};
};

class Mp3Source : public FrameSource {
 public:
  Mp3Source(OpenedFile file, const Mp3Extent& extent) : file_(std::move(file)), decoder_(file_, extent) {
    decoder_.scan();
  }

  std::size_t read(std::span<std::int16_t> samples) override { return decoder_.read(samples); }

 private:
  OpenedFile file_;
  Decoder decoder_;
};

}  // namespace

std::optional<std::int64_t> mp3Frames(const OpenedFile& file) {
  const auto extent = findMp3(file);
  if (!extent) return std::nullopt;
  if (extent->announcedFrames) return extent->announcedFrames;
  return Decoder(file, *extent).scan();
}

std::unique_ptr<FrameSource> openMp3(OpenedFile file) {
  const auto extent = findMp3(file);
  if (!extent) throw file.failure("it holds no MP3 sound");
  return std::make_unique<Mp3Source>(std::move(file), *extent);
}

}  // namespace trackloom::engines::audio
