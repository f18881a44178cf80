#include "engines/audio/AudioFiles.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engines/audio/FrameSource.h"
#include "engines/audio/Mp3Source.h"
#include "engines/audio/OpenedFile.h"
#include "engines/audio/WavSource.h"

namespace trackloom::engines::audio {

namespace {

constexpr std::size_t FramesPerSector = 588;
constexpr std::size_t SamplesPerSector = FramesPerSector * ChannelCount;
constexpr std::size_t SectorSize = SamplesPerSector * sizeof(std::int16_t);

/// What a file is by its first bytes; its name has no say.
enum class Kind { Wav, Mp3, Other };

// Whatever is not of the RIFF family may be an MP3 stream with something before it. A file of the family never is: its
// samples look like frame headers often enough to be taken for sound, and MP3 sound inside of it is not ours to play.
Kind kindOf(const OpenedFile& file) {
  std::array<std::uint8_t, 12> bytes{};
  file.readAt(0, bytes);
  const std::string magic(bytes.begin(), bytes.end());
  if (magic.starts_with("RIFF") && magic.ends_with("WAVE")) return Kind::Wav;
  for (const std::string_view family : {"RIFF", "RIFX", "RF64", "riff"})
    if (magic.starts_with(family)) return Kind::Other;
  return Kind::Mp3;
}

std::optional<std::int64_t> framesOf(const OpenedFile& file) {
  switch (kindOf(file)) {
    case Kind::Wav:
      return wavFrames(file);
    case Kind::Mp3:
      return mp3Frames(file);
    case Kind::Other:
      break;
  }
  return std::nullopt;
}

std::optional<std::int32_t> blocksOf(const OpenedFile& file) {
  const auto frames = framesOf(file);
  if (!frames) return std::nullopt;
  constexpr std::int64_t perBlock{FramesPerSector};
  const std::int64_t blocks = *frames / perBlock + (*frames % perBlock != 0 ? 1 : 0);
  if (blocks > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(blocks);
}

std::unique_ptr<FrameSource> sourceOf(OpenedFile file) {
  return kindOf(file) == Kind::Wav ? openWav(std::move(file)) : openMp3(std::move(file));
}

/// The frames of a source cut or filled up with silence to a number of sectors.
class SectorStream : public AudioStream {
 public:
  SectorStream(std::unique_ptr<FrameSource> source, std::int32_t blocks)
      : source_(std::move(source)), blocks_(blocks), sectorsLeft_(static_cast<std::size_t>(blocks)) {}

  std::int32_t blocks() const override { return blocks_; }

  std::size_t read(std::span<std::byte> sectors) override {
    const std::size_t count = std::min(sectors.size() / SectorSize, sectorsLeft_);
    samples_.resize(count * SamplesPerSector);
    const std::size_t heard = readSource(samples_);
    std::fill(samples_.begin() + static_cast<std::ptrdiff_t>(heard), samples_.end(), std::int16_t{0});
    for (std::size_t i = 0; i < samples_.size(); ++i) {
      const auto sample = static_cast<std::uint16_t>(samples_[i]);
      sectors[2 * i] = static_cast<std::byte>(sample & 0xFF);
      sectors[2 * i + 1] = static_cast<std::byte>(sample >> 8);
    }
    sectorsLeft_ -= count;
    return count * SectorSize;
  }

 private:
  std::size_t readSource(std::span<std::int16_t> samples) {
    std::size_t done = 0;
    while (source_ && done < samples.size()) {
      const std::size_t got = source_->read(samples.subspan(done));
      if (got == 0) source_.reset();
      done += got;
    }
    return done;
  }

  std::unique_ptr<FrameSource> source_;  // gone once it is over
  std::int32_t blocks_;
  std::size_t sectorsLeft_;
  std::vector<std::int16_t> samples_;
};

}  // namespace

/// What was measured so far, by path. An entry is locked while its file is measured, so that whoever asks for the same
/// file meanwhile gets the same answer without a second measuring, and whoever asks for another one does not wait.
class AudioFiles::Cache {
 public:
  std::optional<std::int32_t> blocks(const HostPath& path, const FileIdentity& identity) {
    return lookUp(path, identity, [&] { return OpenedFile(path); });
  }

  std::optional<std::int32_t> blocks(const HostPath& path, const OpenedFile& file) {
    return lookUp(path, file.identity(), [&]() -> const OpenedFile& { return file; });
  }

 private:
  struct Measured {
    FileIdentity identity;
    std::optional<std::int32_t> blocks;  // nothing: refused
  };
  struct Entry {
    std::mutex mutex;
    std::optional<Measured> measured;
  };

  template <class Opener>
  std::optional<std::int32_t> lookUp(const HostPath& path, const FileIdentity& identity, const Opener& opened) {
    Entry& entry = entryOf(path);
    const std::lock_guard lock(entry.mutex);
    if (!entry.measured || entry.measured->identity != identity) {
      const OpenedFile& file = opened();
      entry.measured = Measured{.identity = file.identity(), .blocks = blocksOf(file)};
    }
    return entry.measured->blocks;
  }

  // Entries stay where they are when others come, so a reference outlives the lock.
  Entry& entryOf(const HostPath& path) {
    const std::lock_guard lock(mutex_);
    return entries_[path.text];
  }

  std::mutex mutex_;
  std::unordered_map<std::string, Entry> entries_;
};

AudioFiles::AudioFiles() : cache_(std::make_unique<Cache>()) {}
AudioFiles::~AudioFiles() = default;

std::optional<std::int32_t> AudioFiles::blocks(const HostPath& path) {
  const auto identity = identityOf(path);
  if (!identity) return std::nullopt;
  try {
    return cache_->blocks(path, *identity);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

std::unique_ptr<AudioStream> AudioFiles::open(const HostPath& path) {
  OpenedFile file(path);
  const auto blocks = cache_->blocks(path, file);
  if (!blocks) throw file.failure("it is not 44.1 kHz stereo sound in the form of MP3 or WAV");
  return std::make_unique<SectorStream>(sourceOf(std::move(file)), *blocks);
}

}  // namespace trackloom::engines::audio
