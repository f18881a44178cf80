#pragma once

#include <memory>

#include "ports/MP3EncoderX.h"

namespace trackloom::engines::encoder {

/// Makes MP3 encoders over LAME, at the library's own quality.
class LameEncoders final : public MP3Encoders {
 public:
  std::unique_ptr<MP3EncoderX> create() override;
};

}  // namespace trackloom::engines::encoder
