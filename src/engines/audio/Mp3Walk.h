#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "engines/audio/Mp3Extent.h"
#include "engines/audio/Mp3Header.h"
#include "engines/ground/Source.h"

namespace trackloom::engines::audio {

/// The frames of an MP3 file one after the other, which are what its length is counted in and what the decoder gets to
/// see. All else is passed over, however long it is: damage, tags in mid-stream, frames of another rate or number of
/// channels.
class Mp3Walk {
 public:
  /// Both outlive the walk.
  Mp3Walk(SourceReading& reading, const Mp3Extent& extent);

  struct Frame {
    std::int64_t at = 0;   ///< bytes from the file's start
    std::size_t size = 0;  ///< bytes
  };

  /// Nothing: there are no more. Throws EngineError.
  std::optional<Frame> next();

 private:
  std::optional<Frame> frameAt(std::int64_t at);
  std::optional<Frame> search();
  bool isFollowed(const Frame& frame);

  SourceReading& reading_;
  const Mp3Extent& extent_;
  std::int64_t position_;
};

/// How many frames a walk finds. Throws EngineError.
std::int64_t countFrames(SourceReading& reading, const Mp3Extent& extent);

}  // namespace trackloom::engines::audio
