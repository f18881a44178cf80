#include "engines/audio/SoundTags.h"

#include <mpg123.h>
#include <sys/types.h>

#include <array>
#include <cstring>
#include <memory>
#include <span>

#include "engines/ground/SourceFile.h"
#include "runtime/Text.h"

namespace trackloom::engines::audio {

namespace {

/// A file as libmpg123 reads it.
struct Window {
  const SourceFile& file;
  off_t position = 0;

  static ssize_t read(void* window, void* buffer, size_t size) noexcept {
    auto& self = *static_cast<Window*>(window);
    try {
      const auto count = self.file.readAt(self.position, std::span(static_cast<std::uint8_t*>(buffer), size));
      self.position += static_cast<off_t>(count);
      return static_cast<ssize_t>(count);
    } catch (const EngineError&) {
      return -1;
    }
  }
  static off_t seek(void* window, off_t offset, int whence) noexcept {
    auto& self = *static_cast<Window*>(window);
    const off_t base = whence == SEEK_CUR ? self.position : whence == SEEK_END ? self.file.size() : 0;
    off_t position{};
    if (__builtin_add_overflow(base, offset, &position) || position < 0) return -1;
    return self.position = position;
  }
};

struct Deleter {
  void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
};
using Handle = std::unique_ptr<mpg123_handle, Deleter>;

std::string textOf(const mpg123_string* text) {
  return text != nullptr && text->p != nullptr ? text->p : "";
}

template <std::size_t size>
std::string textOf(const char (&field)[size]) {
  return RTrim(displayText(std::string(field, strnlen(field, size))));
}

std::string either(const std::string& first, const std::string& second) {
  return Trim(first).empty() ? second : first;
}

SoundTags tagsIn(mpg123_handle* handle) {
  mpg123_id3v1* old = nullptr;
  mpg123_id3v2* tag = nullptr;
  mpg123_id3(handle, &old, &tag);
  SoundTags tags;
  if (tag != nullptr) tags = {textOf(tag->title), textOf(tag->artist), textOf(tag->album)};
  if (old == nullptr) return tags;
  return {either(tags.title, textOf(old->title)), either(tags.artist, textOf(old->artist)),
          either(tags.album, textOf(old->album))};
}

bool isRiff(const SourceFile& file) {
  std::array<std::uint8_t, 4> bytes{};
  file.readAt(0, bytes);
  return std::memcmp(bytes.data(), "RIFF", bytes.size()) == 0;
}

SoundTags read(const SourceFile& file) {
  Window window{file};
  const Handle handle(mpg123_new(nullptr, nullptr));
  if (!handle || mpg123_param(handle.get(), MPG123_ADD_FLAGS, MPG123_QUIET, 0) != MPG123_OK ||
      mpg123_replace_reader_handle(handle.get(), Window::read, Window::seek, nullptr) != MPG123_OK ||
      mpg123_open_handle(handle.get(), &window) != MPG123_OK)
    return {};
  // The tags are known once the first frame is.
  long rate = 0;
  int channels = 0;
  int encoding = 0;
  mpg123_getformat(handle.get(), &rate, &channels, &encoding);
  return tagsIn(handle.get());
}

}  // namespace

SoundTags tagsOf(const HostPath& path) {
  try {
    const SourceFile file(path);
    return isRiff(file) ? SoundTags() : read(file);
  } catch (const EngineError&) {
    return {};
  }
}

}  // namespace trackloom::engines::audio
