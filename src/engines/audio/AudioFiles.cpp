#include "engines/audio/AudioFiles.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engines/audio/FrameSource.h"
#include "engines/audio/Measurements.h"
#include "engines/audio/Mp3Source.h"
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
Kind kindOf(const SourceFile& file) {
  std::array<std::uint8_t, 12> bytes{};
  file.readAt(0, bytes);
  const std::string magic(bytes.begin(), bytes.end());
  if (magic.starts_with("RIFF") && magic.ends_with("WAVE")) return Kind::Wav;
  for (const std::string_view family : {"RIFF", "RIFX", "RF64", "riff"})
    if (magic.starts_with(family)) return Kind::Other;
  return Kind::Mp3;
}

std::optional<SoundLength> lengthOf(SourceReading& reading, Proof proof) {
  switch (kindOf(reading.file())) {
    case Kind::Wav:
      return wavLength(reading);
    case Kind::Mp3:
      return mp3Length(reading, proof);
    case Kind::Other:
      break;
  }
  return std::nullopt;
}

std::optional<std::int32_t> blocksFor(std::int64_t frames) {
  constexpr std::int64_t perBlock{FramesPerSector};
  const std::int64_t blocks = frames / perBlock + (frames % perBlock != 0 ? 1 : 0);
  if (blocks > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(blocks);
}

std::unique_ptr<FrameSource> sourceOf(std::unique_ptr<SourceReading> reading) {
  return kindOf(reading->file()) == Kind::Wav ? openWav(std::move(reading)) : openMp3(std::move(reading));
}

/// The frames of a source in whole sectors.
class SectorStream : public AudioStream {
 public:
  SectorStream(std::unique_ptr<FrameSource> source, std::int64_t frames, std::int32_t blocks)
      : source_(std::move(source)),
        blocks_(blocks),
        samplesLeft_(static_cast<std::size_t>(frames) * ChannelCount),
        sectorsLeft_(static_cast<std::size_t>(blocks)) {}

  std::int32_t blocks() const override { return blocks_; }

  std::size_t read(std::span<std::byte> sectors) override {
    const std::size_t count = std::min(sectors.size() / SectorSize, sectorsLeft_);
    samples_.resize(count * SamplesPerSector);
    readSource();
    static_assert(std::endian::native == std::endian::little, "samples lie in memory as on the disc");
    std::memcpy(sectors.data(), samples_.data(), count * SectorSize);
    sectorsLeft_ -= count;
    return count * SectorSize;
  }

 private:
  void readSource() {
    if (samplesLeft_ == 0) return;
    const std::size_t count = std::min(samples_.size(), samplesLeft_);
    const std::span<std::int16_t> samples(samples_);
    source_->read(samples.first(count));
    std::ranges::fill(samples.subspan(count), std::int16_t{0});
    samplesLeft_ -= count;
    if (samplesLeft_ == 0) source_->finish();
  }

  std::unique_ptr<FrameSource> source_;
  std::int32_t blocks_;
  std::size_t samplesLeft_;
  std::size_t sectorsLeft_;
  std::vector<std::int16_t> samples_;
};

}  // namespace

/// The measurements of files, however they are come by.
class AudioFiles::Cache {
 public:
  Measured known(const HostPath& path, const FileNote& note) {
    return all_.find(path, note, Proof::Header, [&path] {
      SourceReading reading(path);
      return measured(reading, Proof::Header);
    });
  }
  Measured proven(SourceReading& reading) {
    return all_.find(reading.file().path(), reading.file().note(), Proof::EveryFrame,
                     [&reading] { return measured(reading, Proof::EveryFrame); });
  }

 private:
  static Measured measured(SourceReading& reading, Proof proof) {
    const auto length = lengthOf(reading, proof);
    return {reading.file().note(), length, length ? blocksFor(length->frames) : std::nullopt};
  }

  Measurements all_;
};

AudioFiles::AudioFiles() : cache_(std::make_unique<Cache>()) {}
AudioFiles::~AudioFiles() = default;

std::optional<FoundSound> AudioFiles::find(const HostPath& path) {
  const auto note = noteOf(path);
  if (!note) return std::nullopt;
  try {
    const auto measured = cache_->known(path, *note);
    if (!measured.blocks) return std::nullopt;
    return FoundSound{std::make_shared<Source>(path, measured.note), *measured.blocks};
  } catch (const EngineError&) {
    return std::nullopt;
  }
}

std::optional<std::int32_t> AudioFiles::blocks(const HostPath& path) {
  const auto found = find(path);
  if (!found) return std::nullopt;
  return found->blocks;
}

std::int32_t AudioFiles::provenBlocks(const std::shared_ptr<Source>& source) {
  return open(source)->blocks();
}

std::unique_ptr<AudioStream> AudioFiles::open(const HostPath& path) {
  return open(std::make_shared<Source>(path, SourceFile(path).note()));
}

std::unique_ptr<AudioStream> AudioFiles::open(const std::shared_ptr<Source>& source) {
  auto reading = std::make_unique<SourceReading>(source);
  const auto measured = cache_->proven(*reading);
  if (!measured.blocks) throw reading->failure("not 44.1 kHz stereo sound, MP3 or WAV");
  return std::make_unique<SectorStream>(sourceOf(std::move(reading)), measured.length->frames, *measured.blocks);
}

}  // namespace trackloom::engines::audio
