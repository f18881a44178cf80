#include "engines/writer/ImageFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

#include "engines/ground/Blocks.h"
#include "engines/ground/EngineError.h"
#include "engines/writer/DataImage.h"
#include "runtime/AsideFile.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t blocksAtOnce = 256;
/// Bytes that the data length of one file section counts (ISO 9660, 9.1.4).
constexpr std::int64_t longestExtent = std::numeric_limits<std::uint32_t>::max();

/// The image in the making: what stands under its name stays until all of it is there.
class Target {
 public:
  explicit Target(const HostPath& path) : path_(path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path target = fs::weakly_canonical(path.text, error);
    if (error) throw fileError(path_, error.value());
    if (fs::exists(target, error) && !fs::is_regular_file(target, error)) throw fileError(path_, "not a regular file");
    if (fs::exists(target, error) && ::eaccess(target.c_str(), W_OK) != 0) throw fileError(path_, errno);
    guarded([&] { aside_.emplace(target.string()); });
  }

  void append(std::span<const std::byte> bytes) {
    guarded([&] { aside_->write({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); });
  }
  void finish() {
    guarded([&] { aside_->takePlace(); });
  }

 private:
  template <class Work>
  void guarded(const Work& work) const {
    try {
      work();
    } catch (const RuntimeError& error) {
      throw fileError(path_, error.description());
    }
  }

  HostPath path_;
  std::optional<AsideFile> aside_;
};

/// The image would take the place of something that is in it.
void requireNoSource(const HostPath& target, const std::vector<DataEntry>& entries) {
  for (const DataEntry& entry : entries) {
    std::error_code missing;
    if (entry.source && std::filesystem::equivalent(target.text, entry.source->path().text, missing))
      throw fileError(target, "is one of the files of the image");
  }
}

/// Longer files would stand in pieces, which many readers take for several files, and no disc can hold them anyway.
void requireSingleExtents(const std::vector<DataEntry>& entries) {
  for (const DataEntry& entry : entries)
    if (entry.source && entry.source->note().size > longestExtent)
      throw fileError(entry.source->path(), "is too large for an image, where a file has at most 4 GiB");
}

/// Tells of the files that went into the image since the last time.
class Report {
 public:
  Report(const DataImage& image, EventsInCall& events) : image_(image), events_(events) {}

  void upTo(std::size_t file, std::int64_t bytes) {
    for (; told_ < file; ++told_) {
      begin();
      progress(blocksOf(told_));
      begun_ = false;
    }
    if (told_ == image_.fileCount()) return;
    begin();
    progress(std::min(blocksOf(told_), saturated(bytes / static_cast<std::int64_t>(dataSectorBytes))));
  }

 private:
  std::int32_t blocksOf(std::size_t file) const {
    const auto sector = static_cast<std::int64_t>(dataSectorBytes);
    return saturated((image_.fileSize(file) + sector - 1) / sector);
  }

  void begin() {
    if (std::exchange(begun_, true)) return;
    position_ = 0;
    const auto number = static_cast<std::int64_t>(told_) + 1;
    constexpr std::int64_t mostShort = std::numeric_limits<std::int16_t>::max();
    const auto track = static_cast<std::int16_t>(std::min(number, mostShort));
    events_.raise([number](CDWriterEvents& listener) { listener.OnImageTrackStart(saturated(number)); });
    events_.raise(
        [track, blocks = blocksOf(told_)](CDWriterEvents& listener) { listener.OnTrackCacheStart(track, blocks); });
  }

  void progress(std::int32_t position) {
    if (position <= position_) return;
    position_ = position;
    events_.raise([position](CDWriterEvents& listener) { listener.OnCacheProgress(position); });
  }

  const DataImage& image_;
  EventsInCall& events_;
  std::size_t told_ = 0;
  bool begun_ = false;
  std::int32_t position_ = 0;
};

}  // namespace

void writeImageFile(const HostPath& target, std::vector<DataEntry> entries, const std::string& label,
                    EventsInCall& events, const std::stop_token& stop) {
  requireNoSource(target, entries);
  requireSingleExtents(entries);
  Target file(target);
  DataImage image(std::move(entries), {.label = label, .missing = Missing::LeftOut}, std::make_shared<SourcesInUse>(),
                  stop);
  Report report(image, events);
  std::vector<std::byte> buffer(blocksAtOnce * dataSectorBytes);
  for (std::int64_t left = image.blocks(); left != 0;) {
    const auto step = std::min<std::int64_t>(left, blocksAtOnce);
    const std::span<std::byte> sectors(buffer.data(), static_cast<std::size_t>(step) * dataSectorBytes);
    image.read(sectors);
    file.append(sectors);
    left -= step;
    report.upTo(image.reading().file, image.reading().bytesOfFile);
  }
  if (stop.stop_requested()) throw Stopped();
  file.finish();
  report.upTo(image.fileCount(), 0);
}

}  // namespace trackloom::engines::writer
