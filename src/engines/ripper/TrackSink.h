#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "engines/ripper/RipFile.h"
#include "ports/Mp3Stream.h"

namespace trackloom::engines::ripper {

/// The bytes that a track of so many sectors takes at most, in MP3 at this rate; 0 kbps: as WAV.
std::int64_t roomFor(std::int32_t sectors, std::int32_t kbps);

/// Turns a track's sound into its file: RIFF/WAVE of 16 bits (Microsoft's Multimedia Programming Interface and Data
/// Specifications 1.0, chapter 3) or MP3. Behind either stand 128 zeros, which a tag may overwrite without harm to the
/// sound and which belong to neither. All members throw TrackFailed.
class TrackSink {
 public:
  /// `encoder`: null for WAV. `sectors`: the track's length.
  TrackSink(RipFile& file, std::unique_ptr<Mp3Track> encoder, std::int32_t sectors);

  /// Whole samples, in order.
  void put(std::span<const std::byte> sound);
  /// Once all sectors were put.
  void finish();

 private:
  RipFile& file_;
  std::unique_ptr<Mp3Track> encoder_;
};

}  // namespace trackloom::engines::ripper
