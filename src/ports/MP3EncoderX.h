#pragma once

#include <cstdint>
#include <memory>

#include "ports/Mp3Stream.h"

namespace trackloom {

/// The MP3 encoder: the program sets its rate and hands its inner object to the rip engine.
class MP3EncoderX {
 public:
  virtual ~MP3EncoderX() = default;

  /// Lives as long as the encoder.
  virtual Mp3Stream& Encoder() = 0;
  /// In kbps: 128, 160, 192, 224, 256 or 320; the next rip takes it.
  virtual void SetBitRate(std::int32_t kbps) = 0;
};

/// Makes encoders, one for each ripper window.
class MP3Encoders {
 public:
  virtual ~MP3Encoders() = default;
  virtual std::unique_ptr<MP3EncoderX> create() = 0;
};

}  // namespace trackloom
