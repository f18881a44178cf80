#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engines/audio/AudioFiles.h"

namespace trackloom::engines::audio {

using Samples = std::vector<std::int16_t>;

inline constexpr std::size_t SectorBytes = 2352;
inline constexpr std::size_t SectorSamples = 1176;

/// Stereo frames of two tones under noise; the same for the same arguments.
Samples music(std::size_t frames, unsigned seed = 1);

std::string bytesOf(const Samples& samples);

/// What a WAV file's header says; what is not set is what is true of the body.
struct WavHeader {
  std::string magic = "RIFF";
  std::uint16_t tag = 1;
  std::uint16_t channels = 2;
  std::uint32_t rate = 44100;
  std::uint16_t bits = 16;
  std::optional<std::uint32_t> riffSize = {};
  std::optional<std::uint32_t> dataSize = {};
};

std::string wavBytes(const std::string& body, const WavHeader& header = {});

/// An ID3v2 tag of `payload` bytes of zeros whose header tells the size `announced`.
std::string id3v2Tag(std::uint32_t payload, std::uint32_t announced);

/// A folder for the sound files of one test, removed with the test.
class SoundFolder {
 public:
  SoundFolder();
  ~SoundFolder();
  SoundFolder(const SoundFolder&) = delete;
  SoundFolder& operator=(const SoundFolder&) = delete;

  HostPath at(const std::string& name) const { return HostPath(path_ + "/" + name); }
  HostPath write(const std::string& name, const std::string& bytes) const;
  std::string read(const std::string& name) const;

  /// Runs a command line in the folder and requires that it succeeds.
  void run(const std::string& command) const;

  /// What ffmpeg makes of a file: 16-bit stereo frames in a row.
  Samples decodedByFfmpeg(const std::string& name) const;

 private:
  std::string path_;
};

/// All bytes that this process has asked the system for so far.
std::uint64_t bytesRead();

/// `frames` in sectors, the last one begun counted whole.
std::int32_t blocksFor(std::size_t frames);

/// All samples of a stream, read in uneven portions.
Samples readAll(AudioStream& stream);

/// The largest difference between samples of the same place; a missing one counts as silence.
int largestDifference(const Samples& left, const Samples& right);

}  // namespace trackloom::engines::audio
